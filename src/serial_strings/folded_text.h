// Text as it is copied out of documents, brought to plain characters: blanks, dashes and quotation marks of
// the typesetter, invisible characters, ligatures, wide and look-alike letters, drawn blanks, "&lt;". Such
// characters look like what is meant, but would be other bytes.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace qdm {

struct FoldedText {
  std::u16string Text;
  std::vector<std::size_t> Origins;  // of each character and of the end: its place in the text as it was
  std::vector<std::string> Notes;    // what was changed, each kind once: "a no-break space became a blank"
};

FoldedText FoldTypography(std::u16string_view text);

}  // namespace qdm
