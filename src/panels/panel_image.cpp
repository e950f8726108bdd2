#include "panels/panel_image.h"

#include "base/words.h"
#include "config/panel_configuration.h"
#include "panels/image_fields.h"
#include "panels/image_layout.h"
#include "serial_strings/serial_string.h"

#include <algorithm>
#include <string>

namespace qdm {

constexpr std::array<std::uint8_t, kCommandSlots> CommandSlotOrder = {kSerialEnableSlot,
                                                                      kPowerOnSlot,
                                                                      kData1Slot,
                                                                      kData2Slot,
                                                                      kVideoSlot,
                                                                      kVideo2Slot,
                                                                      kBlankSlot,
                                                                      kBlankOffSlot,
                                                                      kVolumeUpSlot,
                                                                      kVolumeDownSlot,
                                                                      kPowerOffSlot,
                                                                      kSerialDisableSlot,
                                                                      kSerialEnableReplySlot,
                                                                      kPowerOnReplySlot,
                                                                      kData1ReplySlot,
                                                                      kData2ReplySlot,
                                                                      kVideoReplySlot,
                                                                      kExternalOffSlot,
                                                                      kBlankReplySlot,
                                                                      kBlankOffReplySlot,
                                                                      kVolumeUpReplySlot,
                                                                      kVolumeDownReplySlot,
                                                                      kPowerOffReplySlot,
                                                                      kSerialDisableReplySlot,
                                                                      kExternalOnSlot};

ImageError::ImageError(std::string_view field, int value, std::string_view why)
    : std::runtime_error(std::string(field) + " = " + std::to_string(value) + ": " + std::string(why)) {}

namespace {

std::string SlotField(std::string_view array, std::size_t slot, std::string_view member) {
  return "Projector." + std::string(array) + "[" + std::to_string(slot) + "]" + std::string(member) + " (" +
         std::string(CommandSlotNames[slot]) + ")";
}

[[noreturn]] void ThrowTableTooLong(const ProjectorDefinition& projector, std::size_t slot) {
  const std::string why = Say(
      "the command strings run past byte 511 of the panel's memory; shorten strings or clear those that are "
      "not needed");
  if (projector.Available[slot] == 0) {
    throw ImageError(SlotField("Available", slot, ""), 0, why);
  }
  throw ImageError(SlotField("Strings", slot, ".Count"), projector.Strings[slot].Count, why);
}

[[noreturn]] void ThrowCountTooHigh(const SerialString& string, std::size_t slot) {
  throw ImageError(SlotField("Strings", slot, ".Count"), string.Count,
                   Say("a string has no more than 32 bytes"));
}

class StringTable {
 public:
  StringTable(PanelImage& image, const ProjectorDefinition& projector)
      : image_(image), projector_(projector) {}

  void WriteSlot(std::size_t slot) {
    if (projector_.Available[slot] == 0) {
      WriteBytes(slot, std::array<std::uint8_t, 1>{0});
    } else {
      WriteString(slot, projector_.Strings[slot]);
    }
  }

 private:
  void WriteString(std::size_t slot, const SerialString& string) {
    if (string.Count < 0 || string.Count > 255)
      ThrowOverflow(SlotField("Strings", slot, ".Count"), string.Count, string.Count);
    WriteBytes(slot, std::array{static_cast<std::uint8_t>(string.Count)});
    if (SlotHasIgnoreMask(slot)) WriteBytes(slot, IgnoreMask(string));
    WriteBytes(slot, ByteView(string.Values).first(string.BytesInUse()));
    if (string.Count > static_cast<int>(kMaximumStringBytes)) ThrowCountTooHigh(string, slot);
  }
  void WriteBytes(std::size_t slot, ByteView bytes) {
    if (bytes.size() > image_.size() - position_) ThrowTableTooLong(projector_, slot);
    std::copy(bytes.begin(), bytes.end(), image_.begin() + static_cast<std::ptrdiff_t>(position_));
    position_ += bytes.size();
  }

  PanelImage& image_;
  const ProjectorDefinition& projector_;
  std::size_t position_ = kStringTableStart;
};

void WriteRow(PanelImage& image, const ImageRow& row, const PanelConfiguration& configuration) {
  const std::uint16_t value = row.Field.Encode(row.Field, configuration);
  image[row.Offset] = static_cast<std::uint8_t>(value & 0xFF);
  if (row.Field.Width == 2) image[row.Offset + 1] = static_cast<std::uint8_t>(value >> 8);
}

}  // namespace

PanelImage BuildPanelImage(const PanelConfiguration& configuration) {
  PanelImage image;
  image.fill(0xFF);
  for (const ImageRow& row : LayoutOf(configuration.ControllerType)) WriteRow(image, row, configuration);
  StringTable table(image, configuration.Projector);
  for (const std::size_t slot : CommandSlotOrder) table.WriteSlot(slot);
  return image;
}

}  // namespace qdm
