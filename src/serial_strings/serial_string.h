// A serial string in words: names, colours and numbers of its bytes, its compact text, its bytes in the
// editor; and what the panel needs of it.
#pragma once

#include "serial_strings/string_record.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

namespace qdm {

// "NUL" .. "US", the names of the values 0..31.
extern const std::array<std::string_view, 32> ControlCodeNames;

// "ASC" .. "IGN"; empty for a kind above 6.
std::string_view KindLabel(std::uint8_t kind);

// 0xRRGGBB; black for a kind above 6.
std::uint32_t KindColour(std::uint8_t kind);

// Binary digits without leading zeros; "0" for zero.
std::string FormatBinary(std::uint8_t value);
// Any character but "1" counts as a zero digit; only the last eight digits can matter.
std::uint8_t ParseBinary(std::string_view digits);
// Upper case, at least two digits; a negative value as its 16-bit two's complement.
std::string HexByte(std::int16_t value);
// Upper case, no padding; a negative value as its 16-bit two's complement.
std::string HexWord(std::int16_t value);

// The text of one byte in the string display and the suffix behind it ("h", "d", "b" or nothing). UTF-8.
struct ByteText {
  std::string Text;
  std::string_view Suffix;
};
ByteText CompactByteText(std::uint8_t value, std::uint8_t kind);

// What stands before byte `index`: "" or ",". A run of ASC bytes reads as plain text.
std::string_view CompactSeparator(const SerialString& string, std::size_t index);

// The whole string as the display writes it: "PWR,CRc".
std::string CompactText(const SerialString& string);

// The text of one byte in the byte editor. `value` is wider than a byte so that entries out of range can be
// shown and flagged.
struct EditText {
  std::string Text;
  bool Error = false;
};
EditText EditByteText(std::int16_t value, std::uint8_t kind);

// 1-based place of the last byte of kind VAR among all 32, whatever the count; 0 when there is none.
std::int16_t VariableBytePositionOf(const SerialString& string);

// Four bytes for the panel; bit i of byte g is set when byte 8g+i is of kind IGN. All 32 positions count,
// whatever `Count` is.
std::array<std::uint8_t, 4> IgnoreMask(const SerialString& string);

}  // namespace qdm
