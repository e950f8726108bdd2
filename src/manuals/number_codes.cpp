#include "manuals/codes.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace qdm {
namespace {

using Text = std::u16string_view;

char16_t CharAt(Text line, std::size_t at) { return at < line.size() ? line[at] : u'\0'; }

// The digit, or 0 for the letter that extraction takes for it.
int DigitOrO(char16_t c, bool& repaired) {
  if (c != u'O' && c != u'o') return HexDigit(c);
  repaired = true;
  return 0;
}

std::optional<WrittenByte> PairAt(Text line, std::size_t at, std::size_t digits = 2) {
  if (at + digits > line.size()) return std::nullopt;
  WrittenByte byte;
  int value = 0;
  for (std::size_t i = at; i < at + digits; ++i) {
    const int digit = DigitOrO(line[i], byte.Repaired);
    if (digit < 0) return std::nullopt;
    value = value * 16 + digit;
  }
  byte.Byte = {static_cast<std::uint8_t>(value), ByteKind::HEX};
  byte.End = at + digits;
  return byte;
}

std::optional<WrittenByte> Prefixed(Text line, std::size_t at) {
  const char16_t first = line[at];
  const char16_t second = CharAt(line, at + 1);
  std::size_t digits = 0;
  if ((first == u'0' || first == u'O') && (second == u'x' || second == u'X')) digits = at + 2;
  if (first == u'\\' && (second == u'x' || second == u'X')) digits = at + 2;
  if (first == u'&' && (second == u'h' || second == u'H')) digits = at + 2;
  if (first == u'$') digits = at + 1;
  if (digits == 0) return std::nullopt;
  if (first != u'\\' && at > 0 && IsWordPart(line[at - 1])) return std::nullopt;
  auto byte = PairAt(line, digits);
  if (!byte) {
    byte = PairAt(line, digits, 1);
    if (!byte || IsWordPart(CharAt(line, byte->End))) return std::nullopt;
  }
  if (first == u'$' && IsWordPart(CharAt(line, byte->End))) return std::nullopt;
  byte->Marked = true;
  byte->Glued = first != u'$';
  return byte;
}

std::optional<WrittenByte> Suffixed(Text line, std::size_t at) {
  for (const std::size_t digits : {std::size_t{2}, std::size_t{3}, std::size_t{1}}) {
    auto byte = PairAt(line, at, digits);
    if (!byte || (digits == 3 && line[at] != u'0')) continue;
    const char16_t mark = CharAt(line, byte->End);
    if (mark != u'h' && mark != u'H') continue;
    // "02H00H" runs on, "02Hertz" and "Character" do not.
    const std::size_t behind = byte->End + 1;
    std::size_t before = at;
    while (before > 0 && line[before - 1] == u' ') --before;
    const bool inRun = before > 2 && line[before - 1] == mark && HexDigit(line[before - 2]) >= 0 &&
                       HexDigit(line[before - 3]) >= 0;
    const bool label = inRun && (IsUpper(CharAt(line, behind)) || CharAt(line, behind) > 0x2E80);
    if (!label && IsWordPart(CharAt(line, behind)) &&
        (digits == 1 || !PairAt(line, behind) || CharAt(line, behind + 2) != mark))
      continue;
    ++byte->End;
    byte->Marked = byte->Glued = true;
    return byte;
  }
  return std::nullopt;
}

std::optional<WrittenByte> BarePair(Text line, std::size_t at) {
  auto byte = PairAt(line, at);
  const char16_t behind = CharAt(line, at + 2);
  if (!byte || IsWordPart(behind) || behind == u'_') return std::nullopt;
  // "/b1" is a command in characters.
  if (at > 0 && Text(u"/~#@!%").find(line[at - 1]) != Text::npos && !IsDigit(line[at])) return std::nullopt;
  const bool lower = IsLower(line[at]) || IsLower(line[at + 1]);
  const bool upper = IsUpper(line[at]) || IsUpper(line[at + 1]);
  if ((lower && upper) || (byte->Repaired && lower)) return std::nullopt;
  // Two letters O are no number, and "to" is a word.
  if (byte->Repaired && line[at] == u'O' && line[at + 1] == u'O') return std::nullopt;
  return byte;
}

struct ControlName {
  Text Name;
  std::uint8_t Value;
};
constexpr ControlName kControlNames[] = {{u"CARRIAGE RETURN", 13},
                                         {u"ENTER", 13},
                                         {u"RETURN", 13},
                                         {u"STX", 2},
                                         {u"ETX", 3},
                                         {u"EOT", 4},
                                         {u"ENQ", 5},
                                         {u"ACK", 6},
                                         {u"NAK", 21},
                                         {u"SOH", 1},
                                         {u"NUL", 0},
                                         {u"ESC", 27},
                                         {u"CR", 13},
                                         {u"LF", 10},
                                         {u"SPACE", 32},
                                         {u"SP", 32},
                                         {u"ETB", 23},
                                         {u"TAB", 9}};

char16_t Closing(char16_t open) {
  switch (open) {
    case u'<':
      return u'>';
    case u'[':
      return u']';
    case u'(':
      return u')';
    case u'{':
      return u'}';
    default:
      return u'\0';
  }
}

bool StartsWithName(Text line, std::size_t at, Text name, bool anyCase) {
  if (at + name.size() > line.size()) return false;
  for (std::size_t i = 0; i < name.size(); ++i) {
    char16_t c = line[at + i];
    if (anyCase && IsLower(c)) c = static_cast<char16_t>(c - 32);
    if (c != name[i]) return false;
  }
  return true;
}

// A run that is being read.
struct NumberRun {
  Code Made;
  std::size_t From = 0;
  std::size_t To = 0;
  std::size_t Marked = 0;
};

// What may stand between two bytes of one code. A long gap is another column of the table.
std::size_t NextByte(Text line, std::size_t at) {
  std::size_t blanks = 0;
  std::size_t marks = 0;
  while (at < line.size()) {
    const char16_t c = line[at];
    if (c == u' ') {
      ++blanks;
    } else if (c == u',' || c == u'.' || c == u'-' || c == u':' || c == u'+' || c == u';') {
      ++marks;
    } else {
      break;
    }
    ++at;
  }
  return blanks > 12 || marks > 1 ? line.size() : at;
}

// A number, or a control name that opens or closes a list of numbers; names among characters are another
// column of the table.
std::optional<WrittenByte> ElementAt(Text line, std::size_t at, const CodeBytes& before) {
  if (auto number = NumberAt(line, at)) return number;
  auto control = ControlAt(line, at);
  if (!control) return std::nullopt;
  const std::uint8_t value = control->Byte.Value;
  const bool opens = value == 1 || value == 2 || value == 27;
  if (before.empty()) return opens && NumberAt(line, NextByte(line, control->End)) ? control : std::nullopt;
  return opens ? std::nullopt : control;
}

// "*1", "XX", "n", "3": what stands in a list of pairs for a byte that is not printed.
std::size_t PlaceholderAt(Text line, std::size_t at) {
  std::size_t end = at;
  while (end < line.size() && (IsWordPart(line[end]) || line[end] == u'*' || line[end] == u'?')) ++end;
  if (end == at || end - at > 2 || (end < line.size() && line[end] > 0x2E80)) return 0;
  return end - at;
}

// The next column of the table: behind a gap, with the byte that the code before it began with.
bool BeginsAnother(Text line, std::size_t end, std::size_t next, const CodeBytes& before) {
  constexpr std::size_t kGap = 3;
  constexpr std::size_t kShortest = 3;
  if (next - end < kGap || before.size() < kShortest) return false;
  // Behind a terminator begins the column of the answers.
  const std::uint8_t last = before.back().Value;
  if (last == 0x0D || last == 0x0A || last == 0x03) return true;
  const auto number = NumberAt(line, next);
  return number && number->Byte.Value == before.front().Value;
}

// "ka 01 01[CR]": pairs that a name right before them and a named terminator make characters.
bool EndsCharacters(Text line, const NumberRun& run) {
  const CodeBytes& bytes = run.Made.Bytes;
  if (bytes.size() < 2 || bytes.back().Kind != ByteKind::CNT || bytes.back().Value != 13) return false;
  const bool bare = std::all_of(bytes.begin(), bytes.end() - 1,
                                [](const CodeByte& byte) { return byte.Kind == ByteKind::HEX; });
  const bool marked = run.Marked > 1 || (run.Marked == 1 && HexDigit(line[run.To - 1]) >= 0);
  if (!bare || marked || run.From < 3 || line[run.From - 1] != u' ') return false;
  std::size_t letters = 0;
  while (letters + 1 < run.From && IsLetter(line[run.From - 2 - letters])) ++letters;
  constexpr std::size_t kLongestName = 4;
  const std::size_t before = run.From - 1 - letters;
  return letters >= 2 && letters <= kLongestName && (before == 0 || line[before - 1] == u' ') &&
         HexDigit(line[run.From]) >= 0;
}

void Close(NumberRun& run, Text text, std::size_t line, std::vector<Code>& codes) {
  Code& code = run.Made;
  const std::size_t count = code.Bytes.size();
  const bool numbers = std::any_of(code.Bytes.begin(), code.Bytes.end(),
                                   [](const CodeByte& byte) { return byte.Kind == ByteKind::HEX; });
  const bool enough = run.Marked > 0 || count >= 2;
  if (numbers && enough && !EndsCharacters(text, run)) {
    code.Where = {{line, run.From, run.To}};
    code.Marked = run.Marked > 0;
    code.Framed = true;
    codes.push_back(std::move(code));
  }
  run = {};
}

bool BeginsNumber(Text line, std::size_t at) {
  if (at == 0) return true;
  return !IsWordPart(line[at - 1]) && line[at - 1] != u'_';
}

// "XX", "nn", "**", "--": two like signs are a byte that is not printed, whatever follows.
bool IsRepeatedPlaceholder(Text line, std::size_t at) {
  constexpr Text kSigns = u"XxYyZzNnMm*?-_#";
  const char16_t sign = CharAt(line, at);
  const char16_t behind = CharAt(line, at + 2);
  return kSigns.find(sign) != Text::npos && CharAt(line, at + 1) == sign && behind != sign &&
         (behind == u'h' || behind == u'H' || !IsWordPart(behind));
}

// "CHK", "<CKS>", "[CS]": the name of a check sum that is not printed; where it ends.
std::size_t SumNameEnd(Text line, std::size_t at) {
  constexpr Text kNames[] = {u"CHECKSUM", u"CHK SUM", u"CHKSUM", u"CHECK", u"CKSUM", u"CHK",
                             u"CKS",      u"SUM",     u"BCC",    u"FCS",   u"LRC",   u"XOR",
                             u"CRC-16",   u"CRC16",   u"CRC",    u"CS",    u"CK"};
  const char16_t closing = Closing(CharAt(line, at));
  const std::size_t from = closing == u'\0' ? at : at + 1;
  for (const Text name : kNames) {
    if (!StartsWithName(line, from, name, true)) continue;
    const std::size_t end = from + name.size();
    if (closing != u'\0') return CharAt(line, end) == closing ? end + 1 : 0;
    return IsWordPart(CharAt(line, end)) || CharAt(line, end) == u'_' ? 0 : end;
  }
  return 0;
}

// A column of characters in hexadecimal digits without blanks: "BEEF0306".
std::optional<std::size_t> GluedDigits(Text line, std::size_t at) {
  std::size_t end = at;
  bool digit = false;
  bool letter = false;
  while (end < line.size() && HexDigit(line[end]) >= 0 && !IsLower(line[end])) {
    digit |= IsDigit(line[end]);
    letter |= !IsDigit(line[end]);
    ++end;
  }
  const std::size_t length = end - at;
  if (length < 6 || length % 2 != 0 || length > 2 * kLongestCode || IsWordPart(CharAt(line, end)))
    return std::nullopt;
  if (!digit || (!letter && length < 8)) return std::nullopt;
  return end;
}

// A byte of a code that is not printed: what stands for it, 0 for a check sum.
struct Hole {
  std::size_t End = 0;
  std::uint8_t Sign = 0;
};

std::optional<Hole> HoleAt(Text line, std::size_t at, const Code& code) {
  const std::size_t count = code.Bytes.size();
  if (count < 2 || at >= line.size()) return std::nullopt;
  const auto sign = static_cast<std::uint8_t>(line[at]);
  if (IsRepeatedPlaceholder(line, at)) return Hole{at + 2, sign};
  if (ElementAt(line, at, code.Bytes)) return std::nullopt;
  if (count > 2 && !code.Broken) {
    if (const std::size_t end = SumNameEnd(line, at)) return Hole{end, 0};
  }
  const std::size_t length = PlaceholderAt(line, at);
  if (length == 0 || IsUpper(line[at])) return std::nullopt;
  const std::size_t next = NextByte(line, at + length);
  const bool goesOn = next < line.size() ? NumberAt(line, next).has_value() : at + length >= line.size();
  return goesOn ? std::optional(Hole{at + length, sign}) : std::nullopt;
}

void FindOnLine(Text line, std::size_t number, std::vector<Code>& codes) {
  NumberRun run;
  std::size_t at = 0;
  while (at < line.size()) {
    if (run.Made.Bytes.empty() && BeginsNumber(line, at)) {
      if (const auto end = GluedDigits(line, at)) {
        run.From = at;
        for (; at < *end; at += 2) run.Made.Bytes.push_back(PairAt(line, at)->Byte);
        run.To = at;
        Close(run, line, number, codes);
        continue;
      }
    }
    auto byte = ElementAt(line, at, run.Made.Bytes);
    if (!byte) {
      Close(run, line, number, codes);
      ++at;
      continue;
    }
    if (run.Made.Bytes.empty()) run.From = at;
    run.Made.Bytes.push_back(byte->Byte);
    run.Made.Places.push_back(at);
    run.Made.Repaired |= byte->Repaired;
    if (byte->Marked) ++run.Marked;
    run.To = byte->End;
    at = NextByte(line, byte->End);
    if (at >= line.size()) break;
    if (BeginsAnother(line, byte->End, at, run.Made.Bytes)) {
      Close(run, line, number, codes);
      continue;
    }
    constexpr std::size_t kColumnGap = 4;
    run.Made.Gapped |= at - byte->End >= kColumnGap && run.Made.Bytes.size() > 1;
    while (const auto hole = HoleAt(line, at, run.Made)) {
      run.Made.Broken = true;
      run.Made.Bytes.push_back({hole->Sign, ByteKind::VAR});
      run.Made.Places.push_back(at);
      run.To = hole->End;
      at = NextByte(line, hole->End);
    }
    if (at >= line.size()) break;
    if (!ElementAt(line, at, run.Made.Bytes)) {
      at = run.To;
      Close(run, line, number, codes);
    }
  }
  Close(run, line, number, codes);
}

}  // namespace

namespace {

// "POWER ON02H01H00H": a label that has run into its code.
bool RunsOutOfLabel(Text line, std::size_t at) {
  const auto marked = [&](std::size_t from) {
    const char16_t mark = CharAt(line, from + 2);
    return HexDigit(CharAt(line, from)) >= 0 && HexDigit(CharAt(line, from + 1)) >= 0 &&
           (mark == u'h' || mark == u'H');
  };
  const bool label =
      IsLetter(line[at - 1]) || (IsDigit(line[at - 1]) && at > 1 && HexDigit(line[at - 2]) < 0);
  return IsDigit(line[at]) && label && marked(at) &&
         (marked(at + 3) || (CharAt(line, at + 3) == u' ' && marked(at + 4)));
}

}  // namespace

std::optional<WrittenByte> NumberAt(Text line, std::size_t at) {
  if (at >= line.size()) return std::nullopt;
  if (auto byte = Prefixed(line, at)) return byte;
  const bool free = BeginsNumber(line, at);
  const bool follows =
      at > 1 && (line[at - 1] == u'h' || line[at - 1] == u'H') && HexDigit(line[at - 2]) >= 0;
  if (!free && !follows && !RunsOutOfLabel(line, at)) return std::nullopt;
  if (auto byte = Suffixed(line, at)) return byte;
  return free ? BarePair(line, at) : std::nullopt;
}

std::optional<WrittenByte> ControlAt(Text line, std::size_t at) {
  if (at >= line.size()) return std::nullopt;
  const char16_t closing = Closing(line[at]);
  std::size_t name = at;
  if (closing != u'\0') {
    ++name;
    while (CharAt(line, name) == u' ') ++name;
  } else if (!IsUpper(line[at]) || (at > 0 && (IsWordPart(line[at - 1]) || line[at - 1] == u'_'))) {
    return std::nullopt;
  }
  for (const ControlName& control : kControlNames) {
    if (!StartsWithName(line, name, control.Name, closing != u'\0')) continue;
    std::size_t end = name + control.Name.size();
    WrittenByte byte{
        {control.Value, control.Value == 32 ? ByteKind::ASC : ByteKind::CNT}, end, false, false, false};
    if (closing == u'\0') {
      // Words that a sentence uses are bytes only in brackets.
      if (control.Name.size() > 3 || IsWordPart(CharAt(line, end)) || CharAt(line, end) == u'_')
        return std::nullopt;
      return byte;
    }
    while (CharAt(line, end) == u' ') ++end;
    if (CharAt(line, end) != closing) continue;
    byte.End = end + 1;
    byte.Marked = true;
    return byte;
  }
  return std::nullopt;
}

std::vector<Code> FindNumberCodes(const ManualPage& page) {
  std::vector<Code> codes;
  for (std::size_t line = 0; line < page.Lines.size(); ++line) FindOnLine(page.Lines[line], line, codes);
  return codes;
}

CodeBytes Characters(Text text) {
  CodeBytes bytes;
  for (const char16_t c : text) {
    bytes.push_back({static_cast<std::uint8_t>(c < 0x100 ? c : u'?'), ByteKind::ASC});
  }
  return bytes;
}

SerialString SerialStringOf(const CodeBytes& bytes) {
  SerialString string;
  for (const CodeByte& byte : bytes) {
    if (string.BytesInUse() == kMaximumStringBytes) break;
    const std::size_t at = string.BytesInUse();
    string.Values[at] = byte.Value;
    string.Kinds[at] = static_cast<std::uint8_t>(byte.Kind);
    ++string.Count;
  }
  return string;
}

std::vector<std::uint8_t> Values(const CodeBytes& bytes) {
  std::vector<std::uint8_t> values;
  for (const CodeByte& byte : bytes) values.push_back(byte.Value);
  return values;
}

bool SameValues(const CodeBytes& a, const CodeBytes& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](const CodeByte& x, const CodeByte& y) { return x.Value == y.Value; });
}

}  // namespace qdm
