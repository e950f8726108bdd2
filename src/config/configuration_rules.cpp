#include "config/configuration_rules.h"

#include <string>
#include <utility>

namespace qdm {
namespace {

Message Sorry(std::string text) { return {std::move(text), "Sorry", MessageIcon::Exclamation}; }

}  // namespace

std::optional<Message> CheckConfiguration(PanelConfiguration& configuration) {
  ProjectorDefinition& projector = configuration.Projector;
  projector.Manufacturer = FixedText<32>(std::u16string(projector.Manufacturer.Trimmed()));
  projector.Model = FixedText<32>(std::u16string(projector.Model.Trimmed()));
  if (!HasBothNames(projector)) return Sorry("Cannot proceed, no projector has been defined!");

  if (configuration.ControllerType != kTlVox) return std::nullopt;
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

OptionStates StatesFor(const OptionSelections& selected) {
  OptionStates states;
  states.NoButtonTimeOut = states.LockNoButton = selected.TurnOffNoButton;

  states.AmplifierLayout = selected.ControllerType == kTlVox;
  states.LockFrameTwips = states.AmplifierLayout ? kLockFrameTwipsAmplifier : kLockFrameTwipsPanel;
  states.PowerDownTime = selected.AudioTurnsOn;

  states.ScreenTimes = states.ScreenUseVolume = selected.OutputsOption == kOutputsScreen;
  states.LiftTimes = selected.OutputsOption == kOutputsLift;
  states.PowerAndScreenTimes = selected.OutputsOption == kOutputsPowerAndScreen;
  states.AllowVolumeWhenOff = selected.OutputsOption == kOutputsVolume;

  states.RoomSensor = selected.ControlInputOption == kControlInputRoomPir;
  states.LockOnRoomEmptyPeriod = states.RoomSensor && selected.LockOnRoomEmpty;
  states.LockOnFrontPanelPeriod = selected.LockOnFrontPanel;
  return states;
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
