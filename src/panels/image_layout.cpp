#include "panels/image_layout.h"

#include "base/words.h"
#include "panels/image_fields.h"

#include <algorithm>
#include <string>

namespace qdm {
ImageLayout LayoutOf(int controllerType) {
  return MemoryLayoutOf(controllerType) == MemoryLayout::Tlvox ? kTlvoxLayout : kQdmLayout;
}

std::size_t OffsetOf(ImageLayout layout, std::string_view name) {
  return std::find_if(layout.begin(), layout.end(),
                      [name](const ImageRow& row) { return row.Field.Name == name; })
      ->Offset;
}

void ThrowOverflow(std::string_view field, int stored, int result) {
  const std::string why =
      stored == result
          ? Say("outside 0..255, which is all that its byte in the panel can hold")
          : Say("makes %1, which does not fit its byte in the panel (0..255)", {std::to_string(result)});
  throw ImageError(field, stored, why);
}

std::uint8_t FittingByte(std::string_view field, int stored, int result) {
  if (result < 0 || result > 255) ThrowOverflow(field, stored, result);
  return static_cast<std::uint8_t>(result);
}

int FittingWord(std::string_view field, int stored, int result) {
  if (result < -0x8000 || result > 0x7FFF) ThrowOverflow(field, stored, result);
  return result;
}

std::uint8_t LockByte(int lockFlags, const PanelConfiguration& c) {
  constexpr std::string_view kField = "NoButtonPowerDown";
  const int shifted = FittingWord(kField, c.NoButtonPowerDown, c.NoButtonPowerDown * 16);
  return static_cast<std::uint8_t>(FittingByte(kField, c.NoButtonPowerDown, shifted) | lockFlags);
}

std::uint16_t EncodeProjectorLine(const ImageField&, const PanelConfiguration& c) {
  const ProjectorDefinition& p = c.Projector;
  const int parity = FittingWord("Projector.Parity", p.Parity, p.Parity * 16);
  // The sum is what must fit: blame the term that does not fit by itself.
  const bool parityFits = parity >= 0 && parity <= 255;
  const std::string_view field = parityFits ? "Projector.Baudrate" : "Projector.Parity";
  const int stored = parityFits ? p.Baudrate : p.Parity;
  const int sum = FittingWord(field, stored, parity + p.Baudrate);
  return static_cast<std::uint16_t>(FittingByte(field, stored, sum) | Bit(p.Stopbits, 64));
}

}  // namespace qdm
