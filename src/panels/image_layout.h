// What the two layouts of the panel's memory share: fields that must fit a byte, and the table of strings.
#pragma once

#include "config/panel_configuration.h"
#include "panels/panel_image.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace qdm {

// The order of the string slots in the table.
extern const std::array<std::uint8_t, kCommandSlots> CommandSlotOrder;

[[noreturn]] void ThrowOverflow(std::string_view field, int stored, int result);

// The byte `result` that `field` becomes; `stored` is what the record holds. Overflow outside 0..255.
inline std::uint8_t FittingByte(std::string_view field, int stored, int result) {
  if (result < 0 || result > 255) ThrowOverflow(field, stored, result);
  return static_cast<std::uint8_t>(result);
}
inline std::uint8_t FittingByte(std::string_view field, std::int16_t stored) {
  return FittingByte(field, stored, stored);
}

// An intermediate result: the panel's makers reckon in 16 bits. Overflow outside them.
inline int FittingWord(std::string_view field, int stored, int result) {
  if (result < -0x8000 || result > 0x7FFF) ThrowOverflow(field, stored, result);
  return result;
}

constexpr int Bit(std::int16_t flag, int value) { return flag != 0 ? value : 0; }

// Two buttons of the lock sequence in one byte, the first in the low half.
constexpr std::uint8_t ButtonPair(std::uint8_t first, std::uint8_t second) {
  return static_cast<std::uint8_t>(second << 4 | first);
}

// `lockFlags` below bit 4, `NoButtonPowerDown` above.
std::uint8_t LockByte(int lockFlags, const PanelConfiguration& configuration);

// Parity, speed and stop bits of the projector's line.
std::uint8_t ProjectorLineByte(const ProjectorDefinition& projector);

// The table of command strings, from byte 26 on.
void WriteStringTable(PanelImage& image, const ProjectorDefinition& projector);

}  // namespace qdm
