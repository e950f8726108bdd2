#include "manuals/character_readers.h"
#include "manuals/functions.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace qdm::characters {
namespace {

bool IsCapitalWord(Text token) {
  return token.size() >= 2 && token.size() <= 10 &&
         All(token, [](char16_t c) { return IsUpper(c) || c == u'_' || c == u'-'; });
}
bool IsCapitalValue(Text token) {
  return token.size() <= 6 && All(token, [](char16_t c) {
           return IsUpper(c) || IsDigit(c) || c == u'+' || c == u'-' || c == u'?';
         });
}

struct Row {
  Span Label;
  Span Words;            // "PWR ON"
  std::u16string Name;   // "PWR"
  std::size_t Cell = 0;  // how many bars stand before it
};

// Every place where a line, or a cell of it, ends with a word and a value in capitals.
std::vector<Row> RowsOf(const ManualPage& page, std::size_t number) {
  const Text line = page.Lines[number];
  std::vector<Row> rows;
  if (line.size() > 400) return rows;
  std::size_t from = 0;
  std::size_t bars = 0;
  for (std::size_t at = 0; at <= line.size(); ++at) {
    if (at < line.size() && line[at] != u'|' && line[at] != u'\t') continue;
    const std::vector<Span> tokens = [&] {
      std::vector<Span> all = TokensOf(line.substr(0, at), number);
      std::erase_if(all, [&](const Span& token) { return token.From < from; });
      return all;
    }();
    const std::size_t count = tokens.size();
    if (count >= 2 && IsCapitalWord(page.At(tokens[count - 2])) &&
        IsCapitalValue(page.At(tokens[count - 1])) && tokens[count - 1].From - tokens[count - 2].To == 1) {
      Span label = Trim(page, {number, from, tokens[count - 2].From});
      if (count == 2 && from > 0) label = Trim(page, {number, 0, from - 1});
      rows.push_back({label,
                      {number, tokens[count - 2].From, tokens[count - 1].To},
                      std::u16string(page.At(tokens[count - 2])),
                      bars});
    }
    from = at + 1;
    ++bars;
  }
  return rows;
}

}  // namespace

// A name whose rows have labels that are complete without it is a command; then all rows of that name are,
// and all in that column of a table with bars.
void AddNamedValues(const ManualPage& page, std::vector<Code>& codes) {
  std::vector<Row> rows;
  std::map<std::u16string, std::set<std::u16string>> names;
  std::set<int> slots;
  for (std::size_t number = 0; number < page.Lines.size(); ++number) {
    for (Row& row : RowsOf(page, number)) {
      const Function label = ClassifyLabel(page.At(row.Label));
      const auto slot = SlotOf(label);
      if (slot && label.Plain) {
        names[row.Name].insert(std::u16string(page.At(row.Words)));
        slots.insert(*slot);
      }
      rows.push_back(std::move(row));
    }
  }
  if (slots.size() < 2) return;  // "VGA IN 1", "VGA IN 2" are names of one kind of input
  std::set<std::size_t> cells;
  std::set<std::size_t> columns;
  for (const Row& row : rows) {
    if (!names.contains(row.Name)) continue;
    if (row.Cell > 0) cells.insert(row.Cell);
    columns.insert(row.Words.From);
  }
  for (const Row& row : rows) {
    const bool inColumn =
        row.Cell > 0 ? cells.contains(row.Cell) : columns.contains(row.Words.From) && row.Words.From > 0;
    if (names.contains(row.Name) || inColumn) codes.push_back(TextCode(page, row.Words));
  }
}

namespace {

constexpr Text kLeadingSymbols = u"~*#%:@&!$/=_^;";

bool LeadBySymbol(Text token) {
  return token.size() > 2 && kLeadingSymbols.find(token[0]) != Text::npos && IsWordPart(token[1]);
}

bool IsIdeograph(char16_t c) { return c > 0x2E80; }

// "S" in front of the ideographs for video, "1" behind those for computer.
bool IsNamePart(Text line, std::size_t labelFrom, std::size_t at) {
  std::size_t from = at;
  while (from > labelFrom && !IsIdeograph(line[from - 1])) --from;
  const Text between = line.substr(from, at - from);
  return between.find_last_not_of(u' ') == Text::npos || between.size() <= 2;
}

}  // namespace

// Characters that stand between labels of a script of their own: the plain text there is a command, unless it
// names an input.
void AddBetweenIdeographs(const ManualPage& page, std::vector<Code>& codes) {
  for (std::size_t number = 0; number < page.Lines.size(); ++number) {
    const Text line = page.Lines[number];
    if (!Any(line, IsIdeograph)) continue;
    std::size_t at = 0;
    std::size_t labelFrom = 0;
    while (at < line.size()) {
      if (at == 0 || !IsNamePart(line, labelFrom, at)) labelFrom = at;
      while (at < line.size() && IsIdeograph(line[at])) ++at;
      const std::size_t from = at;
      while (at < line.size() && !IsIdeograph(line[at])) ++at;
      Span span = Trim(page, {number, from, at});
      const auto leads = [](char16_t c) {
        return c == u':' || c == u',' || c == u'.' || c == u';' || c == u'"' || c == u' ' || c == u'\t';
      };
      while (span.From < span.To && leads(line[span.From])) ++span.From;
      while (span.To > span.From && leads(line[span.To - 1])) --span.To;
      // "1" and "S" belong to the labels on either side.
      if (span.To - span.From > 3 && IsDigit(line[span.From]) && line[span.From + 1] == u' ') span.From += 2;
      if (span.To - span.From > 2 && IsDigit(line[span.From]) && line[span.From + 1] == u':') span.From += 2;
      const bool letter = at < line.size() && span.To == at && span.To - span.From > 3 &&
                          IsUpper(line[at - 1]) && line[at - 2] == u' ';
      if (letter) span.To -= 2;
      const Text text = page.At(span);
      if (from == 0 || text.size() < 2 || text.size() > kLongestText || !All(text, IsPrintable)) continue;
      if (!Any(text, IsLetter) || text.find_first_of(u"()|\t") != Text::npos) continue;
      const Function says = ClassifyLabel(line.substr(labelFrom, from - labelFrom));
      if (!SlotOf(says) && says.What != Subject::Other) continue;
      const bool names = SlotOf(ClassifyLabel(text)) && ClassifyLabel(text).What != Subject::Power;
      if (names && !LeadBySymbol(text)) continue;
      if (IsNoCommand(text)) continue;
      codes.push_back(TextCode(page, span));
    }
  }
}

// "SET PWR ON   Switches on": rows that begin with words in capitals and go on, behind a gap, with a label.
void AddCapitalRows(const ManualPage& page, std::vector<Code>& codes) {
  constexpr std::size_t kFewest = 2;
  constexpr std::size_t kFewestRows = 3;
  std::vector<Code> found;
  std::set<int> slots;
  for (std::size_t number = 0; number < page.Lines.size(); ++number) {
    const Text line = page.Lines[number];
    const std::size_t gap = line.find(u"  ", line.find_first_not_of(u' '));
    if (gap == Text::npos || line.size() > 160) continue;
    const Span words = Trim(page, {number, 0, gap});
    const Text label = TrimSpace(line.substr(gap));
    const std::vector<Span> tokens = TokensOf(page.At(words), number);
    const bool capitals =
        tokens.size() >= 2 && tokens.size() <= 4 && page.At(words).size() <= kLongestText &&
        All(page.At(words), [](char16_t c) { return IsUpper(c) || IsDigit(c) || c == u' ' || c == u'?'; });
    if (!capitals || !Any(label, IsLower)) continue;
    if (const auto slot = SlotOf(ClassifyLabel(label))) slots.insert(*slot);
    found.push_back(TextCode(page, words));
  }
  if (slots.size() < kFewest || found.size() < kFewestRows) return;
  std::move(found.begin(), found.end(), std::back_inserter(codes));
}

namespace {

bool LooksLikeCommand(Text text) {
  if (text.size() < 2 || text.size() > kLongestText || !All(text, IsPrintable)) return false;
  if (text.front() == u' ' || std::count(text.begin(), text.end(), u' ') > 3) return false;
  if (text.find_first_of(u"<>[]") != Text::npos || !Any(text, IsWordPart)) return false;
  // A word of a sentence has lower-case letters alone.
  const bool prose =
      Any(text, IsLower) && !Any(text, IsDigit) && text.find_first_of(u"=:_*#~%/.") == Text::npos;
  return !prose && !IsNoCommand(text);
}

}  // namespace

// Rows of a plain label and then, after a mark or in quotation marks, the characters of its command. Three
// such rows make a list.
void AddMarkedRows(const ManualPage& page, std::vector<Code>& codes) {
  std::vector<Code> found;
  std::set<int> slots;
  for (std::size_t number = 0; number < page.Lines.size(); ++number) {
    const Text line = page.Lines[number];
    if (line.size() > 120) continue;
    for (std::size_t at = 1; at + 1 < line.size(); ++at) {
      const bool quote = line[at] == u'"';
      const bool gap = line.substr(at, 3) == u"   ";
      const bool leader = line.substr(at, 4) == u"....";
      if (!quote && !gap && !leader && line[at] != u':' && line[at] != u'\t' && line[at] != u'=') continue;
      const auto slot = SlotOf(ClassifyLabel(line.substr(0, at)));
      if (!slot || !ClassifyLabel(line.substr(0, at)).Plain) continue;
      Span span = Trim(page, {number, at + 1, line.size()});
      if (quote) {
        const std::size_t close = line.find(u'"', at + 1);
        if (close == Text::npos) break;
        span = {number, at + 1, close};
      } else if (span.From < span.To && line[span.From] == u'"') {
        continue;
      }
      if (leader) {
        while (span.From < span.To && (line[span.From] == u'.' || IsBlank(line[span.From]))) ++span.From;
      }
      const Text text = page.At(span);
      const Function says = ClassifyLabel(text);
      const bool led = leader && text.size() <= kLongestText && Any(text, IsLetter) && All(text, IsPrintable);
      if (!led && (!LooksLikeCommand(text) || (SlotOf(says) && says.Plain))) break;
      slots.insert(*slot);
      found.push_back(TextCode(page, span));
      break;
    }
  }
  if (slots.size() < 3) return;
  std::move(found.begin(), found.end(), std::back_inserter(codes));
}

namespace {

// "PW=1", "ON!": capitals and digits round one sign; the key is the sign and whether it ends the token.
std::u16string FamilyBySign(Text token) {
  constexpr Text kSigns = u"=!#%*~^_+:";
  constexpr std::ptrdiff_t kMost = 2;
  const std::size_t sign = token.find_first_of(kSigns);
  if (token.size() < 3 || token.size() > 16 || sign == Text::npos || sign < 2 || !IsLetter(token[0]))
    return {};
  if (sign + 1 == token.size() && (token[sign] == u':' || token[sign] == u'*')) return {};
  const auto isSign = [kSigns](char16_t c) { return kSigns.find(c) != Text::npos; };
  if (std::count_if(token.begin(), token.end(), isSign) > kMost) return {};
  const auto plain = [](Text part) {
    return All(part, [](char16_t c) { return IsUpper(c) || IsDigit(c) || c == u'-' || c == u'='; });
  };
  if (!plain(token.substr(0, sign)) || !plain(token.substr(sign + 1))) return {};
  return {u'?', token[sign], sign + 1 == token.size() ? u'.' : u'v'};
}
bool IsBySign(const std::u16string& family) { return family.size() == 3 && family[0] == u'?'; }

// Tokens that look alike have the same key: the first letter and the length of "C0A", the shape of "PON".
std::u16string FamilyOf(Text token) {
  if (token.size() < 2 || token.size() > 20 || !All(token, IsPrintable)) return {};
  if (LeadBySymbol(token)) return std::u16string(1, token[0]);
  if (token.size() > 12) return {};
  const std::size_t letters = LettersOf(token) > 0 ? LettersOf(token) : (IsLower(token[0]) ? 1 : 0);
  const auto hex = [](char16_t c) {
    return IsDigit(c) || (c >= u'A' && c <= u'F') || (c >= u'a' && c <= u'f');
  };
  if (letters >= 1 && token.size() >= 3 && token.size() <= 5 && All(token.substr(1), hex) &&
      IsDigit(token[1])) {
    return {token[0], static_cast<char16_t>(u'0' + token.size())};
  }
  if (letters >= 2 && letters <= 4 && letters < token.size() && All(token.substr(letters), IsDigit) &&
      token.size() <= 6) {
    return std::u16string(token.substr(0, letters)) + u'9';
  }
  if (letters == token.size() && letters >= 2 && letters <= 4) return std::u16string(letters, u'A');
  if (std::u16string family = FamilyBySign(token); !family.empty()) return family;
  // "CMDP0N", "CMDV1D": alike in length and in how they begin.
  constexpr std::size_t kHead = 3;
  const bool mixed = token.size() > kHead + 1 && letters >= kHead && Any(token, IsDigit) &&
                     All(token, [](char16_t c) { return IsUpper(c) || IsDigit(c); });
  return mixed ? std::u16string(token.substr(0, kHead)) + static_cast<char16_t>(u'0' + token.size()) + u'~'
               : std::u16string();
}

bool IsCapitals(const std::u16string& family) {
  return family.size() >= 2 && family[0] == u'A' && family[1] == u'A';
}
// "POWR9": letters with a number.
bool IsNumbered(const std::u16string& family) { return family.size() >= 3 && family.back() == u'9'; }

using Families = std::map<std::u16string, std::set<std::u16string>>;

// Few tokens of a name are a family when others of the same shape stand with them: "POWR1" with "INPT1",
// "IR1" among "PON" and "POF".
bool HasKin(const Families& families, const std::u16string& family) {
  const std::set<std::u16string>& tokens = families.at(family);
  if (!IsNumbered(family)) return false;
  std::size_t kin = 0;
  std::size_t names = 0;
  for (const auto& [other, members] : families) {
    if (!IsNumbered(other) || other.size() != family.size() || members.size() < 2) continue;
    kin += members.size();
    ++names;
  }
  constexpr std::size_t kFewest = 4;
  if (tokens.size() >= 2 && names >= 2 && kin >= kFewest) return true;
  const std::size_t length = tokens.begin()->size();
  const auto capitals = families.find(std::u16string(length, u'A'));
  const bool alike = std::all_of(tokens.begin(), tokens.end(),
                                 [length](const std::u16string& token) { return token.size() == length; });
  return alike && capitals != families.end() && capitals->second.size() >= kFewest;
}

// The token without the marks that a text puts round it.
Span Bare(const ManualPage& page, Span span) {
  const Text line = page.Lines[span.Line];
  const auto mark = [](char16_t c) {
    return c == u'"' || c == u'\'' || c == u',' || c == u';' || c == u'.' || c == u'(' || c == u')';
  };
  while (span.To > span.From && mark(line[span.To - 1])) --span.To;
  while (span.From < span.To && mark(line[span.From])) ++span.From;
  return span;
}

struct Member {
  Span Where;
  std::u16string Family;
  bool Edge = false;  // begins or ends its cell, or stands beside another member
};

}  // namespace

void AddFamilies(const ManualPage& page, std::vector<Code>& codes) {
  std::vector<Member> members;
  Families families;
  for (std::size_t number = 0; number < page.Lines.size(); ++number) {
    const Text line = page.Lines[number];
    const std::vector<Span> tokens = TokensOf(line, number);
    std::u16string before;
    for (std::size_t i = 0; i < tokens.size(); ++i) {
      const Span span = Bare(page, tokens[i]);
      const Text token = page.At(span);
      std::u16string family = FamilyOf(token);
      const bool names =
          !LeadBySymbol(token) && !IsBySign(family) && ClassifyLabel(token).What != Subject::None;
      const bool known = family.empty() || names || IsNoCommand(token);
      if (known) {
        before.clear();
        continue;
      }
      const auto bar = [&](std::size_t from, std::size_t to) {
        return line.substr(from, to - from).find_first_of(u"|\t") != Text::npos || to - from > 2;
      };
      const bool begins = i == 0 || bar(tokens[i - 1].To, tokens[i].From);
      const bool ends = i + 1 == tokens.size() || bar(tokens[i].To, tokens[i + 1].From);
      const bool quoted =
          span.From > 0 && span.To < line.size() && line[span.From - 1] == u'"' && line[span.To] == u'"';
      const bool edge = begins || ends || quoted || before == family;
      if (edge && before == family && !members.empty()) members.back().Edge = true;
      if (IsCapitals(family) && !(begins && ends) && tokens.size() > 4) {
        before.clear();
        continue;
      }
      families[family].insert(std::u16string(token));
      before = family;
      members.push_back({span, std::move(family), edge});
    }
  }
  for (const Member& member : members) {
    const std::size_t size = families[member.Family].size();
    if (!member.Edge) continue;
    if (size < (IsCapitals(member.Family) ? 4U : 3U) && !HasKin(families, member.Family)) continue;
    codes.push_back(TextCode(page, member.Where));
  }
}

void AddGluedRows(const ManualPage& page, std::vector<Code>& codes) {
  constexpr std::size_t kLength = 3;
  constexpr std::size_t kFewest = 4;
  std::map<char16_t, std::vector<Span>> found;
  std::map<char16_t, std::set<int>> slots;
  for (std::size_t number = 0; number < page.Lines.size(); ++number) {
    const Text line = page.Lines[number];
    for (std::size_t at = 0; at + kLength < line.size(); ++at) {
      const char16_t behind = line[at + kLength];
      const bool code = IsUpper(line[at]) && IsDigit(line[at + 1]) && HexDigit(line[at + 2]) >= 0 &&
                        !IsLower(line[at + 2]) && (IsUpper(behind) || behind > 0x2E80);
      if (!code) continue;
      found[line[at]].push_back({number, at, at + kLength});
      constexpr std::size_t kLabel = 24;
      const Text label = line.substr(at + kLength, kLabel);
      std::size_t end = 0;
      while (end < label.size() && !(IsUpper(label[end]) && label.substr(end, 1) == line.substr(at, 1) &&
                                     end + 1 < label.size() && IsDigit(label[end + 1])))
        ++end;
      if (const auto slot = SlotOf(ClassifyLabel(label.substr(0, end)))) slots[line[at]].insert(*slot);
    }
  }
  for (const auto& [letter, spans] : found) {
    if (spans.size() < kFewest || slots[letter].size() < kFewest - 1) continue;
    for (const Span& span : spans) {
      codes.push_back(TextCode(page, span));
      codes.back().LeadsLabel = true;
    }
  }
}

}  // namespace qdm::characters
