#include "serial_strings/text_parts.h"

#include "base/code_page.h"
#include "serial_strings/byte_list.h"
#include "serial_strings/code_notation.h"
#include "serial_strings/coded_text.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

namespace qdm {
namespace {

using Text = std::u16string_view;

bool IsLineEnd(char16_t c) { return (c >= 10 && c <= 13) || c == 0x85 || c == 0x2028 || c == 0x2029; }

Text Slice(Text text, std::size_t from, std::size_t to) { return TrimSpace(text.substr(from, to - from)); }

bool HoldsBytes(Text text) {
  const ByteList list = ReadByteList(text, Unmarked::Hexadecimal);
  if (IsByteList(list, text) && (list.Marked > 0 || list.Packed || list.Items > 2)) return true;
  const ByteList decimal = ReadByteList(text, Unmarked::Decimal);
  return IsByteList(decimal, text) && decimal.Items > 2;
}

bool HoldsManyBytes(Text text) {
  const ByteList list = ReadByteList(text, Unmarked::Hexadecimal);
  return IsByteList(list, text) && list.Read.String.Count > 2;
}

bool HoldsCodes(Text text) {
  const auto readings = ReadCodedText(text, Unmarked::HexadecimalAfterNames);
  return !readings.empty() && !readings.front().Read.Problem && readings.front().Doubts == 0;
}

bool LooksLikeCommand(Text text) { return HoldsBytes(text) || HoldsCodes(text); }

bool HasLower(Text text) { return std::any_of(text.begin(), text.end(), IsLower); }

// ---- labels before the command ----

struct NotationLabel {
  Text Name;
  std::optional<Unmarked> Base;
  bool AloneIsEnough;  // without a colon
};
constexpr NotationLabel kNotationLabels[] = {
    {u"HEXADECIMAL", Unmarked::Hexadecimal, true},
    {u"HEX", Unmarked::Hexadecimal, true},
    {u"0X", Unmarked::Hexadecimal, true},
    {u"DECIMAL", Unmarked::Decimal, true},
    {u"DEC", Unmarked::Decimal, true},
    {u"BINARY", Unmarked::Binary, true},
    {u"BIN", Unmarked::Binary, true},
    {u"ASCII", std::nullopt, true},
    {u"STRING", std::nullopt, false},
    {u"COMMAND", std::nullopt, false},
    {u"CMD", std::nullopt, false},
    {u"CODE", std::nullopt, false},
    {u"SEND", std::nullopt, false},
    {u"TX", std::nullopt, false},
    {u"RS232", std::nullopt, false},
    {u"RS-232", std::nullopt, false},
    {u"RS-232C", std::nullopt, false},
};

// "Hex: 02 00", "(HEX) 02 00", "ASCII PON".
std::optional<TextPart> AfterNotationLabel(Text text) {
  const bool bracketed = text.front() == u'(' || text.front() == u'[';
  const std::size_t start = bracketed ? 1 : 0;
  const std::u16string upper = UpperCase(text.substr(start, 12));
  for (const NotationLabel& label : kNotationLabels) {
    if (!Text(upper).starts_with(label.Name)) continue;
    std::size_t at = start + label.Name.size();
    if (bracketed && (at >= text.size() || (text[at] != u')' && text[at] != u']'))) continue;
    at += bracketed ? 1U : 0U;
    const std::size_t end = std::min(text.find_first_not_of(u' ', at), text.size());
    const bool colon = end < text.size() && (text[end] == u':' || text[end] == u'=');
    const bool alone = label.AloneIsEnough && end > at;
    if (!colon && !alone && !bracketed) continue;
    const Text rest = Slice(text, end + (colon ? 1U : 0U), text.size());
    if (!rest.empty()) return TextPart{rest, label.Base};
  }
  return std::nullopt;
}

// "02 50 0D (hex)", "02 50 0D hex".
std::optional<TextPart> BeforeNotationLabel(Text text) {
  const std::u16string upper = UpperCase(text);
  for (const NotationLabel& label : kNotationLabels) {
    if (!label.Base) continue;
    for (const std::u16string& tail :
         {u"(" + std::u16string(label.Name) + u")", u"[" + std::u16string(label.Name) + u"]",
          u" " + std::u16string(label.Name)}) {
      if (!Text(upper).ends_with(tail)) continue;
      const Text rest = Slice(text, 0, text.size() - tail.size());
      if (!rest.empty()) return TextPart{rest, label.Base};
    }
  }
  return std::nullopt;
}

bool IsLabel(Text text) {
  const auto fits = [](char16_t c) {
    return IsWordPart(c) || c >= 0xA0 || Text(u" ()/-_.&'").find(c) != Text::npos;
  };
  constexpr std::size_t kShortestOffset = 4;  // "00000000: 02 50"
  return std::all_of(text.begin(), text.end(), fits) &&
         (text.size() >= kShortestOffset || std::any_of(text.begin(), text.end(), IsLetter));
}

// "Power on: PON", "Power on = PON", "Power on -> PON", "1) PON", "> PON".
std::optional<TextPart> AfterLabel(Text text) {
  for (const Text mark :
       {Text(u": "), Text(u":\t"), Text(u" = "), Text(u"->"), Text(u"=>"), Text(u" .."), Text(u" - ")}) {
    const std::size_t at = text.find(mark);
    if (at == Text::npos || at == 0 || !IsLabel(TrimSpace(text.substr(0, at)))) continue;
    if (mark == u" - " && !HasLower(text.substr(0, at))) continue;
    Text rest = Slice(text, at + mark.size(), text.size());
    while (mark == u" .." && rest.starts_with(u'.')) rest.remove_prefix(1);  // dots lead to the command
    if (!TrimSpace(rest).empty()) return TextPart{TrimSpace(rest), std::nullopt};
  }
  std::size_t digits = text.starts_with(u'(') ? 1 : 0;
  while (digits < text.size() && IsDigit(text[digits])) ++digits;
  const bool numbered = digits > 0 && digits + 2 < text.size() && IsBlank(text[digits + 1]) &&
                        (text[digits] == u'.' || text[digits] == u')');
  if (numbered) return TextPart{Slice(text, digits + 1, text.size()), std::nullopt};
  const std::size_t prompt = text.find_first_not_of(u'>');
  if (prompt != Text::npos && prompt > 0 && text[prompt] == u' ') {
    return TextPart{Slice(text, prompt, text.size()), std::nullopt};
  }
  if (text.size() > 2 && text[0] == u'-' && text[1] == u' ') return TextPart{Slice(text, 1, text.size()), {}};
  return std::nullopt;
}

// "Power on 02 00 0D": words, then bytes that are more than an ending of the words.
std::optional<TextPart> BytesAfterWords(Text text) {
  if (!IsLetter(text[0]) || HoldsBytes(text)) return std::nullopt;
  constexpr std::size_t kMostWords = 12;
  std::size_t at = 0;
  for (std::size_t word = 0; word < kMostWords; ++word) {
    at = text.find(u' ', at);
    if (at == Text::npos) return std::nullopt;
    at = text.find_first_not_of(u' ', at);
    if (at == Text::npos) return std::nullopt;
    const Text rest = text.substr(at);
    if (!IsWordPart(rest[0]) && rest[0] != u'$' && rest[0] != u'\\') continue;
    const bool isDigit = EndOfWord(rest, 0) == 1;  // "k a 1 1": parameters
    const ByteList list = ReadByteList(rest, Unmarked::Hexadecimal);
    if (isDigit || !IsByteList(list, rest)) continue;
    const auto& values = list.Read.String.Values;
    const bool isEnding =
        list.Read.String.Count <= 2 && (values[0] == 13 || values[0] == 10 || values[0] == 3);
    const bool enough = list.Packed ? list.Read.String.Count > 2 : list.Bytes > 2 || list.Marked > 1;
    return enough && !isEnding ? std::optional(TextPart{rest, std::nullopt}) : std::nullopt;
  }
  return std::nullopt;
}

// "02 00 0D Power on".
std::optional<TextPart> BytesBeforeWords(Text text) {
  if (!IsHexDigit(text[0]) || HoldsBytes(text)) return std::nullopt;
  for (std::size_t at = text.find(u' '); at != Text::npos; at = text.find(u' ', at + 1)) {
    const Text before = TrimSpace(text.substr(0, at));
    const Text after = TrimSpace(text.substr(at));
    const bool isWord = EndOfWord(after, 0) > 2 && IsLetter(after[0]) && HasLower(after);
    if (!isWord || !HoldsBytes(before)) continue;
    return TextPart{before, std::nullopt};
  }
  return std::nullopt;
}

// ---- remarks behind the command ----

std::optional<TextPart> BeforeRemark(Text text) {
  for (const Text mark : {Text(u" //"), Text(u"/*"), Text(u" ; "), Text(u" # "), Text(u" -- "), Text(u" <-"),
                          Text(u";;"), Text(u"\t//"), Text(u",//"), Text(u" ' ")}) {
    const std::size_t at = text.find(mark);
    if (at == Text::npos || at == 0) continue;
    if (mark == u" ; " && HoldsBytes(text)) continue;
    Text rest = Slice(text, 0, at);
    while (rest.ends_with(u',') || rest.ends_with(u';')) rest.remove_suffix(1);
    if (!rest.empty()) return TextPart{rest, std::nullopt};
  }
  return std::nullopt;
}

// "50 57 0D (power on)"; what the brackets hold may as well be the bytes.
std::optional<TextPart> BesideBrackets(Text text) {
  if (text.back() != u')' && text.back() != u']') return std::nullopt;
  const std::size_t open = text.rfind(text.back() == u')' ? u" (" : u" [");
  if (open == Text::npos || open == 0) return std::nullopt;
  const Text before = Slice(text, 0, open);
  const Text inside = Slice(text, open + 2, text.size() - 1);
  const auto code = ReadCode(text, open + 1, Unmarked::HexadecimalAfterNames, true);
  if (code || before.empty() || inside.empty()) return std::nullopt;
  if (HoldsBytes(inside) && !HoldsBytes(before)) return TextPart{inside, std::nullopt};
  return TextPart{before, std::nullopt};
}

// "PON<CR> Power on": an end, a blank and words.
std::optional<TextPart> UpToTerminator(Text text) {
  std::size_t at = 0;
  bool any = false;
  while (at < text.size()) {
    const auto code = ReadCode(text, at, Unmarked::HexadecimalAfterNames, true);
    if (!code || !code->Certain) {
      ++at;
      continue;
    }
    any = at > 0;
    at = code->End;
    const std::uint8_t value = code->Bytes[0].Value;
    const bool isEnd = any && (value == 13 || value == 10 || value == 3);
    std::size_t next = at;
    while (next < text.size() && IsBlank(text[next])) ++next;
    if (!isEnd || next == text.size() || !IsWordPart(text[next])) continue;
    const bool more = ReadCode(text, next, Unmarked::HexadecimalAfterNames, true).has_value();
    const bool anotherCommand = HoldsCodes(text.substr(next)) && value == 13;
    if (!more && (next > at || anotherCommand)) return TextPart{text.substr(0, at), std::nullopt};
  }
  return std::nullopt;
}

// ---- a program around the command ----

// "byte on[] = {0x02, 0x0D};", "[2, 80, 13]", "<02 50 03>".
std::optional<TextPart> InBraces(Text text) {
  constexpr Text kOpening = u"{[(<";
  constexpr Text kClosing = u"}])>";
  for (std::size_t which = 0; which < kOpening.size(); ++which) {
    const std::size_t close = text.rfind(kClosing[which]);
    const std::size_t open = text.find(kOpening[which]);
    if (close == Text::npos || open == Text::npos || open > close) continue;
    if (text.substr(close + 1).find_first_not_of(u"; )") != Text::npos) continue;
    const Text before = TrimSpace(text.substr(0, open));
    if (!before.empty() && !(which == 0 && before.find(u'[') != Text::npos) && !before.ends_with(u'=') &&
        !before.ends_with(u'(') && !(which == 2 && IsWordPart(before.back()) && HasLower(before))) {
      continue;
    }
    const Text inside = Slice(text, open + 1, close);
    if (inside.size() < 4 || std::none_of(inside.begin(), inside.end(), IsDigit)) continue;
    const ByteList list = ReadByteList(inside, Unmarked::Hexadecimal);
    const ByteList decimal = ReadByteList(inside, Unmarked::Decimal);
    const bool hexadecimal = IsByteList(list, inside) && list.Items > 1;
    const bool isDecimal = IsByteList(decimal, inside) && decimal.Items > 1;
    // Numbers in programs are decimal unless they are marked.
    const bool program = isDecimal && decimal.Marked == 0 && !before.empty();
    if (program) return TextPart{inside, Unmarked::Decimal};
    if (hexadecimal || isDecimal) return TextPart{inside, std::nullopt};
  }
  return std::nullopt;
}

// "Send(\"PON\\r\");", "echo 'PON'": the quotation with its marks, or what the call holds.
std::optional<TextPart> InQuotation(Text text) {
  const std::size_t open = text.find_first_of(u"\"'");
  const std::size_t close = open == Text::npos ? open : text.rfind(text[open]);
  if (open == Text::npos || close <= open + 1) return std::nullopt;
  const Text before = text.substr(0, open);
  const Text after = text.substr(close + 1);
  if (before.empty() && after.empty()) {
    // "'PWR',$0D" in the double quotation marks of a controller's string; "02 50 0D".
    const Text inside = TrimSpace(text.substr(1, text.size() - 2));
    const bool holdsQuotation = inside.find_first_of(u"\"'") != Text::npos;
    const bool isBytes = holdsQuotation ? HoldsBytes(inside) : HoldsManyBytes(inside);
    return isBytes ? std::optional(TextPart{inside, {}}) : std::nullopt;
  }
  const bool isCall = !before.empty() && before.find_first_of(u"(=") != Text::npos && !HoldsBytes(text);
  const bool closed = after.find_first_not_of(u"); ") == Text::npos;
  const bool isWord = HasLower(before) && (IsBlank(before.back()) || before.back() == u',') && after.empty();
  if (isCall && closed) return TextPart{text.substr(open, close + 1 - open), std::nullopt};
  if (isCall && before.find(u'(') != Text::npos && text.rfind(u')') > close) {
    const std::size_t from = text.find(u'(');
    const Text arguments = Slice(text, from + 1, text.rfind(u')'));
    if (HoldsBytes(arguments)) return TextPart{arguments, std::nullopt};
  }
  return isWord && !HoldsBytes(text) ? std::optional(TextPart{text.substr(open), {}}) : std::nullopt;
}

// ---- cells of a table ----

std::vector<Text> SplitCells(Text text) {
  const bool tabs = text.find(u'\t') != Text::npos;
  const char16_t bar = tabs ? u'\t' : u'|';
  std::vector<Text> cells;
  const auto add = [&cells](Text cell) {
    if (!TrimSpace(cell).empty()) cells.push_back(TrimSpace(cell));
  };
  const bool blanks = !tabs && text.find(u'|') == Text::npos;
  for (std::size_t start = 0; start <= text.size();) {
    const std::size_t end = std::min(blanks ? text.find(u"  ", start) : text.find(bar, start), text.size());
    add(text.substr(start, end - start));
    start = end + 1;
  }
  return cells;
}

std::vector<TextPart> FindCells(Text text) {
  const bool marked = text.find_first_of(u"\t|") != Text::npos;
  if ((!marked && text.find(u"  ") == Text::npos) || HoldsBytes(text)) return {};
  std::vector<Text> cells = SplitCells(text);
  if (cells.size() < 2) return {};
  // "Power on", then a byte a cell.
  const Text others = Slice(text, static_cast<std::size_t>(cells[1].data() - text.data()), text.size());
  if (marked && HoldsManyBytes(others)) return {{others, std::nullopt}, {cells[0], std::nullopt}};
  if (!marked) {
    // Blanks within a command are usual: "POWR   1<CR>".
    const bool hasLabel = HasLower(cells.front()) && !LooksLikeCommand(cells.front());
    std::erase_if(cells,
                  [&](Text cell) { return hasLabel ? !LooksLikeCommand(cell) : !HoldsManyBytes(cell); });
  }
  std::stable_sort(cells.begin(), cells.end(),
                   [](Text a, Text b) { return LooksLikeCommand(a) && !LooksLikeCommand(b); });
  constexpr std::size_t kMostCells = 6;
  std::vector<TextPart> parts;
  for (const Text cell : cells) {
    if (parts.size() < kMostCells) parts.push_back({cell, std::nullopt});
  }
  return parts;
}

// "e.g. PON<CR>", "// 02 50 0D"
std::optional<TextPart> AfterExample(Text line) {
  constexpr Text kMarks[] = {u"e.g.", u"i.e.", u"z.B.", u"p.ex.", u"ex.:", u"eg.", u"//"};
  for (const Text mark : kMarks) {
    if (!line.starts_with(mark)) continue;
    const Text rest = TrimSpace(line.substr(mark.size()));
    if (!rest.empty()) return TextPart{rest, std::nullopt};
  }
  return std::nullopt;
}

}  // namespace

std::vector<TextPart> FindParts(Text line) {
  if (line.empty()) return {};
  using Rule = std::optional<TextPart> (*)(Text);
  constexpr Rule kRules[] = {AfterExample,   AfterNotationLabel, BeforeNotationLabel, BeforeRemark,
                             InBraces,       InQuotation,        AfterLabel,          UpToTerminator,
                             BesideBrackets, BytesAfterWords,    BytesBeforeWords};
  constexpr int kDeepest = 4;
  std::vector<TextPart> parts = FindCells(line);
  TextPart inner = parts.empty() ? TextPart{line, std::nullopt} : parts.front();
  for (int depth = 0; depth < kDeepest; ++depth) {
    std::optional<TextPart> next;
    for (const Rule rule : kRules) {
      if (!next) next = rule(inner.Content);
    }
    if (!next || next->Content.size() == inner.Content.size()) break;
    if (!next->Base) next->Base = inner.Base;
    inner = *next;
  }
  if (inner.Content.size() < (parts.empty() ? line.size() : parts.front().Content.size())) {
    parts.insert(parts.begin(), inner);
  }
  return parts;
}

std::vector<Text> SplitLines(Text text) {
  std::vector<Text> lines;
  for (std::size_t start = 0; start < text.size();) {
    std::size_t end = start;
    while (end < text.size() && !IsLineEnd(text[end])) ++end;
    const Text line = text.substr(start, end - start);
    if (!TrimSpace(line).empty()) lines.push_back(line);
    start = end + 1;
  }
  return lines;
}

}  // namespace qdm
