#include "panels/image_reading.h"

#include "config/panel_types.h"
#include "line/speeds_and_parities.h"
#include "panels/image_layout.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace qdm {
namespace {

// Reads the table entry by entry, as the panel walks it.
class StringTableReader {
 public:
  explicit StringTableReader(const PanelImage& image) : image_(image) {}

  // False when the entry is longer than a string can be, or runs past the end.
  bool Read(std::size_t slot, ProjectorDefinition& projector) {
    if (Left() == 0) return false;
    const std::size_t count = image_[position_++];
    if (count == 0) return true;
    const bool masked = SlotHasIgnoreMask(slot);
    if (count > kMaximumStringBytes || Left() < count + (masked ? kIgnoreMaskBytes : 0U)) return false;
    SerialString& string = projector.Strings[slot];
    std::fill_n(string.Kinds.begin(), count, static_cast<std::uint8_t>(ByteKind::HEX));
    if (masked) ReadMask(string, count);
    std::copy_n(image_.begin() + static_cast<std::ptrdiff_t>(position_), count, string.Values.begin());
    position_ += count;
    string.Count = static_cast<std::int16_t>(count);
    projector.Available[slot] = kFlagSet;
    if (masked) projector.RequiresReply[ReceivedIndex(slot)] = kFlagSet;
    return true;
  }

 private:
  std::size_t Left() const { return image_.size() - position_; }
  void ReadMask(SerialString& string, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
      if ((image_[position_ + i / 8] >> i % 8 & 1) != 0)
        string.Kinds[i] = static_cast<std::uint8_t>(ByteKind::IGN);
    }
    position_ += kIgnoreMaskBytes;
  }

  const PanelImage& image_;
  std::size_t position_ = kStringTableStart;
};

void ReadLine(const PanelImage& image, ImageLayout layout, ProjectorDefinition& projector) {
  const auto byteOf = [&](std::string_view name) -> std::int16_t { return image[OffsetOf(layout, name)]; };
  const int line = byteOf(kProjectorLine);
  projector.Baudrate = static_cast<std::int16_t>(line & 0x0F);
  projector.Parity = static_cast<std::int16_t>(line >> 4 & 0x03);
  projector.Stopbits = (line & 0x40) != 0 ? 1 : 0;
  projector.InterCommandDelay = byteOf("Projector.InterCommandDelay");
  projector.InterByteDelay = byteOf("Projector.InterByteDelay");
  projector.WarmUpTime = byteOf("Projector.WarmUpTime");
  projector.CoolDownTime = byteOf("Projector.CoolDownTime");
}

// Only a wall panel sends levels to the projector.
void ReadVolume(const PanelImage& image, ImageLayout layout, ProjectorDefinition& projector) {
  const auto wordOf = [&](std::string_view name) {
    const std::size_t at = OffsetOf(layout, name);
    return static_cast<std::int16_t>(image[at] | image[at + 1] << 8);
  };
  projector.MaximumLevel = wordOf("Projector.MaximumLevel");
  projector.MinimumLevel = wordOf("Projector.MinimumLevel");
  projector.LevelStep = wordOf("Projector.LevelStep");
  projector.FixedStartLevel = wordOf("Projector.FixedStartLevel");
  const int flags = image[OffsetOf(layout, "Projector.NumberOfBytes")];
  projector.NumberOfBytes = static_cast<std::int16_t>((flags & 3) + 1);
  projector.UseLevels = FlagOf((flags & 4) != 0);
  projector.UsePowerDown = FlagOf((flags & 8) != 0);
  projector.FirstByteIsHigh = FlagOf((flags & 16) != 0);
  projector.MessageFormat = (flags & 128) != 0 ? 2 : (flags & 64) != 0 ? 1 : 0;
  projector.VolumeBytePosition = image[OffsetOf(layout, "Projector.VolumeBytePosition")];
  const auto variable = static_cast<std::size_t>(projector.VolumeBytePosition);
  for (const Slot slot : {kVolumeUpSlot, kVolumeDownSlot}) {
    SerialString& string = projector.Strings[slot];
    if (variable >= 1 && variable <= string.BytesInUse())
      string.Kinds[variable - 1] = static_cast<std::uint8_t>(ByteKind::VAR);
  }
}

}  // namespace

std::optional<ProjectorDefinition> ProjectorInImage(const PanelImage& image, int controllerType) {
  ProjectorDefinition projector;
  StringTableReader table(image);
  for (const std::size_t slot : CommandSlotOrder) {
    if (!table.Read(slot, projector)) return std::nullopt;
  }
  const ImageLayout layout = LayoutOf(controllerType);
  ReadLine(image, layout, projector);
  if (MemoryLayoutOf(controllerType) == MemoryLayout::Qdm) ReadVolume(image, layout, projector);
  return projector;
}

}  // namespace qdm
