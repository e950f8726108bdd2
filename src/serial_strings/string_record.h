// One RS-232 command or expected reply as a record: up to 32 bytes, each with a kind that says how it was
// entered and is shown. The value of a byte is always what is sent or compared; the kind never changes it,
// except that a VAR byte is filled in when a volume command is built and an IGN byte of a reply matches
// anything. Stored form: 66 bytes, `Count` little-endian, then the 32 values, then the 32 kinds. A record may
// come from a file and hold any bits: counts outside 0..32 and kinds above 6 are kept, `BytesInUse` is the
// count that is safe to index with. Its texts are in serial_string.h.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
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

}  // namespace qdm
