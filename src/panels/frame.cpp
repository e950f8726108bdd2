#include "panels/frame.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

namespace qdm {
namespace {

struct Escaped {
  std::uint8_t Value;
  std::uint8_t Substitute;
};
constexpr std::array<Escaped, 2> kEscaped = {{{0xFF, 0xFE}, {0xFE, 0xFD}}};

void AppendEscaped(Bytes& wire, std::uint8_t value) {
  const auto escaped = std::find_if(kEscaped.begin(), kEscaped.end(),
                                    [value](const Escaped& entry) { return entry.Value == value; });
  if (escaped == kEscaped.end()) {
    wire.push_back(value);
  } else {
    wire.insert(wire.end(), {kEscape, escaped->Substitute});
  }
}

}  // namespace

Bytes ProgramRecord(const PanelImage& image, int record) {
  const int address = record * kRecordDataBytes;
  const auto low = static_cast<std::uint8_t>(address & 0xFF);
  const auto high = static_cast<std::uint8_t>(address >> 8);
  const ByteView data = ByteView(image).subspan(static_cast<std::size_t>(address), kRecordDataBytes);
  const unsigned sum =
      std::accumulate(data.begin(), data.end(), 0U + kStartByte + kWriteCommand + low + high);

  Bytes wire;
  wire.reserve(kLongestRecord);
  wire.insert(wire.end(), {kStartByte, kWriteCommand});
  AppendEscaped(wire, low);
  wire.push_back(high);
  for (const std::uint8_t value : data) AppendEscaped(wire, value);
  AppendEscaped(wire, static_cast<std::uint8_t>(0U - sum));
  return wire;
}

std::optional<std::uint8_t> Unescaped(std::uint8_t substitute) {
  for (const Escaped& entry : kEscaped) {
    if (entry.Substitute == substitute) return entry.Value;
  }
  return std::nullopt;
}

bool IsAcknowledged(ByteView reply) { return !reply.empty() && reply.front() == kAcknowledge; }

}  // namespace qdm
