#include "panels/image_explanation.h"

#include <span>
#include "panels/image_layout.h"

namespace qdm {
namespace {

struct FixedPart {
  std::size_t Length;
  const char* Meaning;
  const char* Fields;
};

// From byte 0 on, without gaps, up to the string table.
constexpr FixedPart kQdmParts[] = {
    {1, "use of the outputs (+ 64 lock without a button press)",
     "OutputsOption, ScreenUseVolume, AllowVolumeWhenOff, LockOnNoButton"},
    {1, "output up time in s", "UpTime, OutputsOption"},
    {1, "output down time in s", "DownTime, OutputsOption"},
    {1, "use of the control input (+ 16 active when high)", "ControlInputOption, ControlInputActiveHigh"},
    {1, "threshold of the room sensor in counts of 5 V / 255", "ThresholdVoltage, ControlInputOption"},
    {1, "room empty timeout in minutes", "RoomTimeout"},
    {1, "locks (1 front panel, 2 external, 4 room, 8 buttons); time out x 16",
     "LockOnFrontPanel, LockOnExternalPowerDown, LockOnRoomEmpty, LockUsingButtons, NoButtonPowerDown"},
    {1, "lock timeout after projector off", "LockAfterProjectorOffPeriod"},
    {1, "lock timeout after room empty", "LockAfterRoomEmptyPeriod"},
    {1, "lock sequence: first button + second x 16", "LockSequence[0], LockSequence[1]"},
    {1, "lock sequence: third button + fourth x 16", "LockSequence[2], LockSequence[3]"},
    {1, "projector's line: speed + parity x 16 (+ 64 two stop bits)",
     "Projector.Baudrate, Projector.Parity, Projector.Stopbits"},
    {1, "delay between commands", "Projector.InterCommandDelay"},
    {1, "delay between bytes in ms", "Projector.InterByteDelay"},
    {1, "warm-up time", "Projector.WarmUpTime"},
    {1, "cool-down time", "Projector.CoolDownTime"},
    {2, "volume: highest level", "Projector.MaximumLevel"},
    {2, "volume: lowest level", "Projector.MinimumLevel"},
    {2, "volume: step", "Projector.LevelStep"},
    {2, "volume: level at power up",
     "Projector.FixedStartLevel, Projector.MinimumLevel, Projector.UsePowerDown"},
    {1, "volume: bytes - 1 (+ 4 levels, 8 off, 16 high, 32 < 0, 64 dec, 128 raw)",
     "Projector.NumberOfBytes, Projector.UseLevels, Projector.UsePowerDown, Projector.FirstByteIsHigh, "
     "Projector.MinimumLevel, Projector.MessageFormat"},
    {1, "volume: place of the variable byte", "Projector.VolumeBytePosition"},
};

constexpr FixedPart kTlvoxParts[] = {
    {1, "32 (+ 1 routed, 2 PC 1, 4 PC 2, 8 Video, 16 audio turns on)",
     "AudioRouting, UsePC1, UsePC2, UseVideo, AudioTurnsOnAmplifier"},
    {1, "power down time without audio", "TLVOXpowerDownTime"},
    {1, "locks (1 front panel, 2 no button, 8 buttons); time out x 16",
     "LockOnFrontPanel, LockOnNoButton, LockUsingButtons, NoButtonPowerDown"},
    {1, "lock timeout after projector off", "LockAfterProjectorOffPeriod"},
    {1, "lock sequence: first button + second x 16", "LockSequence[0], LockSequence[1]"},
    {1, "lock sequence: third button + fourth x 16", "LockSequence[2], LockSequence[3]"},
    {1, "projector's line: speed + parity x 16 (+ 64 two stop bits)",
     "Projector.Baudrate, Projector.Parity, Projector.Stopbits"},
    {1, "delay between commands", "Projector.InterCommandDelay"},
    {1, "delay between bytes in ms", "Projector.InterByteDelay"},
    {1, "warm-up time", "Projector.WarmUpTime"},
    {1, "cool-down time", "Projector.CoolDownTime"},
    {1, "maximum volume in dB away from 18", "VolumeMax"},
    {1, "minimum volume in dB away from 18", "VolumeMin"},
    {1, "volume step in dB", "VolumeStep"},
    {1, "power up volume in dB away from 18", "PowerUpVolume"},
    {1, "audio sources of PC 1 and, x 16, of PC 2, each plus one", "AudioRouting"},
    {1, "audio source of Video, plus one", "AudioRouting"},
    {9, "not used", ""},
};

class Explanation {
 public:
  void Add(std::size_t length, std::string meaning, std::string fields) {
    if (length == 0) return;
    parts_.push_back({at_, length, std::move(meaning), std::move(fields)});
    at_ += length;
  }
  void AddFixed(std::span<const FixedPart> parts) {
    for (const FixedPart& part : parts) Add(part.Length, part.Meaning, part.Fields);
  }
  void AddSlot(const ProjectorDefinition& projector, std::size_t slot) {
    const std::string name(CommandSlotNames[slot]);
    const std::string index = "[" + std::to_string(slot) + "]";
    const std::string available = "Projector.Available" + index;
    const std::string string = "Projector.Strings" + index;
    if (projector.Available[slot] == 0) return Add(1, name + ": not in use", available);
    Add(1, name + ": length", string + ".Count, " + available);
    if (SlotHasIgnoreMask(slot)) Add(kIgnoreMaskBytes, name + ": ignored bytes", string + ".Kinds");
    Add(projector.Strings[slot].BytesInUse(), name + ": " + CompactText(projector.Strings[slot]),
        string + ".Values");
  }
  std::vector<ImagePart> Take() {
    Add(kPanelImageSize - at_, "not used", "");
    return std::move(parts_);
  }

 private:
  std::size_t at_ = 0;
  std::vector<ImagePart> parts_;
};

}  // namespace

std::vector<ImagePart> ExplainImage(const PanelConfiguration& configuration) {
  Explanation explanation;
  if (configuration.ControllerType == kTlVox) {
    explanation.AddFixed(kTlvoxParts);
  } else {
    explanation.AddFixed(kQdmParts);
  }
  for (const std::size_t slot : CommandSlotOrder) explanation.AddSlot(configuration.Projector, slot);
  return explanation.Take();
}

}  // namespace qdm
