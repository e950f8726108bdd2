#include "config/configuration_rules.h"

#include "base/words.h"

#include <string>
#include <utility>

namespace qdm {
namespace {

struct OptionNeed {
  bool OptionStates::*Option;
  std::string_view Caption;             // of what brings it in
  bool OptionStates::*First = nullptr;  // what that itself depends on
};
constexpr OptionNeed kNeeds[] = {
    {&OptionStates::NoButtonTimeOut, Marked("Turn off after no button presses for")},
    {&OptionStates::LockNoButton, Marked("Turn off after no button presses for")},
    {&OptionStates::PowerDownTime, Marked("Audio input turns on amplifier.")},
    {&OptionStates::ScreenTimes, Marked("Use to control screen")},
    {&OptionStates::ScreenUseVolume, Marked("Use to control screen")},
    {&OptionStates::LiftTimes, Marked("Use to control projector lift      and screen")},
    {&OptionStates::PowerAndScreenTimes, Marked("Use to control projector power and screen")},
    {&OptionStates::AllowVolumeWhenOff, Marked("Use to control volume using ZRB-LX or similar")},
    {&OptionStates::RoomSensor, Marked("Use as room PIR power down")},
    {&OptionStates::LockOnRoomEmptyPeriod, Marked("Lock on room empty"), &OptionStates::RoomSensor},
    {&OptionStates::LockOnFrontPanelPeriod, Marked("Lock on front panel off")},
    {&OptionStates::PC1Audio, Marked("PC 1 (Data 1) in use")},
    {&OptionStates::PC2Audio, Marked("PC 2 (Data 2) in use")},
    {&OptionStates::VideoAudio, Marked("Video in use")},
};

Message Sorry(std::string text) { return {std::move(text), Say("Sorry"), MessageIcon::Exclamation}; }

}  // namespace

std::optional<Message> CheckConfiguration(PanelConfiguration& configuration) {
  ProjectorDefinition& projector = configuration.Projector;
  projector.Manufacturer.Trim();
  projector.Model.Trim();
  if (!HasBothNames(projector)) return Sorry(Say("Cannot proceed, no projector has been defined!"));

  if (!IsAmplifier(configuration.ControllerType)) return std::nullopt;
  if (configuration.VolumeMax <= configuration.VolumeMin) {
    return Sorry(Say("Cannot proceed, Maximum volume is less than or equal to minimum!"));
  }
  if (configuration.PowerUpVolume > configuration.VolumeMax) {
    return Sorry(Say("Cannot proceed, Power up volume is more than maximum!"));
  }
  if (configuration.PowerUpVolume < configuration.VolumeMin) {
    return Sorry(Say("Cannot proceed, Power up volume is less than minimum!"));
  }
  return std::nullopt;
}

LockButtonSet LockButtonsOf(int controllerType) {
  const PanelType* type = PanelTypeOf(controllerType);
  return type == nullptr ? kEveryButton : type->HasButton;
}

OptionStates StatesFor(const OptionSelections& selected) {
  OptionStates states;
  states.NoButtonTimeOut = states.LockNoButton = selected.TurnOffNoButton;

  states.AmplifierLayout = IsAmplifier(selected.ControllerType);
  states.LockButtons = LockButtonsOf(selected.ControllerType);
  states.PowerDownTime = selected.AudioTurnsOn;

  states.ScreenTimes = states.ScreenUseVolume = selected.OutputsOption == kOutputsScreen;
  states.LiftTimes = selected.OutputsOption == kOutputsLift;
  states.PowerAndScreenTimes = selected.OutputsOption == kOutputsPowerAndScreen;
  states.AllowVolumeWhenOff = selected.OutputsOption == kOutputsVolume;

  states.RoomSensor = selected.ControlInputOption == kControlInputRoomPir;
  states.LockOnRoomEmptyPeriod = states.RoomSensor && selected.LockOnRoomEmpty;
  states.LockOnFrontPanelPeriod = selected.LockOnFrontPanel;

  states.PC1Audio = selected.UsePC1;
  states.PC2Audio = selected.UsePC2;
  states.VideoAudio = selected.UseVideo;
  return states;
}

std::string_view NeedOf(const OptionStates& states, bool OptionStates::*option) {
  if (states.*option) return {};
  for (const OptionNeed& need : kNeeds) {
    if (need.Option != option) continue;
    const std::string_view first = need.First == nullptr ? "" : NeedOf(states, need.First);
    return first.empty() ? need.Caption : first;
  }
  return {};
}

OutputTimeLabels LabelsWhenShown(int outputsOption) {
  switch (outputsOption) {
    case kOutputsLift:
      return {Marked("Lift/screen raise time"), Marked("Lift lower time")};
    case kOutputsPowerAndScreen:
      return {Marked("Screen rise time"), Marked("Projector power up time")};
    default:
      return {Marked("Screen rise time"), Marked("Sreen lower time")};
  }
}

OutputTimeLabels LabelsWhenEdited(int outputsOption) {
  OutputTimeLabels labels = LabelsWhenShown(outputsOption);
  if (outputsOption == kOutputsLift) labels.Up = Marked("Lift/Screen raise time");
  return labels;
}

}  // namespace qdm
