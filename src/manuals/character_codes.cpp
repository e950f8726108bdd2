#include "manuals/character_readers.h"
#include "manuals/codes.h"

#include <algorithm>
#include <iterator>
#include <map>

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

bool Overlap(const Span& a, const Span& b) { return a.Line == b.Line && a.From < b.To && b.From < a.To; }

bool Before(const Code& a, const Code& b) {
  return std::pair(a.Begin().Line, a.Begin().From) < std::pair(b.Begin().Line, b.Begin().From);
}

}  // namespace

void ResolveAddress(const ManualPage& page, Code& code) {
  const std::vector<std::uint8_t> values = Values(code.Bytes);
  for (std::size_t at = 0; at + 1 < values.size(); ++at) {
    if (values[at] != 'X' || values[at + 1] != 'X') continue;
    const bool all = page.Folded.find(u"xx=00") != std::u16string::npos ||
                     page.Folded.find(u"xx = 00") != std::u16string::npos;
    code.Bytes[at].Value = '0';
    code.Bytes[at + 1].Value = all ? '0' : '1';
    code.Open = true;
    return;
  }
  code.Open = std::any_of(values.begin(), values.end(),
                          [](std::uint8_t value) { return value == '*' || value == '?'; }) &&
              values.front() != '*';
}

std::vector<Code> FindCharacterCodes(const ManualPage& page, const std::vector<Code>& numbers) {
  std::vector<Code> candidates;
  characters::AddTerminated(page, candidates);
  characters::AddParenthesised(page, candidates);
  characters::AddCellPairs(page, candidates);
  characters::AddNamedValues(page, candidates);
  characters::AddBetweenIdeographs(page, candidates);
  characters::AddGluedRows(page, candidates);
  characters::AddFamilies(page, candidates);
  characters::AddMarkedRows(page, candidates);
  // What was found first and what numbers have taken is not taken again.
  std::vector<Code> kept;
  std::multimap<std::size_t, Span> taken;
  for (const Code& code : numbers) {
    if (code.Bytes.size() < 2) continue;
    for (const Span& span : code.Where) taken.emplace(span.Line, span);
  }
  for (Code& code : candidates) {
    const auto [first, last] = taken.equal_range(code.Begin().Line);
    if (std::any_of(first, last, [&](const auto& other) { return Overlap(other.second, code.Begin()); }))
      continue;
    taken.emplace(code.Begin().Line, code.Begin());
    kept.push_back(std::move(code));
  }
  std::stable_sort(kept.begin(), kept.end(), Before);
  for (Code& code : kept) ResolveAddress(page, code);
  return kept;
}

}  // namespace qdm
