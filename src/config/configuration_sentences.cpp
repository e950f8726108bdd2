#include "config/configuration_sentences.h"

#include "config/audio_routing.h"
#include "config/configuration_rules.h"
#include "config/configuration_words.h"
#include "config/panel_types.h"
#include "line/speeds_and_parities.h"

#include <array>
#include <cstdio>
#include <optional>

namespace qdm {
namespace {

using Words = std::vector<std::string>;

std::string Number(int value) { return std::to_string(value); }

// "1 minute", "15 minutes"
std::string Counted(int value, const std::string& unit) {
  return Number(value) + " " + unit + (value == 1 ? "" : "s");
}

// At the beginning of a sentence: "Fifteen minutes"; digits above twenty.
std::string CountedInWords(int value, const std::string& unit) {
  constexpr std::array<std::string_view, 21> kNumbers = {
      "Zero",     "One",     "Two",     "Three",     "Four",     "Five",     "Six",
      "Seven",    "Eight",   "Nine",    "Ten",       "Eleven",   "Twelve",   "Thirteen",
      "Fourteen", "Fifteen", "Sixteen", "Seventeen", "Eighteen", "Nineteen", "Twenty"};
  const auto index = static_cast<std::size_t>(value);
  if (index >= kNumbers.size()) return Counted(value, unit);
  return std::string(kNumbers[index]) + " " + unit + (value == 1 ? "" : "s");
}

// A time whose unit is the panel's own.
std::string AsThePanelCounts(int value) { return Number(value) + " (as the panel counts)"; }

// "QDM 7", "TL-VOX"; "panel" for a type that is none.
std::string TypeName(const PanelConfiguration& c) {
  const PanelType* type = PanelTypeOf(c.ControllerType);
  return type == nullptr ? "panel" : std::string(type->Caption);
}

bool WatchesRoom(const PanelConfiguration& c) { return c.ControlInputOption == kControlInputRoomPir; }

std::string DeviceSentence(const PanelConfiguration& c) {
  if (PanelTypeOf(c.ControllerType) != nullptr) return "The configuration is for a " + TypeName(c) + ".";
  return "The controller type " + Number(c.ControllerType) +
         " is not known; it is programmed like a QDM panel.";
}

std::string ProjectorSentence(const PanelConfiguration& c) {
  const ProjectorDefinition& projector = c.Projector;
  if (!HasBothNames(projector)) return "No projector has been chosen.";
  return "It drives the projector " + projector.Manufacturer.TrimmedUtf8() + " " +
         projector.Model.TrimmedUtf8() + ".";
}

std::string LineSentence(const PanelConfiguration& c) {
  const ParityChoice* parity = ParityWithCode(c.Projector.Parity);
  const std::string_view parityText = parity == nullptr                    ? "an unknown"
                                      : parity->Parity == LineParity::None ? "no"
                                      : parity->Parity == LineParity::Even ? "even"
                                                                           : "odd";
  return "The projector's line runs at " + std::string(SpeedOf(c.Projector.Baudrate).Digits) +
         " bits a second with " + std::string(parityText) + " parity, 8 data bits and " +
         (c.Projector.Stopbits != 0 ? "2 stop bits." : "1 stop bit.");
}

std::string DelaySentence(const PanelConfiguration& c) {
  return "Between two commands it waits at least " + AsThePanelCounts(c.Projector.InterCommandDelay) +
         ", between two bytes " + Number(c.Projector.InterByteDelay) + " ms.";
}

std::string WarmUpSentence(const PanelConfiguration& c) {
  return "The projector takes " + AsThePanelCounts(c.Projector.WarmUpTime) + " to warm up and " +
         AsThePanelCounts(c.Projector.CoolDownTime) + " to cool down.";
}

std::string NoButtonSentence(const PanelConfiguration& c) {
  if (c.NoButtonPowerDown == 0) return "The system does not turn off because no button is pressed.";
  return "The system turns off after " + AsThePanelCounts(c.NoButtonPowerDown) + " without a button press" +
         (c.LockOnNoButton != 0 ? ", and is locked then." : ".");
}

std::string OutputsSentence(const PanelConfiguration& c) {
  const std::string up = Counted(c.UpTime, "second");
  const std::string down = Counted(c.DownTime, "second");
  switch (c.OutputsOption) {
    case kOutputsDisabled:
      return "The outputs are not used.";
    case kOutputsScreen:
      return "The outputs control a screen, which takes " + up + " to rise and " + down + " to lower.";
    case kOutputsVolume:
      return "The outputs control the volume, using a ZRB-LX or similar.";
    case kOutputsLift:
      return "The outputs control a projector lift and a screen: " + up + " to raise them, " + down +
             " to lower the lift.";
    case kOutputsPowerAndScreen:
      return "The outputs control the projector's power and a screen: the screen takes " + up +
             " to rise, the projector is given " + down + " to power up.";
    default:
      return "The use " + Number(c.OutputsOption) + " of the outputs is not known.";
  }
}

// What the volume buttons do while the projector is off; nothing where the outputs leave that open.
std::optional<std::string> VolumeButtonsSentence(const PanelConfiguration& c) {
  if (c.OutputsOption == kOutputsScreen && c.ScreenUseVolume != 0) {
    return "While the projector is off, the volume buttons raise and lower the screen.";
  }
  if (c.OutputsOption != kOutputsVolume) return std::nullopt;
  return c.AllowVolumeWhenOff != 0 ? "The volume can be controlled while the projector is off, too."
                                   : "The volume cannot be controlled while the projector is off.";
}

std::string ControlInputSentence(const PanelConfiguration& c) {
  switch (c.ControlInputOption) {
    case kControlInputDisabled:
      return "The control input is not used.";
    case kControlInputKeyswitch:
      return "The control input is used with an enable keyswitch.";
    case kControlInputExternalPowerDown:
      return "The control input is used as external power down.";
    case kControlInputRoomPir:
      return std::string("The control input is used with a room sensor: it is ") +
             (c.ControlInputActiveHigh != 0 ? "high" : "low") +
             " while the room is occupied, with a threshold of " + ThresholdInVolts(c.ThresholdVoltage) + ".";
    default:
      return "The use " + Number(c.ControlInputOption) + " of the control input is not known.";
  }
}

std::optional<std::string> RoomEmptySentence(const PanelConfiguration& c) {
  if (!WatchesRoom(c)) return std::nullopt;
  return CountedInWords(c.RoomTimeout, "minute") +
         " after the room is empty the panel turns the projector off.";
}

std::optional<std::string> FrontPanelLockSentence(const PanelConfiguration& c) {
  if (c.LockOnFrontPanel == 0) return std::nullopt;
  return "It locks when the projector is switched off at the front panel, " +
         AsThePanelCounts(c.LockAfterProjectorOffPeriod) + " after that.";
}

std::optional<std::string> ExternalLockSentence(const PanelConfiguration& c) {
  if (c.LockOnExternalPowerDown == 0) return std::nullopt;
  return "It locks on external power down.";
}

std::optional<std::string> RoomEmptyLockSentence(const PanelConfiguration& c) {
  if (c.LockOnRoomEmpty == 0 || !WatchesRoom(c)) return std::nullopt;
  return "It locks when the room is empty, " + AsThePanelCounts(c.LockAfterRoomEmptyPeriod) +
         " after the room empty timeout.";
}

std::string LockSequenceSentence(const PanelConfiguration& c) {
  if (c.LockUsingButtons == 0) return "It cannot be locked with a button sequence.";
  std::string code;
  for (const std::int16_t place : c.LockSequence) code += (code.empty() ? "" : ", ") + LockButtonName(place);
  return "It can be locked; the code is " + code + ".";
}

struct InputFacts {
  ProjectorInput Input;
  std::string_view Name;
  std::int16_t PanelConfiguration::*InUse;
  Slot Command;
};
constexpr std::array<InputFacts, kProjectorInputs> kInputs = {{
    {ProjectorInput::PC1, "PC 1", &PanelConfiguration::UsePC1, kData1Slot},
    {ProjectorInput::PC2, "PC 2", &PanelConfiguration::UsePC2, kData2Slot},
    {ProjectorInput::Video, "Video", &PanelConfiguration::UseVideo, kVideoSlot},
}};

std::string InputSentence(const PanelConfiguration& c, const InputFacts& input) {
  const std::string name(input.Name);
  if (c.*input.InUse == 0) return name + " is not in use.";
  switch (AudioSourceOf(c.AudioRouting, input.Input)) {
    case kFrontAudioJack:
      return name + " is in use, with the sound of the front audio jack.";
    case kRearPcInput:
      return name + " is in use, with the sound of the rear PC input.";
    case kRearVideoInput:
      return name + " is in use, with the sound of the rear Video input.";
    default:
      return name + " is in use, without a source of sound.";
  }
}

std::string VolumeSentence(const PanelConfiguration& c) {
  return "The volume goes from " + Number(c.VolumeMin) + " dB to " + Number(c.VolumeMax) +
         " dB in steps of " + Number(c.VolumeStep) + " dB, and is " + Number(c.PowerUpVolume) +
         " dB at power-up.";
}

std::string AudioTurnsOnSentence(const PanelConfiguration& c) {
  if (c.AudioTurnsOnAmplifier == 0) return "An audio signal does not turn the amplifier on.";
  return "An audio signal turns the amplifier on while the display is off; without one it turns off after " +
         AsThePanelCounts(c.TLVOXpowerDownTime) + ".";
}

std::optional<std::string> CheckRemark(PanelConfiguration c) {
  const std::optional<Message> refusal = CheckConfiguration(c);
  return refusal ? std::optional(refusal->Text) : std::nullopt;
}

std::optional<std::string> LockSequenceRemark(const PanelConfiguration& c) {
  if (c.LockUsingButtons == 0 || WhyNotUnlocked(c).empty()) return std::nullopt;
  std::string remark = WhyNotUnlocked(c) + ".";
  for (const std::string& warning : WarningsAbout(c)) remark += " " + warning + ".";
  return remark;
}

std::optional<std::string> VolumeButtonsRemark(const PanelConfiguration& c) {
  const bool used = c.OutputsOption == kOutputsScreen && c.ScreenUseVolume != 0;
  if (!used || WhyNotPressed(kVolumeUpButton, c.ControllerType).empty()) return std::nullopt;
  return "The volume buttons are to raise and lower the screen, but a " + TypeName(c) + " has none.";
}

// A new configuration has a threshold and a timeout, too: what differs from them was set on purpose.
std::optional<std::string> RoomSensorRemark(const PanelConfiguration& c) {
  const PanelConfiguration fresh;
  if (WatchesRoom(c)) return std::nullopt;
  const std::string why = c.ControlInputOption == kControlInputDisabled
                              ? ", but the control input is disabled."
                              : ", but the control input is not used with a room sensor.";
  if (c.LockOnRoomEmpty != 0) return "The panel is to lock when the room is empty" + why;
  if (c.ThresholdVoltage != fresh.ThresholdVoltage) {
    return "A room sensor threshold of " + ThresholdInVolts(c.ThresholdVoltage) + " is set" + why;
  }
  if (c.RoomTimeout != fresh.RoomTimeout) {
    return "A room empty timeout of " + Counted(c.RoomTimeout, "minute") + " is set" + why;
  }
  return std::nullopt;
}

std::optional<std::string> ExternalLockRemark(const PanelConfiguration& c) {
  if (c.LockOnExternalPowerDown == 0 || c.ControlInputOption == kControlInputExternalPowerDown)
    return std::nullopt;
  return "The panel is to lock on external power down, but the control input is not used for that.";
}

std::optional<std::string> NoButtonLockRemark(const PanelConfiguration& c) {
  if (c.LockOnNoButton == 0 || c.NoButtonPowerDown != 0) return std::nullopt;
  return "The panel is to lock after the no button power down, which is switched off.";
}

std::optional<std::string> InputRemark(const PanelConfiguration& c, const InputFacts& input) {
  const ProjectorDefinition& projector = c.Projector;
  const bool has =
      projector.Available[input.Command] != 0 && projector.Strings[input.Command].BytesInUse() > 0;
  if (c.*input.InUse == 0 || !HasBothNames(projector) || has) return std::nullopt;
  return std::string(input.Name) + " is in use, but the projector has no command \"" +
         std::string(NameOfSlot(input.Command)) + "\".";
}

std::optional<std::string> WarmUpRemark(const PanelConfiguration& c) {
  if (!HasBothNames(c.Projector) || (c.Projector.WarmUpTime != 0 && c.Projector.CoolDownTime != 0)) {
    return std::nullopt;
  }
  return std::string("The projector's ") + (c.Projector.WarmUpTime == 0 ? "warm-up" : "cool-down") +
         " time is 0, which no projector has.";
}

void Add(Words& words, std::string sentence) { words.push_back(std::move(sentence)); }
void Add(Words& words, std::optional<std::string> sentence) {
  if (sentence) words.push_back(std::move(*sentence));
}

void AddWallPanel(Words& words, const PanelConfiguration& c) {
  Add(words, OutputsSentence(c));
  Add(words, VolumeButtonsSentence(c));
  Add(words, ControlInputSentence(c));
  Add(words, RoomEmptySentence(c));
}

void AddAmplifier(Words& words, const PanelConfiguration& c) {
  for (const InputFacts& input : kInputs) Add(words, InputSentence(c, input));
  Add(words, VolumeSentence(c));
  Add(words, AudioTurnsOnSentence(c));
}

Words SentencesOf(const PanelConfiguration& c) {
  const bool amplifier = IsAmplifier(c.ControllerType);
  Words words;
  Add(words, DeviceSentence(c));
  Add(words, ProjectorSentence(c));
  if (HasBothNames(c.Projector)) {
    Add(words, LineSentence(c));
    Add(words, DelaySentence(c));
    Add(words, WarmUpSentence(c));
  }
  amplifier ? AddAmplifier(words, c) : AddWallPanel(words, c);
  Add(words, NoButtonSentence(c));
  Add(words, FrontPanelLockSentence(c));
  if (!amplifier) {
    Add(words, ExternalLockSentence(c));
    Add(words, RoomEmptyLockSentence(c));
  }
  Add(words, LockSequenceSentence(c));
  return words;
}

Words RemarksOn(const PanelConfiguration& c) {
  Words remarks;
  Add(remarks, CheckRemark(c));
  Add(remarks, LockSequenceRemark(c));
  if (!IsAmplifier(c.ControllerType)) {
    Add(remarks, VolumeButtonsRemark(c));
    Add(remarks, RoomSensorRemark(c));
    Add(remarks, ExternalLockRemark(c));
  }
  Add(remarks, NoButtonLockRemark(c));
  for (const InputFacts& input : kInputs) Add(remarks, InputRemark(c, input));
  Add(remarks, WarmUpRemark(c));
  return remarks;
}

}  // namespace

ConfigurationWords InWords(const PanelConfiguration& configuration) {
  return {SentencesOf(configuration), RemarksOn(configuration)};
}

std::string ThresholdInVolts(int counts) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.2f V", counts * 5.0 / 255);
  return text.data();
}

}  // namespace qdm
