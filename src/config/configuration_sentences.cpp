#include "config/configuration_sentences.h"

#include "base/words.h"
#include "config/audio_routing.h"
#include "config/configuration_rules.h"
#include "config/configuration_words.h"
#include "config/panel_types.h"
#include "line/speeds_and_parities.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <utility>

namespace qdm {
namespace {

using Words = std::vector<std::string>;

std::string Number(int value) { return std::to_string(value); }

std::string Minutes(int value) { return value == 1 ? Say("1 minute") : SayCount("%n minutes", value); }
std::string Seconds(int value) { return value == 1 ? Say("1 second") : SayCount("%n seconds", value); }

// At the beginning of a sentence: "Fifteen minutes"; digits above twenty.
std::string MinutesInWords(int value) {
  constexpr std::array<std::string_view, 21> kNumbers = {
      Marked("Zero"),    Marked("One"),     Marked("Two"),       Marked("Three"),    Marked("Four"),
      Marked("Five"),    Marked("Six"),     Marked("Seven"),     Marked("Eight"),    Marked("Nine"),
      Marked("Ten"),     Marked("Eleven"),  Marked("Twelve"),    Marked("Thirteen"), Marked("Fourteen"),
      Marked("Fifteen"), Marked("Sixteen"), Marked("Seventeen"), Marked("Eighteen"), Marked("Nineteen"),
      Marked("Twenty")};
  const auto index = static_cast<std::size_t>(value);
  if (index >= kNumbers.size()) return Minutes(value);
  return value == 1 ? Say("One minute") : Say("%1 minutes", {Say(kNumbers[index])});
}

// A time whose unit is the panel's own.
std::string AsThePanelCounts(int value) { return Say("%1 (as the panel counts)", {Number(value)}); }

// "QDM 7", "TL-VOX"; "panel" for a type that is none.
std::string TypeName(const PanelConfiguration& c) {
  const PanelType* type = PanelTypeOf(c.ControllerType);
  return type == nullptr ? Say("panel") : std::string(type->Caption);
}

bool WatchesRoom(const PanelConfiguration& c) { return c.ControlInputOption == kControlInputRoomPir; }

std::string DeviceSentence(const PanelConfiguration& c) {
  if (PanelTypeOf(c.ControllerType) != nullptr) return Say("The configuration is for a %1.", {TypeName(c)});
  return Say("The controller type %1 is not known; it is programmed like a QDM panel.",
             {Number(c.ControllerType)});
}

std::string ProjectorSentence(const PanelConfiguration& c) {
  const ProjectorDefinition& projector = c.Projector;
  if (!HasBothNames(projector)) return Say("No projector has been chosen.");
  return Say("It drives the projector %1 %2.",
             {projector.Manufacturer.TrimmedUtf8(), projector.Model.TrimmedUtf8()});
}

std::string LineSentence(const PanelConfiguration& c) {
  const ParityChoice* parity = ParityWithCode(c.Projector.Parity);
  const std::string parityText = parity == nullptr                    ? Say("an unknown parity")
                                 : parity->Parity == LineParity::None ? Say("no parity")
                                 : parity->Parity == LineParity::Even ? Say("even parity")
                                                                      : Say("odd parity");
  return Say("The projector's line runs at %1 bits a second with %2, 8 data bits and %3.",
             {std::string(SpeedOf(c.Projector.Baudrate).Digits), parityText,
              c.Projector.Stopbits != 0 ? Say("2 stop bits") : Say("1 stop bit")});
}

std::string DelaySentence(const PanelConfiguration& c) {
  return Say("Between two commands it waits at least %1, between two bytes %2 ms.",
             {AsThePanelCounts(c.Projector.InterCommandDelay), Number(c.Projector.InterByteDelay)});
}

std::string WarmUpSentence(const PanelConfiguration& c) {
  return Say("The projector takes %1 to warm up and %2 to cool down.",
             {AsThePanelCounts(c.Projector.WarmUpTime), AsThePanelCounts(c.Projector.CoolDownTime)});
}

std::string NoButtonSentence(const PanelConfiguration& c) {
  if (c.NoButtonPowerDown == 0) return Say("The system does not turn off because no button is pressed.");
  const std::string time = AsThePanelCounts(c.NoButtonPowerDown);
  return c.LockOnNoButton != 0
             ? Say("The system turns off after %1 without a button press, and is locked then.", {time})
             : Say("The system turns off after %1 without a button press.", {time});
}

std::string OutputsSentence(const PanelConfiguration& c) {
  const std::string up = Seconds(c.UpTime);
  const std::string down = Seconds(c.DownTime);
  switch (c.OutputsOption) {
    case kOutputsDisabled:
      return Say("The outputs are not used.");
    case kOutputsScreen:
      return Say("The outputs control a screen, which takes %1 to rise and %2 to lower.", {up, down});
    case kOutputsVolume:
      return Say("The outputs control the volume, using a ZRB-LX or similar.");
    case kOutputsLift:
      return Say("The outputs control a projector lift and a screen: %1 to raise them, %2 to lower the lift.",
                 {up, down});
    case kOutputsPowerAndScreen:
      return Say(
          "The outputs control the projector's power and a screen: the screen takes %1 to rise, the "
          "projector is given %2 to power up.",
          {up, down});
    default:
      return Say("The use %1 of the outputs is not known.", {Number(c.OutputsOption)});
  }
}

// What the volume buttons do while the projector is off; nothing where the outputs leave that open.
std::optional<std::string> VolumeButtonsSentence(const PanelConfiguration& c) {
  if (c.OutputsOption == kOutputsScreen && c.ScreenUseVolume != 0) {
    return Say("While the projector is off, the volume buttons raise and lower the screen.");
  }
  if (c.OutputsOption != kOutputsVolume) return std::nullopt;
  return c.AllowVolumeWhenOff != 0 ? Say("The volume can be controlled while the projector is off, too.")
                                   : Say("The volume cannot be controlled while the projector is off.");
}

std::string ControlInputSentence(const PanelConfiguration& c) {
  switch (c.ControlInputOption) {
    case kControlInputDisabled:
      return Say("The control input is not used.");
    case kControlInputKeyswitch:
      return Say("The control input is used with an enable keyswitch.");
    case kControlInputExternalPowerDown:
      return Say("The control input is used as external power down.");
    case kControlInputRoomPir:
      return Say(c.ControlInputActiveHigh != 0
                     ? Marked("The control input is used with a room sensor: it is high while the room is "
                              "occupied, with a threshold of %1.")
                     : Marked("The control input is used with a room sensor: it is low while the room is "
                              "occupied, with a threshold of %1."),
                 {ThresholdInVolts(c.ThresholdVoltage)});
    default:
      return Say("The use %1 of the control input is not known.", {Number(c.ControlInputOption)});
  }
}

std::optional<std::string> RoomEmptySentence(const PanelConfiguration& c) {
  if (!WatchesRoom(c)) return std::nullopt;
  return Say("%1 after the room is empty the panel turns the projector off.",
             {MinutesInWords(c.RoomTimeout)});
}

std::optional<std::string> FrontPanelLockSentence(const PanelConfiguration& c) {
  if (c.LockOnFrontPanel == 0) return std::nullopt;
  return Say("It locks when the projector is switched off at the front panel, %1 after that.",
             {AsThePanelCounts(c.LockAfterProjectorOffPeriod)});
}

std::optional<std::string> ExternalLockSentence(const PanelConfiguration& c) {
  if (c.LockOnExternalPowerDown == 0) return std::nullopt;
  return Say("It locks on external power down.");
}

std::optional<std::string> RoomEmptyLockSentence(const PanelConfiguration& c) {
  if (c.LockOnRoomEmpty == 0 || !WatchesRoom(c)) return std::nullopt;
  return Say("It locks when the room is empty, %1 after the room empty timeout.",
             {AsThePanelCounts(c.LockAfterRoomEmptyPeriod)});
}

std::string LockSequenceSentence(const PanelConfiguration& c) {
  if (c.LockUsingButtons == 0) return Say("It cannot be locked with a button sequence.");
  std::string code;
  for (const std::int16_t place : c.LockSequence) code += (code.empty() ? "" : ", ") + LockButtonName(place);
  return Say("It can be locked; the code is %1.", {code});
}

struct InputFacts {
  ProjectorInput Input;
  std::string_view Name;
  std::int16_t PanelConfiguration::*InUse;
  Slot Command;
};
constexpr std::array<InputFacts, kProjectorInputs> kInputs = {{
    {ProjectorInput::PC1, Marked("PC 1"), &PanelConfiguration::UsePC1, kData1Slot},
    {ProjectorInput::PC2, Marked("PC 2"), &PanelConfiguration::UsePC2, kData2Slot},
    {ProjectorInput::Video, Marked("Video"), &PanelConfiguration::UseVideo, kVideoSlot},
}};

std::string InputSentence(const PanelConfiguration& c, const InputFacts& input) {
  const std::string name = Say(input.Name);
  if (c.*input.InUse == 0) return Say("%1 is not in use.", {name});
  switch (AudioSourceOf(c.AudioRouting, input.Input)) {
    case kFrontAudioJack:
      return Say("%1 is in use, with the sound of the front audio jack.", {name});
    case kRearPcInput:
      return Say("%1 is in use, with the sound of the rear PC input.", {name});
    case kRearVideoInput:
      return Say("%1 is in use, with the sound of the rear Video input.", {name});
    default:
      return Say("%1 is in use, without a source of sound.", {name});
  }
}

std::string VolumeSentence(const PanelConfiguration& c) {
  return Say("The volume goes from %1 dB to %2 dB in steps of %3 dB, and is %4 dB at power-up.",
             {Number(c.VolumeMin), Number(c.VolumeMax), Number(c.VolumeStep), Number(c.PowerUpVolume)});
}

std::string AudioTurnsOnSentence(const PanelConfiguration& c) {
  if (c.AudioTurnsOnAmplifier == 0) return Say("An audio signal does not turn the amplifier on.");
  return Say(
      "An audio signal turns the amplifier on while the display is off; without one it turns off after %1.",
      {AsThePanelCounts(c.TLVOXpowerDownTime)});
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
  return Say("The volume buttons are to raise and lower the screen, but a %1 has none.", {TypeName(c)});
}

// A new configuration has a threshold and a timeout, too: what differs from them was set on purpose.
std::optional<std::string> RoomSensorRemark(const PanelConfiguration& c) {
  const PanelConfiguration fresh;
  if (WatchesRoom(c)) return std::nullopt;
  const bool disabled = c.ControlInputOption == kControlInputDisabled;
  if (c.LockOnRoomEmpty != 0) {
    return disabled
               ? Say("The panel is to lock when the room is empty, but the control input is disabled.")
               : Say("The panel is to lock when the room is empty, but the control input is not used with a "
                     "room sensor.");
  }
  if (c.ThresholdVoltage != fresh.ThresholdVoltage) {
    return Say(disabled
                   ? Marked("A room sensor threshold of %1 is set, but the control input is disabled.")
                   : Marked("A room sensor threshold of %1 is set, but the control input is not used with a "
                            "room sensor."),
               {ThresholdInVolts(c.ThresholdVoltage)});
  }
  if (c.RoomTimeout != fresh.RoomTimeout) {
    return Say(disabled
                   ? Marked("A room empty timeout of %1 is set, but the control input is disabled.")
                   : Marked("A room empty timeout of %1 is set, but the control input is not used with a "
                            "room sensor."),
               {Minutes(c.RoomTimeout)});
  }
  return std::nullopt;
}

std::optional<std::string> ExternalLockRemark(const PanelConfiguration& c) {
  if (c.LockOnExternalPowerDown == 0 || c.ControlInputOption == kControlInputExternalPowerDown)
    return std::nullopt;
  return Say("The panel is to lock on external power down, but the control input is not used for that.");
}

std::optional<std::string> NoButtonLockRemark(const PanelConfiguration& c) {
  if (c.LockOnNoButton == 0 || c.NoButtonPowerDown != 0) return std::nullopt;
  return Say("The panel is to lock after the no button power down, which is switched off.");
}

std::optional<std::string> InputRemark(const PanelConfiguration& c, const InputFacts& input) {
  const ProjectorDefinition& projector = c.Projector;
  const bool has =
      projector.Available[input.Command] != 0 && projector.Strings[input.Command].BytesInUse() > 0;
  if (c.*input.InUse == 0 || !HasBothNames(projector) || has) return std::nullopt;
  return Say("%1 is in use, but the projector has no command \"%2\".",
             {Say(input.Name), Say(NameOfSlot(input.Command))});
}

std::optional<std::string> WarmUpRemark(const PanelConfiguration& c) {
  if (!HasBothNames(c.Projector) || (c.Projector.WarmUpTime != 0 && c.Projector.CoolDownTime != 0)) {
    return std::nullopt;
  }
  return c.Projector.WarmUpTime == 0 ? Say("The projector's warm-up time is 0, which no projector has.")
                                     : Say("The projector's cool-down time is 0, which no projector has.");
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
