#include "manuals/character_readers.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace qdm::characters {
namespace {

bool IsSignedWord(Text token) {
  constexpr Text kSigns = u"~*#%:@&!$/^;";
  constexpr std::size_t kLongest = 12;
  return token.size() > 2 && token.size() <= kLongest && kSigns.find(token[0]) != Text::npos &&
         All(token.substr(1), IsWordPart);
}

// "1", "02", "+", "?"; "n" and "nn" stand for a value.
bool IsValue(Text token) {
  constexpr std::size_t kLongest = 3;
  if (token.size() == 1 && Text(u"+-?").find(token[0]) != Text::npos) return true;
  return token.size() <= kLongest && All(token, IsDigit);
}
bool IsPlaceholder(Text token) {
  constexpr std::size_t kLongest = 3;
  return token.size() <= kLongest && token.find_first_not_of(token[0]) == Text::npos && IsWordPart(token[0]) &&
         !IsDigit(token[0]);
}

}  // namespace

void AddSignedValues(const ManualPage& page, std::vector<Code>& codes) {
  constexpr std::size_t kFewest = 2;
  std::vector<Code> found;
  std::vector<std::u16string> words;
  std::map<std::u16string, std::set<std::u16string>> values;
  for (std::size_t number = 0; number < page.Lines.size(); ++number) {
    const std::vector<Span> tokens = TokensOf(page.Lines[number], number);
    for (std::size_t i = 0; i + 1 < tokens.size(); ++i) {
      const Text word = page.At(tokens[i]);
      const Text value = page.At(tokens[i + 1]);
      const bool open = IsPlaceholder(value);
      if (!IsSignedWord(word) || tokens[i + 1].From != tokens[i].To + 1 || (!open && !IsValue(value))) continue;
      Code code = TextCode(page, {number, tokens[i].From, tokens[i + 1].To});
      code.Broken = open;
      if (!open) values[std::u16string(word)].insert(std::u16string(value));
      words.emplace_back(word);
      found.push_back(std::move(code));
    }
  }
  for (std::size_t i = 0; i < found.size(); ++i) {
    if (values[words[i]].size() >= kFewest) codes.push_back(std::move(found[i]));
  }
}

}  // namespace qdm::characters
