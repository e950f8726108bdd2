#include "manuals/character_readers.h"
#include "manuals/functions.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace qdm::characters {
namespace {

bool IsLowerWord(Text text) { return text.size() >= 2 && All(text, IsLower); }

// A value behind a command's name: a number, a state.
bool IsValueBehindName(Text token) {
  if (All(token, [](char16_t c) { return HexDigit(c) >= 0; }) && token.size() <= 4 && Any(token, IsDigit))
    return true;
  const std::u16string folded = FoldLetters(token);
  return folded == u"on" || folded == u"off" || folded == u"?" || folded == u"up" || folded == u"down";
}

bool IsQueryName(Text token) {
  return token == u"GET" || token == u"READ" || token == u"QUERY" || token == u"ASK" || token == u"SET";
}

// "STX Command ETX" draws a command and is none.
bool IsPartName(Text text) {
  const std::u16string folded = FoldLetters(text);
  for (const Text name :
       {u"command", u"data", u"parameter", u"value", u"code", u"function", u"cmd", u"bcc", u"checksum"}) {
    if (folded == name) return true;
  }
  return false;
}

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
  if (before == 0) return value == 2 ? number : std::nullopt;
  if (line[before - 1] == u'(') return std::nullopt;
  if (before >= 2 && (line[before - 1] == u'h' || line[before - 1] == u'H') &&
      HexDigit(line[before - 2]) >= 0)
    return std::nullopt;
  if (before >= 4 && HexDigit(line[before - 1]) >= 0 &&
      (line[before - 3] == u'x' || line[before - 3] == u'X'))
    return std::nullopt;
  return number;
}

// "\r", "\n", and the sign of the key.
std::optional<WrittenByte> EscapeAt(Text line, std::size_t at) {
  constexpr char16_t kReturnSigns[] = {0x21B5, 0x23CE};
  const CodeByte carriageReturn{13, ByteKind::CNT};
  if (std::find(std::begin(kReturnSigns), std::end(kReturnSigns), line[at]) != std::end(kReturnSigns)) {
    return WrittenByte{carriageReturn, at + 1, true, false, false};
  }
  if (line[at] != u'\\' || at + 1 >= line.size()) return std::nullopt;
  const bool ends = at + 2 >= line.size() || !IsWordPart(line[at + 2]);
  if (!ends) return std::nullopt;
  if (line[at + 1] == u'r') return WrittenByte{carriageReturn, at + 2, true, false, false};
  if (line[at + 1] == u'n') return WrittenByte{{10, ByteKind::CNT}, at + 2, true, false, false};
  return std::nullopt;
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
    if (!control) control = EscapeAt(line, at);
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

// "pw1" followed by <CR>: where the characters end when words lead over to the terminator.
std::size_t WithoutLink(Text line, const Span& region) {
  constexpr Text kLinks[] = {u"followed by a carriage return",
                             u"followed by",
                             u"and then",
                             u"and",
                             u"then",
                             u"gefolgt von",
                             u"und",
                             u"suivi de",
                             u"puis",
                             u"et",
                             u"seguido de",
                             u"seguido por",
                             u"y",
                             u"seguito da",
                             u"e",
                             u"a",
                             u"un"};
  std::size_t to = region.To;
  for (int times = 0; times < 2; ++times) {
    const std::u16string folded = FoldLetters(line.substr(region.From, to - region.From));
    for (const Text link : kLinks) {
      const bool ends = folded.size() > link.size() + 1 &&
                        Text(folded).substr(folded.size() - link.size()) == link &&
                        folded[folded.size() - link.size() - 1] == u' ';
      if (!ends) continue;
      to -= link.size();
      while (to > region.From && line[to - 1] == u' ') --to;
      break;
    }
  }
  const bool quoted = to > region.From && (line[to - 1] == u'"' || line[to - 1] == u'\'');
  return quoted ? to : region.To;
}

// Where the text before a terminator begins, which ends at `to`: letters set apart, or a name with its value.
Span TextBefore(const ManualPage& page, Span region) {
  const Text line = page.Lines[region.Line];
  region = Trim(page, region);
  while (region.To > region.From &&
         (line[region.To - 1] == u'+' || line[region.To - 1] == u',' || line[region.To - 1] == u' '))
    --region.To;
  region.To = WithoutLink(line, region);
  if (region.From == region.To) return region;
  const char16_t quote = line[region.To - 1];
  if (quote == u'"' || quote == u'\'') {
    if (const Span apart = QuotedCharacters(line, region); apart.From < apart.To) return apart;
    const std::size_t open = region.To >= 2 ? line.substr(0, region.To - 1).rfind(quote) : Text::npos;
    if (open == Text::npos || open < region.From) return {region.Line, region.To, region.To};
    return Trim(page, {region.Line, open + 1, region.To - 1});
  }
  // Nothing before the last few words can belong to the command.
  constexpr std::size_t kReach = 120;
  const std::size_t from = std::max(region.From, region.To - std::min(region.To, kReach));
  std::vector<Span> tokens = TokensOf(line.substr(from, region.To - from), region.Line);
  for (Span& token : tokens) {
    token.From += from;
    token.To += from;
  }
  if (tokens.empty()) return {region.Line, region.To, region.To};
  std::size_t first = tokens.size() - 1;
  if (tokens[first].To - tokens[first].From == 1 && first > 0) {
    while (first > 0 && tokens[first - 1].To - tokens[first - 1].From == 1) --first;
  }
  const bool single = first + 1 < tokens.size();
  const auto word = [&](std::size_t i) { return All(page.At(tokens[i]), IsLower); };
  while (!single && first > 0 && word(first - 1) == word(first) &&
         IsValueBehindName(page.At(tokens[first])) && IsWordPart(line[tokens[first].From]) &&
         tokens[first].From - tokens[first - 1].To == 1) {
    --first;
  }
  // "GET POWER": the word that makes it a query.
  if (!single && first > 0 && tokens[first].From - tokens[first - 1].To == 1 &&
      IsQueryName(page.At(tokens[first - 1])))
    --first;
  // "ka 01 01" where its cell begins.
  const bool values = !single && first > 0 && tokens[first].From - tokens[first - 1].To == 1 &&
                      All(page.At(tokens[first]), IsDigit);
  const bool led = first > 1 && line[tokens[first - 2].To - 1] == u':';
  const bool cell = first == 1 || led || (first > 1 && tokens[first - 1].From - tokens[first - 2].To > 1);
  if (values && cell && word(first - 1) && tokens[first - 1].To - tokens[first - 1].From <= 3) --first;
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

void AddTerminatedOn(const ManualPage& page, std::size_t number, std::vector<Code>& codes) {
  const Text line = page.Lines[number];
  const std::vector<Marks> marks = MarksOf(line);
  // "<CR>*pow#<CR>": what stands free before a text and touches it leads it.
  const auto leads = [&](std::size_t i) {
    const bool free =
        marks[i].From == 0 || line[marks[i].From - 1] == u' ' || line[marks[i].From - 1] == u'|';
    const char16_t behind = line.substr(marks[i].To, 1).empty() ? u' ' : line[marks[i].To];
    const bool touches =
        behind != u' ' && behind != u';' && behind != u',' && behind != u'.' && behind != u')';
    return free && i + 1 < marks.size() && (touches || marks[i].Bytes.front().Value == 2);
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
    if (IsPartName(characters)) continue;
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

}  // namespace

void AddTerminated(const ManualPage& page, std::vector<Code>& codes) {
  for (std::size_t line = 0; line < page.Lines.size(); ++line) AddTerminatedOn(page, line, codes);
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

}  // namespace qdm::characters
