#include "manuals/codes.h"
#include "manuals/functions.h"

#include <algorithm>
#include <map>
#include <set>

namespace qdm {
namespace {

using Text = std::u16string_view;

constexpr std::size_t kLongestText = 30;

constexpr Text kNoCommands[] = {u"RXD", u"TXD",   u"CTS",  u"RTS",  u"DSR", u"DTR", u"GND", u"DCD", u"PIN",
                                u"USB", u"LAN",   u"HEX",  u"CRC",  u"STX", u"ETX", u"ACK", u"NAK", u"OSD",
                                u"ON",  u"OFF",   u"ALL",  u"YES",  u"NO",  u"AND", u"OR",  u"PC",  u"CR",
                                u"LF",  u"ASCII", u"ACME", u"OK",   u"ERR", u"NG",  u"LCD", u"DLP", u"RS",
                                u"PAL", u"NTSC",  u"SECA", u"AUTO", u"SET", u"GET", u"MENU"};

bool IsToken(char16_t c) { return c != u' ' && c != u'\t' && c != u'|'; }

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

bool Any(Text text, bool (*is)(char16_t)) { return std::any_of(text.begin(), text.end(), is); }
bool All(Text text, bool (*is)(char16_t)) { return std::all_of(text.begin(), text.end(), is); }
bool IsPrintable(char16_t c) { return c >= 32 && c < 127; }
bool IsLowerWord(Text text) { return text.size() >= 2 && All(text, IsLower); }

// A value behind a command's name: a number, a state.
bool IsValue(Text token) {
  if (All(token, [](char16_t c) { return HexDigit(c) >= 0; }) && token.size() <= 4 && Any(token, IsDigit))
    return true;
  const std::u16string folded = FoldLetters(token);
  return folded == u"on" || folded == u"off" || folded == u"?" || folded == u"up" || folded == u"down";
}

Code TextCode(const ManualPage& page, Span where) {
  Code code;
  code.How = Notation::Characters;
  code.Where = {where};
  code.Bytes = Characters(page.At(where));
  return code;
}

// --- Before a printed terminator ---------------------------------------------------------------------------

struct Marks {
  std::size_t From = 0;
  std::size_t To = 0;
  CodeBytes Bytes;
};

// A control code that closes characters as a number: "PON" 0Dh.
std::optional<WrittenByte> ControlNumberAt(Text line, std::size_t at) {
  auto number = NumberAt(line, at);
  if (!number || !number->Marked) return std::nullopt;
  const std::uint8_t value = number->Byte.Value;
  if (value != 13 && value != 10 && value != 2 && value != 3) return std::nullopt;
  // One of a list of numbers is no mark.
  std::size_t next = number->End;
  while (next < line.size() && (line[next] == u' ' || line[next] == u',')) ++next;
  const auto other = NumberAt(line, next);
  if (other && other->Byte.Value != 10) return std::nullopt;
  std::size_t before = at;
  while (before > 0 && (line[before - 1] == u' ' || line[before - 1] == u',' || line[before - 1] == u'+'))
    --before;
  if (before == 0 || line[before - 1] == u'(') return std::nullopt;
  if (before >= 2 && (line[before - 1] == u'h' || line[before - 1] == u'H') &&
      HexDigit(line[before - 2]) >= 0)
    return std::nullopt;
  if (before >= 4 && HexDigit(line[before - 1]) >= 0 &&
      (line[before - 3] == u'x' || line[before - 3] == u'X'))
    return std::nullopt;
  return number;
}

// "[0Dh]", "<02>".
std::optional<WrittenByte> BracketedNumberAt(Text line, std::size_t at) {
  const char16_t open = line[at];
  const char16_t close = open == u'<'   ? u'>'
                         : open == u'[' ? u']'
                         : open == u'{' ? u'}'
                         : open == u'(' ? u')'
                                        : u'\0';
  if (close == u'\0') return std::nullopt;
  auto number = NumberAt(line, at + 1);
  if (!number || number->End >= line.size() || line[number->End] != close) return std::nullopt;
  if (open == u'(' && !number->Marked) return std::nullopt;
  const std::uint8_t value = number->Byte.Value;
  if (value != 13 && value != 10 && value != 2 && value != 3) return std::nullopt;
  ++number->End;
  return number;
}

// "STX (02h)": the number repeats the name.
void ExtendByNumber(Text line, WrittenByte& control) {
  std::size_t at = control.End;
  while (at < line.size() && (line[at] == u' ' || line[at] == u'(')) ++at;
  if (at == control.End) return;
  const auto number = NumberAt(line, at);
  if (!number || number->Byte.Value != control.Byte.Value || number->End >= line.size() ||
      line[number->End] != u')')
    return;
  control.End = number->End + 1;
}

// The control names of a line, neighbours together: "<CR><LF>".
std::vector<Marks> MarksOf(Text line) {
  std::vector<Marks> found;
  for (std::size_t at = 0; at < line.size(); ++at) {
    auto control = ControlAt(line, at);
    if (!control) control = ControlNumberAt(line, at);
    if (!control) control = BracketedNumberAt(line, at);
    if (control) ExtendByNumber(line, *control);
    if (!control || control->Byte.Value == u' ') continue;
    const bool neighbour =
        !found.empty() &&
        line.substr(found.back().To, at - found.back().To).find_first_not_of(u" +,") == Text::npos;
    if (neighbour) {
      found.back().Bytes.push_back(control->Byte);
      found.back().To = control->End;
    } else {
      found.push_back({at, control->End, {control->Byte}});
    }
    at = control->End - 1;
  }
  return found;
}

bool Ends(std::uint8_t control) { return control == 13 || control == 10 || control == 3 || control == 4; }

// "'P' 'O' 'N'": every character in quotation marks of its own.
Span QuotedCharacters(Text line, Span region) {
  std::size_t from = region.To;
  std::size_t count = 0;
  while (from >= region.From + 3 && line[from - 1] == line[region.To - 1] &&
         line[from - 3] == line[region.To - 1]) {
    from -= 3;
    ++count;
    while (from > region.From && (line[from - 1] == u' ' || line[from - 1] == u',' || line[from - 1] == u'+'))
      --from;
  }
  while (from < region.To && line[from] != line[region.To - 1]) ++from;
  return {region.Line, count >= 2 ? from : region.To, region.To};
}

// Where the text before a terminator begins, which ends at `to`: letters set apart, or a name with its value.
Span TextBefore(const ManualPage& page, Span region) {
  const Text line = page.Lines[region.Line];
  region = Trim(page, region);
  while (region.To > region.From &&
         (line[region.To - 1] == u'+' || line[region.To - 1] == u',' || line[region.To - 1] == u' '))
    --region.To;
  if (region.From == region.To) return region;
  const char16_t quote = line[region.To - 1];
  if (quote == u'"' || quote == u'\'') {
    if (const Span apart = QuotedCharacters(line, region); apart.From < apart.To) return apart;
    const std::size_t open = region.To >= 2 ? line.substr(0, region.To - 1).rfind(quote) : Text::npos;
    if (open == Text::npos || open < region.From) return {region.Line, region.To, region.To};
    return Trim(page, {region.Line, open + 1, region.To - 1});
  }
  std::vector<Span> tokens = TokensOf(line.substr(0, region.To), region.Line);
  while (!tokens.empty() && tokens.front().From < region.From) tokens.erase(tokens.begin());
  if (tokens.empty()) return {region.Line, region.To, region.To};
  std::size_t first = tokens.size() - 1;
  if (tokens[first].To - tokens[first].From == 1 && first > 0) {
    while (first > 0 && tokens[first - 1].To - tokens[first - 1].From == 1) --first;
  }
  const bool single = first + 1 < tokens.size();
  const auto word = [&](std::size_t i) { return All(page.At(tokens[i]), IsLower); };
  while (!single && first > 0 && word(first - 1) == word(first) && IsValue(page.At(tokens[first])) &&
         IsWordPart(line[tokens[first].From]) && tokens[first].From - tokens[first - 1].To == 1) {
    --first;
  }
  return {region.Line, tokens[first].From, region.To};
}

CodeBytes Spaced(Text text) {
  if (text.size() >= 6 && (text[0] == u'\'' || text[0] == u'"') && text[2] == text[0] &&
      text.back() == text[0]) {
    std::u16string inside;
    for (std::size_t i = 0; i + 2 < text.size(); ++i) {
      if (text[i] != text[0] || text[i + 2] != text[0]) continue;
      inside += text[i + 1];
      i += 2;
    }
    return Characters(inside);
  }
  const bool apart = text.size() >= 3 && [&] {
    for (std::size_t i = 0; i < text.size(); ++i) {
      if ((i % 2 == 1) != (text[i] == u' ')) return false;
    }
    return true;
  }();
  if (!apart) return Characters(text);
  std::u16string joined;
  for (std::size_t i = 0; i < text.size(); i += 2) joined += text[i];
  return Characters(joined);
}

void AddTerminated(const ManualPage& page, std::size_t number, std::vector<Code>& codes) {
  const Text line = page.Lines[number];
  const std::vector<Marks> marks = MarksOf(line);
  // "<CR>*pow#<CR>": what stands free before a text and touches it leads it.
  const auto leads = [&](std::size_t i) {
    const bool free =
        marks[i].From == 0 || line[marks[i].From - 1] == u' ' || line[marks[i].From - 1] == u'|';
    return free && i + 1 < marks.size() && (line[marks[i].To] != u' ' || marks[i].Bytes.front().Value == 2);
  };
  std::size_t from = 0;
  for (std::size_t i = 0; i < marks.size(); ++i) {
    const Marks& end = marks[i];
    if (leads(i)) {
      from = end.To;
      continue;
    }
    const Marks* lead = i > 0 && leads(i - 1) ? &marks[i - 1] : nullptr;
    const bool led = lead && from < end.From;
    Span text = led ? Trim(page, {number, from, end.From}) : TextBefore(page, {number, from, end.From});
    const std::size_t regionFrom = from;
    from = end.To;
    const Text characters = page.At(text);
    if (characters.empty() || characters.size() > kLongestText || !All(characters, IsPrintable)) continue;
    if (Any(characters, [](char16_t c) { return c == u'[' || c == u']' || c == u'<' || c == u'('; }))
      continue;
    const bool touches = text.To == end.From || line[text.To] == u'"' || line[text.To] == u'\'';
    if (IsLowerWord(characters) && !touches) continue;
    if (!Any(characters, [](char16_t c) { return IsWordPart(c) || c == u'!' || c == u'"'; })) continue;
    if (!Ends(end.Bytes.front().Value)) continue;
    Code code = TextCode(page, text);
    code.Bytes = Spaced(characters);
    if (led) {
      code.Bytes.insert(code.Bytes.begin(), lead->Bytes.begin(), lead->Bytes.end());
      code.Where.front().From = lead->From;
    }
    code.Bytes.insert(code.Bytes.end(), end.Bytes.begin(), end.Bytes.end());
    code.Where.front().To = end.To;
    // Quotation marks belong to it.
    if (code.Where.front().From > regionFrom &&
        (line[code.Where.front().From - 1] == u'"' || line[code.Where.front().From - 1] == u'\''))
      --code.Where.front().From;
    code.Framed = code.Marked = true;
    codes.push_back(std::move(code));
  }
}

// --- In parentheses ----------------------------------------------------------------------------------------

std::size_t LettersOf(Text text) {
  std::size_t letters = 0;
  while (letters < text.size() && IsUpper(text[letters])) ++letters;
  return letters;
}

void AddParenthesised(const ManualPage& page, std::vector<Code>& codes) {
  std::vector<Code> found;
  std::map<std::u16string, std::set<std::u16string>> stems;
  for (std::size_t number = 0; number < page.Lines.size(); ++number) {
    const Text line = page.Lines[number];
    for (std::size_t at = line.find(u'('); at != Text::npos; at = line.find(u'(', at + 1)) {
      const std::size_t close = line.substr(0, std::min(line.size(), at + 24)).find(u')', at);
      if (close == Text::npos) continue;
      const Text inside = line.substr(at + 1, close - at - 1);
      const std::size_t letters = LettersOf(inside);
      if (letters < 2 || letters > 6 || letters == inside.size()) {
        const bool letterO = letters == inside.size() && letters > 3 && inside.back() == u'O';
        if (!letterO) continue;
      }
      if (Any(inside, IsLower) || !All(inside, IsPrintable) || inside.find_first_of(u"\"/,;") != Text::npos)
        continue;
      if (!IsDigit(inside.back()) && inside.back() != u'?' && inside.back() != u'O' &&
          inside.back() != u'+' && inside.back() != u'-')
        continue;
      if (SlotOf(ClassifyLabel(inside))) continue;
      Code code = TextCode(page, {number, at, close + 1});
      code.Framed = code.Marked = true;
      std::u16string stem(inside.substr(0, letters));
      if (letters == inside.size()) {
        stem.pop_back();
        code.Bytes[code.Bytes.size() - 2].Value = '0';
        code.Repaired = true;
      }
      stems[stem].insert(std::u16string(inside));
      found.push_back(std::move(code));
    }
  }
  for (Code& code : found) {
    const Text inside = page.At(code.Where.front()).substr(1);
    const std::size_t letters = LettersOf(inside) - (code.Repaired ? 1 : 0);
    if (stems[std::u16string(inside.substr(0, letters))].size() >= 2) codes.push_back(std::move(code));
  }
}

// --- A word and its value, in a row with their label ------------------------------------------------------

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
  for (const Row& row : rows) {
    if (row.Cell > 0 && names.contains(row.Name)) cells.insert(row.Cell);
  }
  for (const Row& row : rows) {
    const bool inColumn = row.Cell > 0 && cells.contains(row.Cell);
    if (names.contains(row.Name) || inColumn) codes.push_back(TextCode(page, row.Words));
  }
}

// --- Between ideographs
// -------------------------------------------------------------------------------------

bool IsIdeograph(char16_t c) { return c > 0x2E80; }

// "S" in front of the ideographs for video, "1" behind those for computer.
bool IsNamePart(Text line, std::size_t labelFrom, std::size_t at) {
  std::size_t from = at;
  while (from > labelFrom && !IsIdeograph(line[from - 1])) --from;
  const Text between = line.substr(from, at - from);
  return between.find_last_not_of(u" ") == Text::npos || between.size() <= 2;
}

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
      if (span.To - span.From > 2 && IsDigit(line[span.From]) && line[span.From + 1] == u':') span.From += 2;
      const bool letter = at < line.size() && span.To == at && span.To - span.From > 3 &&
                          IsUpper(line[at - 1]) && line[at - 2] == u' ';
      if (letter) span.To -= 2;
      const Text text = page.At(span);
      if (from == 0 || text.size() < 2 || text.size() > kLongestText || !All(text, IsPrintable)) continue;
      if (!Any(text, IsLetter) || text.find_first_of(u"()|\t") != Text::npos) continue;
      const Function says = ClassifyLabel(line.substr(labelFrom, from - labelFrom));
      if (!SlotOf(says) && says.What != Subject::Other) continue;
      if (SlotOf(ClassifyLabel(text)) && ClassifyLabel(text).What != Subject::Power) continue;
      if (std::find(std::begin(kNoCommands), std::end(kNoCommands), text) != std::end(kNoCommands)) continue;
      codes.push_back(TextCode(page, span));
    }
  }
}

// --- In quotation marks, or behind a colon
// -------------------------------------------------------------------

bool LooksLikeCommand(Text text) {
  if (text.size() < 2 || text.size() > kLongestText || !All(text, IsPrintable)) return false;
  if (text.front() == u' ' || std::count(text.begin(), text.end(), u' ') > 3) return false;
  if (text.find_first_of(u"<>[]") != Text::npos || !Any(text, IsWordPart)) return false;
  // A word of a sentence has lower-case letters alone.
  const bool prose =
      Any(text, IsLower) && !Any(text, IsDigit) && text.find_first_of(u"=:_*#~%/.") == Text::npos;
  return !prose && std::find(std::begin(kNoCommands), std::end(kNoCommands), text) == std::end(kNoCommands);
}

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
      if (!quote && !gap && line[at] != u':' && line[at] != u'\t' && line[at] != u'=') continue;
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
      const Function says = ClassifyLabel(page.At(span));
      if (!LooksLikeCommand(page.At(span)) || (SlotOf(says) && says.Plain)) break;
      slots.insert(*slot);
      found.push_back(TextCode(page, span));
      break;
    }
  }
  if (slots.size() < 3) return;
  std::move(found.begin(), found.end(), std::back_inserter(codes));
}

// --- Families of tokens ------------------------------------------------------------------------------------

constexpr Text kLeadingSymbols = u"~*#%:@&!$/=_^;";

// Tokens that look alike have the same key: the first letter and the length of "C0A", the shape of "PON".
std::u16string FamilyOf(Text token) {
  if (token.size() < 2 || token.size() > 12 || !All(token, IsPrintable)) return {};
  if (kLeadingSymbols.find(token[0]) != Text::npos && IsWordPart(token[1]))
    return std::u16string(1, token[0]);
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
  return {};
}

bool IsCapitals(const std::u16string& family) {
  return family.size() >= 2 && family[0] == u'A' && family[1] == u'A';
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

void AddFamilies(const ManualPage& page, std::vector<Code>& codes) {
  std::vector<Member> members;
  std::map<std::u16string, std::set<std::u16string>> families;
  for (std::size_t number = 0; number < page.Lines.size(); ++number) {
    const Text line = page.Lines[number];
    const std::vector<Span> tokens = TokensOf(line, number);
    std::u16string before;
    for (std::size_t i = 0; i < tokens.size(); ++i) {
      const Span span = Bare(page, tokens[i]);
      const Text token = page.At(span);
      std::u16string family = FamilyOf(token);
      const bool known =
          family.empty() || ClassifyLabel(token).What != Subject::None ||
          std::find(std::begin(kNoCommands), std::end(kNoCommands), token) != std::end(kNoCommands);
      if (known) {
        before.clear();
        continue;
      }
      const auto bar = [&](std::size_t from, std::size_t to) {
        return line.substr(from, to - from).find_first_of(u"|\t") != Text::npos || to - from > 2;
      };
      const bool begins = i == 0 || bar(tokens[i - 1].To, tokens[i].From);
      const bool ends = i + 1 == tokens.size() || bar(tokens[i].To, tokens[i + 1].From);
      const bool edge = begins || ends || before == family;
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
    if (!member.Edge || size < (IsCapitals(member.Family) ? 4U : 3U)) continue;
    codes.push_back(TextCode(page, member.Where));
  }
}

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
  for (std::size_t line = 0; line < page.Lines.size(); ++line) AddTerminated(page, line, candidates);
  AddParenthesised(page, candidates);
  AddNamedValues(page, candidates);
  AddBetweenIdeographs(page, candidates);
  AddFamilies(page, candidates);
  AddMarkedRows(page, candidates);
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
