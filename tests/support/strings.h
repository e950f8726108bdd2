// Serial strings for tests: String({{'P', ASC}, {13, CNT}}).
#pragma once

#include "base/record_codec.h"
#include "serial_strings/serial_string.h"

#include <algorithm>
#include <initializer_list>
#include <ostream>
#include <string_view>

namespace qdm {

struct OneByte {
  int Value;
  ByteKind Kind = ByteKind::ASC;
};

inline SerialString String(std::initializer_list<OneByte> bytes) {
  SerialString string;
  for (const OneByte& byte : bytes) {
    const auto at = static_cast<std::size_t>(string.Count++);
    string.Values.at(at) = static_cast<std::uint8_t>(byte.Value);
    string.Kinds.at(at) = static_cast<std::uint8_t>(byte.Kind);
  }
  return string;
}

inline SerialString StringOf(ByteView bytes) {
  SerialString string;
  string.Count = static_cast<std::int16_t>(bytes.size());
  std::copy(bytes.begin(), bytes.end(), string.Values.begin());
  return string;
}
inline SerialString Characters(std::string_view text) { return StringOf(Bytes(text.begin(), text.end())); }

inline void PrintTo(const SerialString& string, std::ostream* out) {
  *out << string.Count << " bytes \"" << CompactText(string) << '"';
}

}  // namespace qdm
