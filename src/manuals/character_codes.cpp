#include "manuals/character_readers.h"
#include "manuals/codes.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qdm {
namespace characters {
namespace {

constexpr Text kNoCommands[] = {u"RXD",  u"TXD",   u"CTS", u"RTS", u"DSR", u"DTR", u"GND", u"DCD", u"PIN",
                                u"USB",  u"LAN",   u"HEX", u"CRC", u"STX", u"ETX", u"ACK", u"NAK", u"OSD",
                                u"ON",   u"OFF",   u"ALL", u"YES", u"NO",  u"AND", u"OR",  u"PC",  u"CR",
                                u"LF",   u"ASCII", u"OK",  u"ERR", u"NG",  u"LCD", u"DLP", u"RS",  u"PAL",
                                u"NTSC", u"AUTO",  u"SET", u"GET", u"MENU"};

bool IsToken(char16_t c) { return c != u' ' && c != u'\t' && c != u'|'; }

}  // namespace

bool IsNoCommand(Text token) {
  return std::find(std::begin(kNoCommands), std::end(kNoCommands), token) != std::end(kNoCommands);
}

std::vector<Span> TokensOf(Text line, std::size_t number) {
  std::vector<Span> tokens;
  std::size_t at = 0;
  while (at < line.size()) {
    while (at < line.size() && !IsToken(line[at])) ++at;
    const std::size_t from = at;
    while (at < line.size() && IsToken(line[at])) ++at;
    if (at > from) tokens.push_back({number, from, at});
  }
  return tokens;
}

std::size_t LettersOf(Text text) {
  std::size_t letters = 0;
  while (letters < text.size() && IsUpper(text[letters])) ++letters;
  return letters;
}

Code TextCode(const ManualPage& page, Span where) {
  Code code;
  code.How = Notation::Characters;
  code.Where = {where};
  code.Bytes = Characters(page.At(where));
  return code;
}

}  // namespace characters

namespace {

using Text = std::u16string_view;

// What the page says of a pair of letters: "XX = 00 reaches all", "nn : ID of the projector, 00 is taken by
// all".
struct PairMeaning {
  bool IsNumber = false;  // of the projector
  bool ZeroIsAll = false;
};

PairMeaning MeaningOf(const ManualPage& page, Text pair) {
  PairMeaning meaning;
  const Text folded = page.Folded;
  for (std::size_t at = folded.find(pair); at != Text::npos; at = folded.find(pair, at + 1)) {
    std::size_t behind = at + pair.size();
    if ((at > 0 && IsWordPart(folded[at - 1]))) continue;
    while (behind < folded.size() &&
           (folded[behind] == u' ' || folded[behind] == u'\'' || folded[behind] == u'"'))
      ++behind;
    if (behind >= folded.size() || (folded[behind] != u':' && folded[behind] != u'=')) continue;
    meaning.IsNumber = true;
    constexpr std::size_t kReach = 120;
    const Text said = folded.substr(behind + 1, kReach);
    const std::size_t zero = said.find(u"00");
    if (zero == Text::npos) continue;
    const bool first = said.find_first_not_of(u' ') == zero;
    for (const Text all : {u"all", u"every", u"each", u"broadcast", u"any", u"alle", u"jede", u"tous",
                           u"todos", u"tutti", u"所有", u"全"})
      meaning.ZeroIsAll |= said.find(all) != Text::npos;
    meaning.ZeroIsAll |= first;
  }
  return meaning;
}

}  // namespace

void ResolveAddress(const ManualPage& page, Code& code) {
  const std::vector<std::uint8_t> values = Values(code.Bytes);
  for (std::size_t at = 0; at + 1 < values.size(); ++at) {
    const auto first = static_cast<char16_t>(values[at]);
    const auto second = static_cast<char16_t>(values[at + 1]);
    const bool id = (first == u'I' || first == u'i') && (second == u'D' || second == u'd');
    if (!IsLetter(first) || (first != second && !id)) continue;
    const bool upper = first == u'X' && second == u'X';
    const std::u16string pair = FoldLetters(std::u16string{first, second});
    const PairMeaning meaning = MeaningOf(page, pair);
    if (!meaning.IsNumber && !upper) continue;
    code.Bytes[at].Value = '0';
    code.Bytes[at + 1].Value = meaning.ZeroIsAll ? '0' : '1';
    code.Open = true;
    return;
  }
  // A sign that begins the characters is part of them.
  const auto first =
      std::find_if(values.begin(), values.end(), [](std::uint8_t value) { return value > 0x20; });
  code.Open = first != values.end() && std::any_of(first + 1, values.end(), [](std::uint8_t value) {
                return value == '*' || value == '?';
              });
}

std::vector<Code> FindCharacterCodes(const ManualPage& page, const std::vector<Code>& numbers) {
  std::vector<Code> candidates;
  characters::AddTerminated(page, candidates);
  characters::AddParenthesised(page, candidates);
  characters::AddCellPairs(page, candidates);
  characters::AddShownByNumbers(page, numbers, candidates);
  characters::AddSignedValues(page, candidates);
  characters::AddWordRows(page, candidates);
  characters::AddCapitalRows(page, candidates);
  characters::AddNamedValues(page, candidates);
  characters::AddBetweenIdeographs(page, candidates);
  characters::AddGluedRows(page, candidates);
  characters::AddFamilies(page, candidates);
  characters::AddMarkedRows(page, candidates);
  // What was found first and what numbers have taken is not taken again.
  std::vector<Code> kept;
  std::map<std::pair<std::size_t, std::size_t>, std::size_t> taken;  // line and begin, and where it ends
  const auto isFree = [&](const Span& span) {
    const auto next = taken.lower_bound({span.Line, span.From});
    if (next != taken.end() && next->first.first == span.Line && next->first.second < span.To) return false;
    const auto before = next == taken.begin() ? taken.end() : std::prev(next);
    return before == taken.end() || before->first.first != span.Line || before->second <= span.From;
  };
  for (const Code& code : numbers) {
    if (code.Bytes.size() < 2) continue;
    for (const Span& span : code.Where) taken[{span.Line, span.From}] = span.To;
  }
  for (Code& code : candidates) {
    const Span& where = code.Begin();
    if (!isFree(where)) continue;
    taken[{where.Line, where.From}] = where.To;
    kept.push_back(std::move(code));
  }
  std::stable_sort(kept.begin(), kept.end(), StandsBefore);
  for (Code& code : kept) ResolveAddress(page, code);
  return kept;
}

}  // namespace qdm
