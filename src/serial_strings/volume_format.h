// How a volume level becomes the bytes that stand in a volume command in place of its VAR byte: the range and
// step of the levels, the level at power-up, and how many bytes carry the level in which form. Settings may
// come from a file and hold anything; `VolumeFormatError` says what is wrong with them.
#pragma once

#include "base/words.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace qdm {

// Stored on disk: never renumber.
enum class LevelFormat : std::int16_t { HexInAscii = 0, DecimalInAscii = 1, RawBytes = 2 };

struct VolumeFormat {
  std::int16_t MaximumLevel = 1;
  std::int16_t MinimumLevel = 0;
  std::int16_t VolumeStep = 1;
  std::int16_t FixedStartLevel = 0;
  bool UsePowerDown = false;       // the level at power-down comes back, `FixedStartLevel` is not used
  std::int16_t NumberOfBytes = 1;  // 1..4; anything else is "none chosen"
  LevelFormat MessageFormat = LevelFormat::HexInAscii;
  bool FirstByteIsHigh = false;  // raw bytes only

  friend bool operator==(const VolumeFormat&, const VolumeFormat&) = default;
};

inline constexpr std::string_view kVolumeFormatOk = Marked("Message Format is Ok");

// The first rule that the settings break, in the rules' order; empty when they are in order.
std::string_view VolumeFormatError(const VolumeFormat& format);

// The level as bytes in string order. Settings in error give some bytes, never a fault: at most 6.
std::vector<std::uint8_t> LevelBytes(const VolumeFormat& format, std::int16_t level);

// One step, not beyond the range.
std::int16_t LevelUp(const VolumeFormat& format, std::int16_t level);
std::int16_t LevelDown(const VolumeFormat& format, std::int16_t level);
// Where trying starts: the start-up level, or the minimum where the level at power-down is used.
std::int16_t FirstTrialLevel(const VolumeFormat& format);

// What a level looks like on the line, for reading: "0,100 or 00,64", or "\"064\"" for characters, and
// "Value = 100 or 64 in Hex". "ERROR" and nothing while the settings are in error.
struct VolumePreview {
  std::string DemoText;  // UTF-8
  std::string Label4;
};
VolumePreview PreviewLevel(const VolumeFormat& format, std::int16_t level);

}  // namespace qdm
