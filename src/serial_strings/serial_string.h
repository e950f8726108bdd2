// One RS-232 command or expected reply: up to 32 bytes, each with a kind that says how it was entered and is
// shown. The value of a byte is always what is sent or compared; the kind never changes it, except that a VAR
// byte is filled in when a volume command is built and an IGN byte of a reply matches anything. Stored form:
// 66 bytes, `Count` little-endian, then the 32 values, then the 32 kinds. A record may come from a file and
// hold any bits: counts outside 0..32 and kinds above 6 are kept, `BytesInUse` is the count that is safe to
// index with.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

namespace qdm {

inline constexpr std::size_t kMaximumStringBytes = 32;

// Stored on disk: never renumber.
enum class ByteKind : std::uint8_t { ASC = 0, HEX = 1, DEC = 2, BIN = 3, CNT = 4, VAR = 5, IGN = 6 };
inline constexpr std::size_t kByteKinds = 7;

struct SerialString {
  std::int16_t Count = 0;
  std::array<std::uint8_t, kMaximumStringBytes> Values{};
  std::array<std::uint8_t, kMaximumStringBytes> Kinds{};

  // `Count` brought into 0..32.
  std::size_t BytesInUse() const {
    return Count <= 0 ? 0 : Count > 32 ? kMaximumStringBytes : static_cast<std::size_t>(Count);
  }

  friend bool operator==(const SerialString&, const SerialString&) = default;
};
static_assert(sizeof(SerialString) == 66);

// The record's fields, in stored order. Stored on disk: never reorder.
template <class Visitor, class String>
requires std::is_same_v<std::remove_const_t<String>, SerialString>
constexpr void Fields(Visitor& v, String& s) {
  v.Integer("Count", s.Count);
  v.Block("Values", s.Values);
  v.Block("Kinds", s.Kinds);
}

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
