#include "config/configuration_rules.h"

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
    {&OptionStates::NoButtonTimeOut, "Turn off after no button presses for"},
    {&OptionStates::LockNoButton, "Turn off after no button presses for"},
    {&OptionStates::PowerDownTime, "Audio input turns on amplifier."},
    {&OptionStates::ScreenTimes, "Use to control screen"},
    {&OptionStates::ScreenUseVolume, "Use to control screen"},
    {&OptionStates::LiftTimes, "Use to control projector lift      and screen"},
    {&OptionStates::PowerAndScreenTimes, "Use to control projector power and screen"},
    {&OptionStates::AllowVolumeWhenOff, "Use to control volume using ZRB-LX or similar"},
    {&OptionStates::RoomSensor, "Use as room PIR power down"},
    {&OptionStates::LockOnRoomEmptyPeriod, "Lock on room empty", &OptionStates::RoomSensor},
    {&OptionStates::LockOnFrontPanelPeriod, "Lock on front panel off"},
    {&OptionStates::PC1Audio, "PC 1 (Data 1) in use"},
    {&OptionStates::PC2Audio, "PC 2 (Data 2) in use"},
    {&OptionStates::VideoAudio, "Video in use"},
};

Message Sorry(std::string text) { return {std::move(text), "Sorry", MessageIcon::Exclamation}; }

}  // namespace

std::optional<Message> CheckConfiguration(PanelConfiguration& configuration) {
  ProjectorDefinition& projector = configuration.Projector;
  projector.Manufacturer.Trim();
  projector.Model.Trim();
  if (!HasBothNames(projector)) return Sorry("Cannot proceed, no projector has been defined!");

  if (!IsAmplifier(configuration.ControllerType)) return std::nullopt;
  if (configuration.VolumeMax <= configuration.VolumeMin) {
    return Sorry("Cannot proceed, Maximum volume is less than or equal to minimum!");
  }
  if (configuration.PowerUpVolume > configuration.VolumeMax) {
    return Sorry("Cannot proceed, Power up volume is more than maximum!");
  }
  if (configuration.PowerUpVolume < configuration.VolumeMin) {
    return Sorry("Cannot proceed, Power up volume is less than minimum!");
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
      return {"Lift/screen raise time", "Lift lower time"};
    case kOutputsPowerAndScreen:
      return {"Screen rise time", "Projector power up time"};
    default:
      return {"Screen rise time", "Sreen lower time"};
  }
}

OutputTimeLabels LabelsWhenEdited(int outputsOption) {
  OutputTimeLabels labels = LabelsWhenShown(outputsOption);
  if (outputsOption == kOutputsLift) labels.Up = "Lift/Screen raise time";
  return labels;
}

}  // namespace qdm
