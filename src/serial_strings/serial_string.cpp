#include "serial_strings/serial_string.h"

#include "base/code_page.h"

#include <cstdio>

namespace qdm {
namespace {

struct KindLook {
  std::string_view Label;
  std::uint32_t Colour;
};

constexpr std::array<KindLook, kByteKinds> kKindLooks = {{
    {"ASC", 0x000000},
    {"HEX", 0xFF0000},
    {"DEC", 0x0000FF},
    {"BIN", 0xFF00FF},
    {"CNT", 0x008000},
    {"VAR", 0x400000},
    {"IGN", 0xC04000},
}};

constexpr std::uint8_t kDelete = 127;  // stands for a control character in a run of text

std::string Utf8Of(std::uint8_t value) {
  const char16_t character = CharacterOf(value);
  return ToUtf8({&character, 1});
}

std::string Padded(std::string digits, std::size_t width) {
  if (digits.size() < width) digits.insert(0, width - digits.size(), '0');
  return digits;
}

std::string Hexadecimal(std::uint32_t value) {
  std::array<char, 9> digits{};
  std::snprintf(digits.data(), digits.size(), "%X", value);
  return digits.data();
}

// 128, 145 and 146 count as visible: the fonts in use draw them.
bool IsInvisible(std::int16_t value) {
  return value < 32 || value == 127 || (value >= 129 && value <= 144) || (value >= 147 && value <= 160);
}

EditText EditCharacter(std::int16_t value) {
  if (IsInvisible(value) || value > 255) return {"Invisible", true};
  if (value == 32) return {"Space"};
  return {Utf8Of(static_cast<std::uint8_t>(value))};
}

}  // namespace

const std::array<std::string_view, 32> ControlCodeNames = {
    "NUL", "SOH", "STX", "ETX", "EOT", "ENQ", "ACK", "BEL", "BS",  "HT",  "LF",
    "VT",  "FF",  "CR",  "SO",  "SI",  "DLE", "DC1", "DC2", "DC3", "DC4", "NAK",
    "SYN", "ETB", "CAN", "EM",  "SUB", "ESC", "FS",  "GS",  "RS",  "US"};

std::string_view KindLabel(std::uint8_t kind) {
  return kind < kKindLooks.size() ? kKindLooks[kind].Label : std::string_view{};
}

std::uint32_t KindColour(std::uint8_t kind) { return kind < kKindLooks.size() ? kKindLooks[kind].Colour : 0; }

std::string FormatBinary(std::uint8_t value) {
  std::string digits;
  for (int bit = 7; bit >= 0; --bit) digits.push_back((value >> bit & 1) != 0 ? '1' : '0');
  digits.erase(0, digits.find('1'));
  return digits.empty() ? "0" : digits;
}

std::uint8_t ParseBinary(std::string_view digits) {
  unsigned value = 0;
  for (const char digit : digits) value = (value * 2 + (digit == '1' ? 1 : 0)) & 0xFF;
  return static_cast<std::uint8_t>(value);
}

std::string HexByte(std::int16_t value) { return Padded(HexWord(value), 2); }

std::string HexWord(std::int16_t value) { return Hexadecimal(static_cast<std::uint16_t>(value)); }

ByteText CompactByteText(std::uint8_t value, std::uint8_t kind) {
  switch (static_cast<ByteKind>(kind)) {
    case ByteKind::ASC:
      return {Utf8Of(value < 32 ? kDelete : value), ""};
    case ByteKind::HEX:
      return {HexByte(value), "h"};
    case ByteKind::DEC:
      return {Padded(std::to_string(value), 3), "d"};
    case ByteKind::BIN:
      return {FormatBinary(value), "b"};
    case ByteKind::CNT:
      return {value < 32 ? std::string(ControlCodeNames[value]) + "c" : "ERRORc", ""};
    case ByteKind::VAR:
      return {"Variable", ""};
    case ByteKind::IGN:
      return {"Ignore", ""};
  }
  return {"", ""};
}

std::string_view CompactSeparator(const SerialString& string, std::size_t index) {
  constexpr auto kText = static_cast<std::uint8_t>(ByteKind::ASC);
  if (index == 0) return "";
  return string.Kinds.at(index) == kText && string.Kinds.at(index - 1) == kText ? "" : ",";
}

std::string CompactText(const SerialString& string) {
  std::string text;
  for (std::size_t i = 0; i < string.BytesInUse(); ++i) {
    const ByteText byte = CompactByteText(string.Values[i], string.Kinds[i]);
    text.append(CompactSeparator(string, i)).append(byte.Text).append(byte.Suffix);
  }
  return text;
}

EditText EditByteText(std::int16_t value, std::uint8_t kind) {
  const bool isByte = value >= 0 && value <= 255;
  switch (static_cast<ByteKind>(kind)) {
    case ByteKind::ASC:
      return EditCharacter(value);
    case ByteKind::HEX:
      return value < 0 ? EditText{"", true} : EditText{HexByte(value), !isByte};
    case ByteKind::DEC:
      return value < 0 ? EditText{"", true} : EditText{std::to_string(value), !isByte};
    case ByteKind::BIN:
      if (value < 0) return {"", true};
      if (value > 255) return {"11111111", true};
      return {Padded(FormatBinary(static_cast<std::uint8_t>(value)), 8)};
    case ByteKind::CNT:
      if (value < 0 || value > 31) return {"Error", true};
      return {std::string(ControlCodeNames[static_cast<std::size_t>(value)])};
    case ByteKind::VAR:
      return {"Variable"};
    case ByteKind::IGN:
      return {"Ignore"};
  }
  return {};
}

std::int16_t VariableBytePositionOf(const SerialString& string) {
  for (std::size_t i = kMaximumStringBytes; i > 0; --i) {
    if (string.Kinds[i - 1] == static_cast<std::uint8_t>(ByteKind::VAR)) return static_cast<std::int16_t>(i);
  }
  return 0;
}

std::array<std::uint8_t, 4> IgnoreMask(const SerialString& string) {
  std::array<std::uint8_t, 4> mask{};
  for (std::size_t group = 0; group < mask.size(); ++group) {
    unsigned bits = 0;
    for (std::size_t i = 0; i < 8; ++i) {
      const bool ignored = string.Kinds[8 * group + i] == static_cast<std::uint8_t>(ByteKind::IGN);
      bits |= static_cast<unsigned>(ignored) << i;
    }
    mask[group] = static_cast<std::uint8_t>(bits);
  }
  return mask;
}

}  // namespace qdm
