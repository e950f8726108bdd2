#include "manuals/character_readers.h"

#include <algorithm>
#include <cstddef>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace qdm::characters {
namespace {

// The characters that a list of numbers spells before its terminator; empty where it holds anything else.
std::u16string SpeltBy(const Code& number) {
  std::u16string text;
  for (const CodeByte& byte : number.Bytes) {
    if (byte.Value < 0x20 && !text.empty()) break;
    const auto c = static_cast<char16_t>(byte.Value);
    if (!IsPrintable(c) || byte.Kind == ByteKind::VAR) return {};
    text += c;
  }
  return text.size() < number.Bytes.size() ? text
                                           : std::u16string();  // without a terminator they could be anything
}

}  // namespace

void AddShownByNumbers(const ManualPage& page, const std::vector<Code>& numbers, std::vector<Code>& codes) {
  constexpr std::size_t kFewest = 2;
  constexpr std::size_t kFewestTokens = 3;
  constexpr std::size_t kLonger = 2;  // than the longest of the examples
  std::set<std::u16string> shown;
  for (const Code& number : numbers) {
    if (std::u16string text = SpeltBy(number); !text.empty()) shown.insert(std::move(text));
  }
  if (shown.size() < kFewest) return;
  // Sorted: what the first and the last have in common, all have.
  const auto differs = std::mismatch(shown.begin()->begin(), shown.begin()->end(), shown.rbegin()->begin(),
                                     shown.rbegin()->end());
  const std::u16string prefix(shown.begin()->begin(), differs.first);
  const auto byLength = [](const std::u16string& a, const std::u16string& b) { return a.size() < b.size(); };
  const std::size_t longest = std::max_element(shown.begin(), shown.end(), byLength)->size() + kLonger;
  constexpr std::size_t kShortestPrefix = 2;
  if (prefix.size() < kShortestPrefix) return;
  std::vector<Span> found;
  std::set<std::u16string> tokens;
  for (std::size_t number = 0; number < page.Lines.size(); ++number) {
    for (const Span& span : TokensOf(page.Lines[number], number)) {
      const Text token = page.At(span);
      if (token.size() <= prefix.size() || token.size() > longest || token.substr(0, prefix.size()) != prefix)
        continue;
      if (!All(token, IsPrintable) || All(token, IsDigit)) continue;
      found.push_back(span);
      tokens.insert(std::u16string(token));
    }
  }
  if (tokens.size() < kFewestTokens) return;
  for (const Span& span : found) codes.push_back(TextCode(page, span));
}

}  // namespace qdm::characters
