#include "manuals/character_readers.h"
#include "manuals/drawn_form.h"
#include "manuals/functions.h"

#include <cstddef>
#include <iterator>
#include <utility>
#include <vector>

namespace qdm::characters {
namespace {

constexpr std::size_t kLongestName = 6;
constexpr std::size_t kLongestValue = 4;

bool IsName(Text token) {
  return token.size() <= kLongestName && Any(token, IsLetter) && All(token, IsWordPart);
}
bool IsCellValue(Text token) {
  return token.size() <= kLongestValue && All(token, IsWordPart) && Any(token, IsDigit);
}

}  // namespace

void AddCellPairs(const ManualPage& page, std::vector<Code>& codes) {
  const auto form = FindDrawnForm(page);
  if (!form || form->Places != 2) return;
  constexpr std::size_t kFewest = 3;
  std::vector<Code> found;
  for (std::size_t number = 0; number < page.Lines.size(); ++number) {
    const Text line = page.Lines[number];
    constexpr std::size_t kLongestLine = 200;
    if (line.size() > kLongestLine) continue;
    const std::vector<Span> tokens = TokensOf(line, number);
    for (std::size_t i = 0; i + 1 < tokens.size(); ++i) {
      if (!IsName(page.At(tokens[i])) || !IsCellValue(page.At(tokens[i + 1]))) continue;
      const bool edge = i == 0 || i + 2 == tokens.size();
      const Text label = i == 0 ? line.substr(tokens[1].To) : line.substr(0, tokens[i].From);
      if (!edge || ClassifyLabel(label).What == Subject::None) continue;
      Code code = TextCode(page, {number, tokens[i].From, tokens[i + 1].To});
      code.Bytes = Characters(page.At(tokens[i]));
      const CodeBytes value = Characters(page.At(tokens[i + 1]));
      code.Bytes.insert(code.Bytes.end(), form->Between.begin(), form->Between.end());
      code.Bytes.insert(code.Bytes.end(), value.begin(), value.end());
      code.Composed = true;
      found.push_back(std::move(code));
      break;
    }
  }
  if (found.size() < kFewest) return;
  std::move(found.begin(), found.end(), std::back_inserter(codes));
}

}  // namespace qdm::characters
