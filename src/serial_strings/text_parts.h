// What of a copied line is the command: a label before it, a remark behind it, the table cell beside it and
// the program around it are not. And what in a command stands for something else: "XX", "<CKS>", "0-100".
#pragma once

#include "serial_strings/byte_notation.h"
#include "serial_strings/text_parser.h"

#include <optional>
#include <string_view>
#include <vector>

namespace qdm {

struct TextPart {
  std::u16string_view Content;   // a piece of the line
  std::optional<Unmarked> Base;  // told by a label: "Hex: 02 10"
};

// The line's parts in which the command may stand, the likeliest first; none where the whole line is it.
std::vector<TextPart> FindParts(std::u16string_view line);

// The first place that cannot be sent as it stands.
std::optional<TextProblem> FindDoubt(std::u16string_view text);

// The lines that hold more than blanks.
std::vector<std::u16string_view> SplitLines(std::u16string_view text);

}  // namespace qdm
