// What may be saved and downloaded, and which option makes which other option visible or editable.
#pragma once

#include "base/message.h"
#include "config/panel_configuration.h"
#include "config/panel_types.h"

#include <array>
#include <optional>
#include <string_view>

namespace qdm {

// The check before saving and downloading: nothing when the configuration may go, else what to tell the user.
// Trims the projector's names in the record.
std::optional<Message> CheckConfiguration(PanelConfiguration& configuration);

// What is selected in the option controls. A group in which nothing is selected has the value -1.
struct OptionSelections {
  int ControllerType = kQdm7;
  int OutputsOption = kOutputsDisabled;
  int ControlInputOption = kControlInputDisabled;
  bool TurnOffNoButton = false;
  bool AudioTurnsOn = false;
  bool LockOnFrontPanel = false;
  bool LockOnRoomEmpty = false;
  bool UsePC1 = false;
  bool UsePC2 = false;
  bool UseVideo = false;
};

// Which buttons a controller type has; all of them for a type that is none.
LockButtonSet LockButtonsOf(int controllerType);

struct OptionStates {
  // Target device
  bool AmplifierLayout =
      false;  // shows the amplifier's frames instead of "Outputs", "Control Input" and two lock controls
  LockButtonSet LockButtons = kEveryButton;
  // Power down
  bool NoButtonTimeOut = false;
  bool LockNoButton = false;
  // Amplifier
  bool PowerDownTime = false;
  // Outputs
  bool ScreenTimes = false;
  bool ScreenUseVolume = false;
  bool LiftTimes = false;
  bool PowerAndScreenTimes = false;
  bool AllowVolumeWhenOff = false;
  // Control input
  bool RoomSensor = false;  // threshold, occupied state, room timeout, the room-empty lock
  bool LockOnRoomEmptyPeriod = false;
  // Lock
  bool LockOnFrontPanelPeriod = false;
  // Projector/Audio inputs
  bool PC1Audio = false;
  bool PC2Audio = false;
  bool VideoAudio = false;

  friend bool operator==(const OptionStates&, const OptionStates&) = default;
};

OptionStates StatesFor(const OptionSelections& selected);

// Why an option cannot be edited: the caption of what has to be chosen first. Empty while it can be.
std::string_view NeedOf(const OptionStates& states, bool OptionStates::*option);

// The labels that the time entries use in their range messages for a use of the outputs. Showing a record and
// editing a value write the lift label differently; both are kept.
struct OutputTimeLabels {
  std::string_view Up;
  std::string_view Down;
};
OutputTimeLabels LabelsWhenShown(int outputsOption);
OutputTimeLabels LabelsWhenEdited(int outputsOption);

}  // namespace qdm
