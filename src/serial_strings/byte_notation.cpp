#include "serial_strings/byte_notation.h"

#include "base/code_page.h"
#include "serial_strings/serial_string.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

namespace qdm {
namespace {

using Text = std::u16string_view;

constexpr int kNoDigit = 99;

int DigitOf(char16_t c) {
  const char16_t upper = UpperCase(c);
  if (upper >= u'0' && upper <= u'9') return upper - u'0';
  if (upper >= u'A' && upper <= u'F') return upper - u'A' + 10;
  return kNoDigit;
}

// Nothing when there are none or more than `room` digits, another character, or the number is above 255.
std::optional<std::uint8_t> Number(Text digits, int base, std::size_t room) {
  if (digits.empty() || digits.size() > room) return std::nullopt;
  int value = 0;
  for (const char16_t c : digits) {
    const int digit = DigitOf(c);
    if (digit >= base) return std::nullopt;
    value = value * base + digit;
  }
  if (value > 255) return std::nullopt;
  return static_cast<std::uint8_t>(value);
}

std::optional<NotedByte> Noted(std::optional<std::uint8_t> value, ByteKind kind, bool marked) {
  if (!value) return std::nullopt;
  return NotedByte{*value, kind, marked};
}

struct Base {
  int Digits;
  ByteKind Kind;
  std::size_t Room;
};
constexpr Base kHexadecimal = {16, ByteKind::HEX, 4};  // "0FFh": a leading zero is usual where letters begin
constexpr Base kDecimal = {10, ByteKind::DEC, 3};
constexpr Base kBinary = {2, ByteKind::BIN, 8};

struct Mark {
  Text Letters;
  Base Numbers;
};
constexpr Mark kBasePrefixes[] = {
    {u"0X", kHexadecimal}, {u"&H", kHexadecimal}, {u"$", kHexadecimal}, {u"0B", kBinary}};
// "0d" and "1b" are hexadecimal wherever digits are not marked: a suffix needs two digits before it.
constexpr Mark kBaseSuffixes[] = {{u"D", kDecimal}, {u"B", kBinary}};

std::optional<NotedByte> ReadAs(Text digits, const Base& base) {
  return Noted(Number(digits, base.Digits, base.Room), base.Kind, true);
}

struct OtherName {
  Text Name;
  std::uint8_t Value;
  ByteKind Kind;
};
constexpr OtherName kOtherNames[] = {
    {u"NULL", 0, ByteKind::CNT},       {u"TAB", 9, ByteKind::CNT},
    {u"SP", 32, ByteKind::ASC},        {u"SPACE", 32, ByteKind::ASC},
    {u"DEL", 127, ByteKind::HEX},      {u"ENTER", 13, ByteKind::CNT},
    {u"RETURN", 13, ByteKind::CNT},    {u"CARRIAGE RETURN", 13, ByteKind::CNT},
    {u"LINE FEED", 10, ByteKind::CNT}, {u"LINEFEED", 10, ByteKind::CNT},
    {u"NL", 10, ByteKind::CNT},        {u"ESCAPE", 27, ByteKind::CNT},
    {u"VBCR", 13, ByteKind::CNT},      {u"VBLF", 10, ByteKind::CNT},
    {u"VBTAB", 9, ByteKind::CNT}};

constexpr std::size_t kLongestName = 15;

bool SameText(std::string_view name, Text text) {
  return std::equal(name.begin(), name.end(), text.begin(), text.end(),
                    [](char a, char16_t b) { return static_cast<char16_t>(a) == b; });
}

std::optional<std::uint8_t> ControlCode(Text name) {
  const auto found = std::find_if(ControlCodeNames.begin(), ControlCodeNames.end(),
                                  [name](std::string_view code) { return SameText(code, name); });
  if (found == ControlCodeNames.end()) return std::nullopt;
  return static_cast<std::uint8_t>(found - ControlCodeNames.begin());
}

bool IsCapital(char16_t c) { return DigitOf(c) != kNoDigit && UpperCase(c) == c; }

}  // namespace

std::optional<NotedByte> ReadNumber(Text text, Unmarked unmarked) {
  const std::u16string upper = UpperCase(text);
  const Text all = upper;
  for (const Mark& prefix : kBasePrefixes) {
    if (!all.starts_with(prefix.Letters)) continue;
    if (const auto byte = ReadAs(all.substr(prefix.Letters.size()), prefix.Numbers)) return byte;
  }
  if (all.ends_with(u'H')) return ReadAs(all.substr(0, all.size() - 1), kHexadecimal);
  if (unmarked == Unmarked::Binary && all.size() == 8) return Noted(Number(all, 2, 8), ByteKind::BIN, false);
  if (unmarked == Unmarked::Hexadecimal || unmarked == Unmarked::HexadecimalAfterNames) {
    if (const auto byte = Noted(Number(all, 16, 2), ByteKind::HEX, false)) return byte;
  }
  for (const Mark& suffix : kBaseSuffixes) {
    if (all.size() < 3 || !all.ends_with(suffix.Letters)) continue;
    if (const auto byte = ReadAs(all.substr(0, all.size() - 1), suffix.Numbers)) return byte;
  }
  if (unmarked == Unmarked::Decimal) return Noted(Number(all, 10, 3), ByteKind::DEC, false);
  return std::nullopt;
}

std::optional<NotedByte> ReadCodeName(Text text) {
  if (text.size() > kLongestName) return std::nullopt;
  const std::u16string name = UpperCase(text);
  if (const auto code = ControlCode(name)) return NotedByte{*code, ByteKind::CNT, false};
  for (const OtherName& other : kOtherNames) {
    if (other.Name == name) return NotedByte{other.Value, other.Kind, false};
  }
  return std::nullopt;
}

std::optional<NotedByte> ReadByte(Text text, Unmarked unmarked) {
  if (const auto byte = ReadCompactByte(text); byte && byte->Kind >= ByteKind::CNT) return byte;
  const auto name = ReadCodeName(text);
  if (name && unmarked == Unmarked::HexadecimalAfterNames) return name;
  const auto number = ReadNumber(text, unmarked);
  return number ? number : name;
}

std::optional<NotedByte> ReadCompactByte(Text text) {
  if (text == u"Variable") return NotedByte{0, ByteKind::VAR, true};
  if (text == u"Ignore") return NotedByte{0, ByteKind::IGN, true};
  if (text.size() < 2) return std::nullopt;
  const Text digits = text.substr(0, text.size() - 1);
  switch (text.back()) {
    case u'h':
      if (digits.size() != 2 || !std::all_of(digits.begin(), digits.end(), IsCapital)) return std::nullopt;
      return Noted(Number(digits, 16, 2), ByteKind::HEX, true);
    case u'd':
      return digits.size() == 3 ? Noted(Number(digits, 10, 3), ByteKind::DEC, true) : std::nullopt;
    case u'b':
      if (digits.size() > 1 && digits.front() == u'0') return std::nullopt;
      return Noted(Number(digits, 2, 8), ByteKind::BIN, true);
    case u'c':
      return Noted(ControlCode(digits), ByteKind::CNT, true);
    default:
      return std::nullopt;
  }
}

}  // namespace qdm
