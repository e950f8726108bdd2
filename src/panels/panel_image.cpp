#include "panels/panel_image.h"

#include "panels/image_layout.h"

#include <algorithm>

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

ImageError::ImageError(Kind kind, std::string field, int value, const std::string& why)
    : std::runtime_error(field + " = " + std::to_string(value) + ": " + why),
      kind_(kind),
      field_(std::move(field)),
      value_(value) {}

namespace {

constexpr std::array<std::uint8_t, 5> kQdmInputCodes = {7, 6, 2, 3, 4};
constexpr std::array<std::uint8_t, 5> kTlvoxInputCodes = {4, 5, 2, 3, 0};

std::uint8_t CodeAt(const std::array<std::uint8_t, 5>& codes, int index) {
  return index >= 0 && index < 5 ? codes[static_cast<std::size_t>(index)] : std::uint8_t{0};
}

std::string SlotField(std::string_view array, std::size_t slot, std::string_view member) {
  return "Projector." + std::string(array) + "[" + std::to_string(slot) + "]" + std::string(member) + " (" +
         std::string(CommandSlotNames[slot]) + ")";
}

[[noreturn]] void ThrowTableTooLong(const ProjectorDefinition& projector, std::size_t slot) {
  const std::string why =
      "the command strings run past byte 511 of the panel's memory; shorten strings or clear those that are "
      "not needed";
  if (projector.Available[slot] == 0) {
    throw ImageError(ImageError::Kind::Subscript, SlotField("Available", slot, ""), 0, why);
  }
  throw ImageError(ImageError::Kind::Subscript, SlotField("Strings", slot, ".Count"),
                   projector.Strings[slot].Count, why);
}

[[noreturn]] void ThrowCountTooHigh(const SerialString& string, std::size_t slot) {
  throw ImageError(ImageError::Kind::Subscript, SlotField("Strings", slot, ".Count"), string.Count,
                   "a string has no more than 32 bytes");
}

[[noreturn]] void ThrowCountNoByte(const SerialString& string, std::size_t slot) {
  ThrowOverflow(SlotField("Strings", slot, ".Count"), string.Count, string.Count);
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
    if (string.Count < 0 || string.Count > 255) ThrowCountNoByte(string, slot);
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

void WriteWord(PanelImage& image, std::size_t at, std::int16_t value) {
  const auto bits = static_cast<std::uint16_t>(value);
  image[at] = static_cast<std::uint8_t>(bits & 0xFF);
  image[at + 1] = static_cast<std::uint8_t>(bits >> 8);
}

void WriteOutputs(PanelImage& image, const PanelConfiguration& c) {
  switch (c.OutputsOption) {
    case kOutputsDisabled:
      image[0] = 0;
      break;
    case kOutputsScreen:
      image[0] = c.ScreenUseVolume != 0 ? 3 : 1;
      break;
    case kOutputsVolume:
      image[0] = c.AllowVolumeWhenOff != 0 ? 12 : 4;
      break;
    case kOutputsLift:
    case kOutputsPowerAndScreen:
      image[0] = 16;
      break;
    default:
      break;
  }
  if (c.OutputsOption == kOutputsScreen || c.OutputsOption == kOutputsLift ||
      c.OutputsOption == kOutputsPowerAndScreen) {
    image[1] = FittingByte("UpTime", c.UpTime);
    image[2] = FittingByte("DownTime", c.DownTime);
  }
  // An unknown use leaves byte 0 at 255, which has no room for the 64.
  if (c.LockOnNoButton != 0) image[0] = FittingByte("OutputsOption", c.OutputsOption, image[0] + 64);
}

void WriteControlInput(PanelImage& image, const PanelConfiguration& c) {
  image[3] = FittingByte("ControlInputOption", c.ControlInputOption);
  const bool roomSensor = c.ControlInputOption == kControlInputRoomPir;
  image[4] = roomSensor ? FittingByte("ThresholdVoltage", c.ThresholdVoltage) : std::uint8_t{128};
  const bool activeHigh =
      roomSensor ? c.ControlInputActiveHigh != 0 : c.ControlInputOption == kControlInputKeyswitch;
  if (activeHigh) image[3] |= 16;
}

void WriteVolumeFormat(PanelImage& image, const ProjectorDefinition& p) {
  WriteWord(image, 16, p.MaximumLevel);
  WriteWord(image, 18, p.MinimumLevel);
  WriteWord(image, 20, p.LevelStep);
  WriteWord(image, 22, p.UsePowerDown != 0 ? p.MinimumLevel : p.FixedStartLevel);
  const int flags = Bit(p.UseLevels, 4) | Bit(p.UsePowerDown, 8) | Bit(p.FirstByteIsHigh, 16) |
                    (p.MinimumLevel < 0 ? 32 : 0) | (p.MessageFormat == 1 ? 64 : 0) |
                    (p.MessageFormat == 2 ? 128 : 0);
  constexpr std::string_view kNumberOfBytes = "Projector.NumberOfBytes";
  const int lessOne = FittingWord(kNumberOfBytes, p.NumberOfBytes, p.NumberOfBytes - 1);
  image[24] = static_cast<std::uint8_t>(FittingByte(kNumberOfBytes, p.NumberOfBytes, lessOne) | flags);

  if (p.VolumeBytePosition == -1) {
    throw ImageError(ImageError::Kind::Overflow, "Projector.VolumeBytePosition", p.VolumeBytePosition,
                     "not yet determined; open the projector in the setup dialog and press Done");
  }
  image[25] = FittingByte("Projector.VolumeBytePosition", p.VolumeBytePosition);
}

}  // namespace

void ThrowOverflow(std::string_view field, int stored, int result) {
  const std::string why =
      stored == result
          ? "outside 0..255, which is all that its byte in the panel can hold"
          : "makes " + std::to_string(result) + ", which does not fit its byte in the panel (0..255)";
  throw ImageError(ImageError::Kind::Overflow, std::string(field), stored, why);
}

std::uint8_t QdmInputCode(int index) { return CodeAt(kQdmInputCodes, index); }
std::uint8_t TlvoxInputCode(int index) { return CodeAt(kTlvoxInputCodes, index); }

std::uint8_t LockByte(int lockFlags, const PanelConfiguration& c) {
  constexpr std::string_view kField = "NoButtonPowerDown";
  const int shifted = FittingWord(kField, c.NoButtonPowerDown, c.NoButtonPowerDown * 16);
  return static_cast<std::uint8_t>(FittingByte(kField, c.NoButtonPowerDown, shifted) | lockFlags);
}

std::uint8_t ProjectorLineByte(const ProjectorDefinition& p) {
  const int parity = FittingWord("Projector.Parity", p.Parity, p.Parity * 16);
  // The sum is what must fit: blame the term that does not fit by itself.
  const bool parityFits = parity >= 0 && parity <= 255;
  const std::string_view field = parityFits ? "Projector.Baudrate" : "Projector.Parity";
  const int stored = parityFits ? p.Baudrate : p.Parity;
  const int sum = FittingWord(field, stored, parity + p.Baudrate);
  return static_cast<std::uint8_t>(FittingByte(field, stored, sum) | Bit(p.Stopbits, 64));
}

void WriteStringTable(PanelImage& image, const ProjectorDefinition& projector) {
  StringTable table(image, projector);
  for (const std::size_t slot : CommandSlotOrder) table.WriteSlot(slot);
}

PanelImage BuildQdmImage(const PanelConfiguration& c) {
  const ProjectorDefinition& p = c.Projector;
  PanelImage image;
  image.fill(0xFF);
  WriteOutputs(image, c);
  WriteControlInput(image, c);
  image[5] = FittingByte("RoomTimeout", c.RoomTimeout);
  image[6] = LockByte(Bit(c.LockOnFrontPanel, 1) | Bit(c.LockOnExternalPowerDown, 2) |
                          Bit(c.LockOnRoomEmpty, 4) | Bit(c.LockUsingButtons, 8),
                      c);
  image[7] = FittingByte("LockAfterProjectorOffPeriod", c.LockAfterProjectorOffPeriod);
  image[8] = FittingByte("LockAfterRoomEmptyPeriod", c.LockAfterRoomEmptyPeriod);
  image[9] = ButtonPair(QdmInputCode(c.LockSequence[0]), QdmInputCode(c.LockSequence[1]));
  image[10] = ButtonPair(QdmInputCode(c.LockSequence[2]), QdmInputCode(c.LockSequence[3]));
  image[11] = ProjectorLineByte(p);
  image[12] = FittingByte("Projector.InterCommandDelay", p.InterCommandDelay);
  image[13] = FittingByte("Projector.InterByteDelay", p.InterByteDelay);
  image[14] = FittingByte("Projector.WarmUpTime", p.WarmUpTime);
  image[15] = FittingByte("Projector.CoolDownTime", p.CoolDownTime);
  WriteVolumeFormat(image, p);
  WriteStringTable(image, p);
  return image;
}

PanelImage BuildPanelImage(const PanelConfiguration& configuration) {
  return configuration.ControllerType == kTlVox ? BuildTlvoxImage(configuration)
                                                : BuildQdmImage(configuration);
}

}  // namespace qdm
