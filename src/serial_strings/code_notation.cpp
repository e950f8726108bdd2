#include "serial_strings/code_notation.h"

#include "base/code_page.h"
#include "serial_strings/reading_attempt.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qdm {
namespace {

using Text = std::u16string_view;

// "CARRIAGE RETURN (0x0D)" is shorter.
constexpr std::size_t kLongestBracket = 26;

NotedCode Coded(const NotedByte& byte, std::size_t end, bool certain) {
  NotedCode code;
  code.Append(byte);
  code.End = end;
  code.Certain = certain;
  return code;
}

NotedByte ControlByte(std::uint8_t value) { return {value, ByteKind::CNT, true}; }

// ---- behind a backslash ----

struct Escape {
  char16_t Letter;
  std::uint8_t Value;
  ByteKind Kind;
};
constexpr Escape kEscapes[] = {
    {u'a', 7, ByteKind::CNT},   {u'b', 8, ByteKind::CNT},     {u't', 9, ByteKind::CNT},
    {u'n', 10, ByteKind::CNT},  {u'v', 11, ByteKind::CNT},    {u'f', 12, ByteKind::CNT},
    {u'r', 13, ByteKind::CNT},  {u'e', 27, ByteKind::CNT},    {u'\\', '\\', ByteKind::ASC},
    {u'"', '"', ByteKind::ASC}, {u'\'', '\'', ByteKind::ASC}, {u'?', '?', ByteKind::ASC},
};

std::size_t EndOfDigits(Text text, std::size_t at, std::size_t room, bool (*isDigit)(char16_t)) {
  const std::size_t limit = std::min(text.size(), at + room);
  while (at < limit && isDigit(text[at])) ++at;
  return at;
}

std::optional<NotedByte> ValueOf(Text digits, int base) {
  int value = 0;
  for (const char16_t c : digits) value = value * base + (c - u'0');
  if (value > 255) return std::nullopt;
  return NotedByte{static_cast<std::uint8_t>(value), base == 10 ? ByteKind::DEC : ByteKind::HEX, true};
}

// "\015" is octal for programmers, "\13" decimal or "\0D" hexadecimal on some controllers.
std::optional<NotedCode> ReadBackslashDigits(Text text, std::size_t at, Unmarked unmarked) {
  const std::size_t hexEnd = EndOfDigits(text, at + 1, 2, IsHexDigit);
  if (unmarked == Unmarked::Hexadecimal && hexEnd == at + 3) {
    return Coded(*ReadNumber(text.substr(at + 1, 2), unmarked), hexEnd, false);
  }
  const bool decimal = unmarked == Unmarked::Decimal;
  const auto isOctal = [](char16_t c) { return c >= u'0' && c <= u'7'; };
  const std::size_t end = EndOfDigits(text, at + 1, 3, decimal ? IsDigit : isOctal);
  const Text digits = text.substr(at + 1, end - at - 1);
  const auto byte = ValueOf(digits, decimal ? 10 : 8);
  if (digits.empty() || !byte) return std::nullopt;
  const bool sameInAll = byte->Value < 8 && hexEnd == end;
  return Coded(*byte, end, sameInAll);
}

std::optional<NotedCode> ReadEscape(Text text, std::size_t at, Unmarked unmarked) {
  const char16_t letter = at + 1 < text.size() ? text[at + 1] : u'\0';
  if (text.substr(at + 1, 2) == u"0x" || text.substr(at + 1, 2) == u"0X") {
    const std::size_t end = EndOfDigits(text, at + 3, 2, IsHexDigit);
    const auto byte = ReadNumber(text.substr(at + 3, end - at - 3), Unmarked::Hexadecimal);
    if (byte) return Coded(*byte, end, false);
  }
  if (IsDigit(letter)) return ReadBackslashDigits(text, at, unmarked);
  std::size_t first = at + 2;
  std::size_t room = 0;
  if (letter == u'x' || letter == u'X') room = 2;
  if (letter == u'u' && text.substr(first, 2) == u"00") {
    first += 2;
    room = 2;
  }
  if (room > 0) {
    const std::size_t end = EndOfDigits(text, first, room, IsHexDigit);
    const auto byte = ReadNumber(text.substr(first, end - first), Unmarked::Hexadecimal);
    if (!byte) return std::nullopt;
    return Coded(*byte, end, true);
  }
  const auto* escape = std::find_if(std::begin(kEscapes), std::end(kEscapes),
                                    [letter](const Escape& entry) { return entry.Letter == letter; });
  if (escape == std::end(kEscapes)) return std::nullopt;
  return Coded({escape->Value, escape->Kind, true}, at + 2, true);
}

// ---- in brackets ----

// "^M", "Ctrl-M", "CTRL+M".
std::optional<NotedByte> ReadControlKey(Text text) {
  const std::u16string upper = UpperCase(text);
  const Text all = upper;
  for (const Text prefix : {Text(u"^"), Text(u"CTRL-"), Text(u"CTRL+"), Text(u"CTRL ")}) {
    if (!all.starts_with(prefix) || all.size() != prefix.size() + 1) continue;
    if (all.back() >= u'@' && all.back() <= u'_') {
      return ControlByte(static_cast<std::uint8_t>(all.back() - u'@'));
    }
  }
  return std::nullopt;
}

// "0D0A", "0x0D 0x0A", "0D,0A".
std::optional<NotedCode> ReadTwoNumbers(Text inner, Unmarked unmarked) {
  const bool isPair = inner.size() == 4 && std::all_of(inner.begin(), inner.end(), IsHexDigit);
  const bool isHexadecimal = unmarked == Unmarked::Hexadecimal || unmarked == Unmarked::HexadecimalAfterNames;
  if (isPair && isHexadecimal) {
    NotedCode pair = Coded(*ReadNumber(inner.substr(0, 2), unmarked), 0, false);
    pair.Append(*ReadNumber(inner.substr(2), unmarked));
    return pair;
  }
  const std::size_t split = inner.find_first_of(u" ,+/");
  if (split == Text::npos) return std::nullopt;
  const auto first = ReadNumber(inner.substr(0, split), unmarked);
  const auto second = ReadNumber(TrimSpace(inner.substr(split + 1)), unmarked);
  if (!first || !second || split < 2) return std::nullopt;
  NotedCode code = Coded(*first, 0, first->Marked && second->Marked);
  code.Append(*second);
  return code;
}

std::optional<NotedCode> ReadInBracket(Text inner, Unmarked unmarked) {
  const bool isNumberToo = ReadNumber(inner, Unmarked::Hexadecimal).has_value();  // "FF"
  if (const auto names = ReadCodeNames(inner); names && !(isNumberToo && unmarked == Unmarked::Hexadecimal)) {
    NotedCode code = *names;
    code.Certain = !isNumberToo;
    return code;
  }
  if (const auto key = ReadControlKey(inner)) return Coded(*key, 0, true);
  if (!inner.empty() && inner[0] == u'\\') {
    const auto escape = ReadEscape(inner, 0, unmarked);
    return escape && escape->End == inner.size() ? escape : std::nullopt;
  }
  const auto byte = ReadNumber(inner, unmarked);
  if (!byte) return ReadTwoNumbers(inner, unmarked);
  if (!byte->Marked && unmarked != Unmarked::Decimal && inner.size() != 2) return std::nullopt;
  return Coded(*byte, 0, byte->Marked);
}

std::optional<NotedCode> ReadBracket(Text text, std::size_t at, Unmarked unmarked) {
  const std::size_t which = kOpeningBrackets.find(text[at]);
  if (which == Text::npos) return std::nullopt;
  const Text near = text.substr(at, kLongestBracket + 2);
  std::size_t end = near.find(kClosingBrackets[which]);
  // "<CR (0Dh)>" ends at its own bracket, "(CR (0Dh))" at the second one.
  if (which == 3 && end != Text::npos && near.substr(1, end - 1).find(u'(') != Text::npos) {
    end = near.find(u')', end + 1);
  }
  if (end == Text::npos) return std::nullopt;
  auto code = ReadInBracket(TrimSpace(near.substr(1, end - 1)), unmarked);
  if (!code) return std::nullopt;
  code->End = at + end + 1;
  code->Certain = code->Certain && which != 3;
  return code;
}

// ---- other marks ----

constexpr Text kCharacterFunctions[] = {u"CHR$", u"CHRW", u"CHRB", u"CHR", u"CHAR"};

// "CHR$(13)", "Chr(&H0D)".
std::optional<NotedCode> ReadCharacterFunction(Text text, std::size_t at) {
  const std::u16string upper = UpperCase(text.substr(at, kLongestBracket));
  for (const Text name : kCharacterFunctions) {
    if (!Text(upper).starts_with(name)) continue;
    const std::size_t open = upper.find_first_not_of(u' ', name.size());
    if (open == Text::npos || upper[open] != u'(') continue;
    const std::size_t close = upper.find(u')', open);
    if (close == Text::npos) return std::nullopt;
    const auto byte =
        ReadNumber(TrimSpace(Text(upper).substr(open + 1, close - open - 1)), Unmarked::Decimal);
    if (!byte) return std::nullopt;
    return Coded(*byte, at + close + 1, true);
  }
  return std::nullopt;
}

// The pictures of the control codes and of the Enter key.
std::optional<NotedCode> ReadPicture(char16_t c, std::size_t at) {
  constexpr char16_t kFirstPicture = 0x2400;
  if (c >= kFirstPicture && c < kFirstPicture + 32) {
    return Coded(ControlByte(static_cast<std::uint8_t>(c - kFirstPicture)), at + 1, true);
  }
  if (c == 0x2421) return Coded({127, ByteKind::HEX, true}, at + 1, true);
  if (c == 0x2424) return Coded(ControlByte(10), at + 1, true);
  constexpr Text kEnterKeys = u"\x21B5\x21B2\x23CE\x2BA0\xB6";
  if (kEnterKeys.find(c) != Text::npos) return Coded(ControlByte(13), at + 1, false);
  return std::nullopt;
}

struct Prefix {
  Text Letters;
  std::size_t Room;  // digits
  bool Hexadecimal;
  bool Certain;
};
constexpr Prefix kPrefixes[] = {{u"&#X", 2, true, true}, {u"&#", 3, false, true}, {u"&H", 2, true, true},
                                {u"#$", 2, true, false}, {u"$", 2, true, false},  {u"%", 2, true, false}};

// "$0D", "%0D", "&H0D", "#$0D", "&#13;".
std::optional<NotedCode> ReadPrefixed(Text text, std::size_t at) {
  const std::u16string upper = UpperCase(text.substr(at, 3));
  for (const Prefix& prefix : kPrefixes) {
    if (!Text(upper).starts_with(prefix.Letters)) continue;
    const std::size_t first = at + prefix.Letters.size();
    std::size_t end = EndOfDigits(text, first, prefix.Room, prefix.Hexadecimal ? IsHexDigit : IsDigit);
    if (prefix.Hexadecimal && end != first + 2) continue;
    const auto byte = ReadNumber(text.substr(first, end - first),
                                 prefix.Hexadecimal ? Unmarked::Hexadecimal : Unmarked::Decimal);
    if (!byte) continue;
    if (prefix.Letters.starts_with(u"&#") && end < text.size() && text[end] == u';') ++end;
    return Coded({byte->Value, byte->Kind, true}, end, prefix.Certain);
  }
  return std::nullopt;
}

// "#13" in decimal as programmers write it, "#0D" where it cannot be.
std::optional<NotedCode> ReadHashed(Text text, std::size_t at, Unmarked unmarked) {
  const std::size_t end = EndOfWord(text, at + 1);
  const Text digits = text.substr(at + 1, end - at - 1);
  // Beside a quotation it is the programming language's, and decimal.
  const bool besideQuotation = (at > 0 && text[at - 1] == u'\'') || (end < text.size() && text[end] == u'\'');
  const bool hexadecimal = unmarked == Unmarked::Hexadecimal && !besideQuotation;
  auto byte = ReadNumber(digits, hexadecimal ? Unmarked::Hexadecimal : Unmarked::Decimal);
  if (!byte) byte = ReadNumber(digits, Unmarked::Hexadecimal);
  if (!byte || (byte->Kind == ByteKind::HEX && digits.size() != 2)) return std::nullopt;
  return Coded({byte->Value, byte->Kind, true}, end, false);
}

// "0x0D" and "0Dh" at a word's beginning; "0x0D" also behind letters, but not within a number.
std::optional<NotedCode> ReadMarkedNumber(Text text, std::size_t at, bool joined) {
  const bool inWord = !joined && at > 0 && IsWordPart(text[at - 1]);
  if (text[at] == u'0' && at + 1 < text.size() && (text[at + 1] == u'x' || text[at + 1] == u'X')) {
    if (inWord && IsDigit(text[at - 1])) return std::nullopt;
    const std::size_t first = at + 2;
    std::size_t end = EndOfDigits(text, first, 4, IsHexDigit);
    const bool nextFollows = end == first + 3 && end < text.size() && (text[end] | 0x20) == u'x';
    if (nextFollows) --end;  // "0x020x50"
    const auto byte = ReadNumber(text.substr(at, end - at), Unmarked::Hexadecimal);
    if (!byte || byte->Kind != ByteKind::HEX) return std::nullopt;
    const bool apart = end == text.size() || nextFollows || !IsWordPart(text[end]);
    return Coded(*byte, end, apart && !inWord);
  }
  if (inWord) return std::nullopt;
  const std::size_t end = EndOfDigits(text, at, 3, IsHexDigit);
  const bool suffix = end < text.size() && (text[end] == u'h' || text[end] == u'H');
  if (!suffix || end - at < 2 || (end + 1 < text.size() && IsWordPart(text[end + 1]))) return std::nullopt;
  const auto byte = ReadNumber(text.substr(at, end + 1 - at), Unmarked::Hexadecimal);
  if (!byte) return std::nullopt;
  return Coded(*byte, end + 1, true);
}

}  // namespace

std::optional<NotedCode> ReadCode(Text text, std::size_t at, Unmarked unmarked, bool joined) {
  const char16_t c = text[at];
  switch (c) {
    case u'\\':
      return ReadEscape(text, at, unmarked);
    case u'<':
    case u'[':
    case u'{':
    case u'(':
      return ReadBracket(text, at, unmarked);
    case u'^': {
      if (at + 1 >= text.size() || IsLower(text[at + 1])) return std::nullopt;
      const auto key = ReadControlKey(text.substr(at, 2));
      if (!key) return std::nullopt;
      return Coded(*key, at + 2, false);
    }
    case u'#':
      if (const auto code = ReadHashed(text, at, unmarked)) return code;
      return ReadPrefixed(text, at);
    case u'$':
    case u'%':
    case u'&':
      return ReadPrefixed(text, at);
    default:
      break;
  }
  if (IsHexDigit(c)) {
    if (const auto code = ReadMarkedNumber(text, at, joined)) return code;
  }
  const bool atWord = joined || at == 0 || !IsWordPart(text[at - 1]);
  if ((c == u'C' || c == u'c') && atWord) {
    constexpr std::size_t kKeyLength = 6;  // "Ctrl-M"
    const bool ends = at + kKeyLength >= text.size() || !IsWordPart(text[at + kKeyLength]);
    const auto key = ReadControlKey(text.substr(at, kKeyLength));
    if (key && ends) return Coded(*key, at + kKeyLength, false);
    return ReadCharacterFunction(text, at);
  }
  return c < 0x80 ? std::nullopt : ReadPicture(c, at);
}

std::optional<NotedCode> ReadCodeNames(Text text) {
  const auto single = [](Text name) -> std::optional<NotedCode> {
    const auto byte = ReadCodeName(name);
    if (byte) return Coded(*byte, 0, true);
    const std::u16string upper = UpperCase(name);
    if (upper != u"CRLF" && upper != u"VBCRLF" && upper != u"VBNEWLINE") return std::nullopt;
    NotedCode both = Coded(ControlByte(13), 0, true);
    both.Append(ControlByte(10));
    return both;
  };
  auto code = single(text);
  const std::size_t split = text.find_first_of(u" +/,&-=:(");
  if (!code && split != Text::npos) {
    Text second = text.substr(split);
    second.remove_prefix(std::min(second.find_first_not_of(u" +/,&-=:("), second.size()));
    if (second.ends_with(u')')) second.remove_suffix(1);
    const auto first = ReadCodeName(text.substr(0, split));
    const auto number = ReadNumber(second, Unmarked::Hexadecimal);
    const auto other = number ? number : ReadCodeName(second);
    if (!first || !other) return std::nullopt;
    const bool isExplained = number && number->Value == first->Value;  // "CR=0Dh"
    if (number && !isExplained) return std::nullopt;
    code = Coded(*first, 0, true);
    if (!isExplained) code->Append(*other);
  }
  if (code) code->End = text.size();
  return code;
}

bool IsUsual(const NotedCode& code) {
  static constexpr std::uint8_t kUsual[] = {0, 1, 2, 3, 4, 5, 6, 10, 13, 21, 27};
  const auto* end = code.Bytes.data() + code.Count;
  return std::all_of(code.Bytes.data(), end, [](const NotedByte& byte) {
    return std::find(std::begin(kUsual), std::end(kUsual), byte.Value) != std::end(kUsual);
  });
}

}  // namespace qdm
