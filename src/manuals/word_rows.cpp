#include "manuals/character_readers.h"
#include "manuals/functions.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <map>
#include <optional>
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
bool IsRowValue(Text token) {
  constexpr std::size_t kLongest = 3;
  if (token.size() == 1 && Text(u"+-?").find(token[0]) != Text::npos) return true;
  return token.size() <= kLongest && All(token, IsDigit);
}
bool IsPlaceholder(Text token) {
  constexpr std::size_t kLongest = 3;
  return token.size() <= kLongest && token.find_first_not_of(token[0]) == Text::npos &&
         IsWordPart(token[0]) && !IsDigit(token[0]);
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
      if (!IsSignedWord(word) || tokens[i + 1].From != tokens[i].To + 1 || (!open && !IsRowValue(value)))
        continue;
      Code code = TextCode(page, {number, tokens[i].From, tokens[i + 1].To});
      code.Broken = open;
      for (std::size_t at = word.size() + 1; open && at < code.Bytes.size(); ++at)
        code.Bytes[at] = {static_cast<std::uint8_t>(value[0]), ByteKind::VAR};
      if (!open) values[std::u16string(word)].insert(std::u16string(value));
      words.emplace_back(word);
      found.push_back(std::move(code));
    }
  }
  for (std::size_t i = 0; i < found.size(); ++i) {
    if (values[words[i]].size() >= kFewest) codes.push_back(std::move(found[i]));
  }
}

namespace {

struct WordRow {
  Code Words;
  std::u16string Name;
  std::optional<int> Slot;
};

// "power=on Switches on": one word with a sign and a value.
std::optional<WordRow> AssignmentOn(const ManualPage& page, std::size_t number) {
  constexpr std::size_t kLongest = 20;
  const Text line = page.Lines[number];
  const std::vector<Span> tokens = TokensOf(line.substr(0, kLongest * 4), number);
  if (tokens.size() < 2) return std::nullopt;
  const Text token = page.At(tokens[0]);
  const std::size_t sign = token.find(u'=');
  const bool named =
      sign != Text::npos && sign >= 2 && sign + 1 < token.size() &&
      All(token.substr(0, sign), [](char16_t c) { return IsLower(c) || IsDigit(c) || c == u'_'; });
  if (!named || token.size() > kLongest || !Any(line.substr(tokens[1].From), IsLetter)) return std::nullopt;
  const Text value = token.substr(sign + 1);
  if (!All(value, [](char16_t c) { return IsWordPart(c) || c == u'+' || c == u'-' || c == u'?'; }))
    return std::nullopt;
  return WordRow{TextCode(page, tokens[0]), std::u16string(token.substr(0, sign)),
                 SlotOf(ClassifyLabel(line.substr(tokens[1].From)))};
}

// Two or three words of one case that a line begins with, before a label in the other.
std::optional<WordRow> WordRowOn(const ManualPage& page, std::size_t number, bool capitals) {
  constexpr std::size_t kLongestLine = 120;
  constexpr std::size_t kMostWords = 3;
  const Text line = page.Lines[number];
  const auto small = [](char16_t c) { return IsLower(c) || IsDigit(c) || c == u'?' || c == u'_'; };
  const auto large = [](char16_t c) {
    return IsUpper(c) || IsDigit(c) || c == u'?' || c == u'_' || c == u'+' || c == u'-';
  };
  const auto leads = [](char16_t c) {
    return c == u'.' || c == u'-' || c == u':' || c == u'|' || IsBlank(c);
  };
  const std::vector<Span> tokens = TokensOf(line.substr(0, kLongestLine), number);
  std::size_t count = 0;
  while (count < tokens.size() &&
         (capitals ? All(page.At(tokens[count]), large) : All(page.At(tokens[count]), small)))
    ++count;
  // "PW 1 POWER ON": a label in capitals begins behind the value.
  if (capitals && count > 2 && count == tokens.size() && SlotOf(ClassifyLabel(line.substr(tokens[2].From))))
    count = 2;
  if (count < 2 || count > kMostWords || count == tokens.size() || line.size() > kLongestLine)
    return std::nullopt;
  if (!IsLetter(page.At(tokens[0])[0]) || page.At(tokens[0]).size() < 2) return std::nullopt;
  std::size_t label = tokens[count - 1].To;
  while (label < line.size() && leads(line[label])) ++label;
  if (label == line.size() || !(IsUpper(line[label]) || line[label] > 0x7F)) return std::nullopt;
  return WordRow{TextCode(page, {number, tokens[0].From, tokens[count - 1].To}),
                 std::u16string(page.At(tokens[0])), SlotOf(ClassifyLabel(line.substr(label)))};
}

}  // namespace

void AddWordRows(const ManualPage& page, std::vector<Code>& codes) {
  constexpr std::size_t kFewest = 2;
  for (const bool capitals : {false, true}) {
    std::vector<WordRow> rows;
    std::map<std::u16string, std::set<std::u16string>> words;
    std::set<int> slots;
    for (std::size_t number = 0; number < page.Lines.size(); ++number) {
      auto row = WordRowOn(page, number, capitals);
      if (!row && !capitals) row = AssignmentOn(page, number);
      if (!row) continue;
      // The name of an input is no command.
      const Function says = ClassifyLabel(page.At(row->Words.Begin()));
      if (capitals && SlotOf(says) && says.To == State::None) continue;
      if (row->Slot) slots.insert(*row->Slot);
      words[row->Name].insert(std::u16string(page.At(row->Words.Begin())));
      rows.push_back(std::move(*row));
    }
    if (slots.size() < kFewest) continue;
    for (WordRow& row : rows) {
      if (words[row.Name].size() >= kFewest) codes.push_back(std::move(row.Words));
    }
  }
}

}  // namespace qdm::characters
