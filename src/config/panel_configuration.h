// The one document that the editor edits: every option of one wall panel or amplifier, with a complete copy
// of the projector definition that it drives. A flat record of 16-bit words, 3,482 bytes in memory, 3,161
// stored. Records come from files: any field may hold any bits, and none of them may be used as an index
// unchecked.
#pragma once

#include "config/panel_types.h"
#include "projectors/projector_definition.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

namespace qdm {

enum OutputsOptionValue : std::int16_t {
  kOutputsDisabled = 0,
  kOutputsScreen = 1,
  kOutputsVolume = 2,
  kOutputsLift = 3,
  kOutputsPowerAndScreen = 4
};

enum ControlInputOptionValue : std::int16_t {
  kControlInputDisabled = 0,
  kControlInputKeyswitch = 1,
  kControlInputExternalPowerDown = 2,
  kControlInputRoomPir = 3
};

// "First button", ... of the four steps of the lock sequence.
std::string_view NameOfStep(std::size_t step);

struct PanelConfiguration {
  std::int16_t ControllerType = kQdm7;  // see panel_types.h
  std::int16_t OutputsOption = kOutputsDisabled;
  std::int16_t UpTime = 1;    // seconds, 1..255
  std::int16_t DownTime = 1;  // seconds, 1..255
  std::int16_t ScreenUseVolume = 0;
  std::int16_t AllowVolumeWhenOff = 0;
  std::int16_t ControlInputOption = kControlInputDisabled;
  std::int16_t ControlInputActiveHigh = 0;  // "High" stores -1, "Low" 0
  std::int16_t RoomTimeout = 1;             // minutes, 1..255
  std::int16_t ThresholdVoltage = 128;      // counts of 5 V / 255
  ProjectorDefinition Projector;
  std::int16_t LockOnFrontPanel = 0;
  std::int16_t LockOnExternalPowerDown = 0;
  std::int16_t LockOnRoomEmpty = 0;
  std::int16_t LockUsingButtons = 0;
  std::int16_t LockAfterProjectorOffPeriod = 1;          // as the panel counts, 0..255
  std::int16_t LockAfterRoomEmptyPeriod = 1;             // as the panel counts, 0..255
  std::array<std::int16_t, 4> LockSequence{2, 2, 2, 2};  // 0..5, places of the buttons on the panel
  std::int16_t EditorMajor = 0;
  std::int16_t EditorMinor = 0;
  std::int16_t Reserved1 = 0;
  std::int16_t NoButtonPowerDown = 0;  // as the panel counts, 1..10; 0 is off
  std::int16_t VolumeMin = -45;        // dB
  std::int16_t VolumeMax = 18;         // dB
  std::int16_t VolumeStep = 1;         // dB, 1..6
  std::int16_t PowerUpVolume = 12;     // dB
  std::int16_t AudioTurnsOnAmplifier = kFlagSet;
  std::int16_t TLVOXpowerDownTime = 10;  // as the panel counts, 1..15
  std::int16_t AudioRouting = 0x201;     // see audio_routing.h
  std::int16_t UsePC1 = kFlagSet;
  std::int16_t UsePC2 = kFlagSet;
  std::int16_t UseVideo = kFlagSet;
  std::int16_t LockOnNoButton = 0;
  std::array<std::uint8_t, 1007> Spare{};

  friend bool operator==(const PanelConfiguration&, const PanelConfiguration&) = default;
};

// The record's fields, in stored order. Stored on disk: never reorder.
template <class Visitor, class... Configuration>
requires RecordsOf<PanelConfiguration, Configuration...>
constexpr void Fields(Visitor& v, Configuration&... c) {
  v.Integer(FieldName("ControllerType", "Controller type"), c.ControllerType...);
  v.Integer(FieldName("OutputsOption", "Outputs"), c.OutputsOption...);
  v.Integer(FieldName("UpTime", "Outputs: up time"), c.UpTime...);
  v.Integer(FieldName("DownTime", "Outputs: down time"), c.DownTime...);
  v.Flag(FieldName("ScreenUseVolume", "Use volume buttons to raise / lower when projector off"),
         c.ScreenUseVolume...);
  v.Flag(FieldName("AllowVolumeWhenOff", "Allow Volume control when projector off"), c.AllowVolumeWhenOff...);
  v.Integer(FieldName("ControlInputOption", "Control input"), c.ControlInputOption...);
  v.Flag(FieldName("ControlInputActiveHigh", "Input state when room occupied"), c.ControlInputActiveHigh...);
  v.Integer(FieldName("RoomTimeout", "Room empty timeout"), c.RoomTimeout...);
  v.Integer(FieldName("ThresholdVoltage", "Threshold voltage"), c.ThresholdVoltage...);
  v.Record(FieldName("Projector", "Projector"), c.Projector...);
  v.Flag(FieldName("LockOnFrontPanel", "Lock on front panel off"), c.LockOnFrontPanel...);
  v.Flag(FieldName("LockOnExternalPowerDown", "Lock on external power down"), c.LockOnExternalPowerDown...);
  v.Flag(FieldName("LockOnRoomEmpty", "Lock on room empty"), c.LockOnRoomEmpty...);
  v.Flag(FieldName("LockUsingButtons", "Lock using button sequence"), c.LockUsingButtons...);
  v.Integer(FieldName("LockAfterProjectorOffPeriod", "Timeout after projector off"),
            c.LockAfterProjectorOffPeriod...);
  v.Integer(FieldName("LockAfterRoomEmptyPeriod", "Timeout after room empty timeout"),
            c.LockAfterRoomEmptyPeriod...);
  v.Integers(FieldName("LockSequence", "%1 of the unlock sequence", NameOfStep), c.LockSequence...);
  v.Integer("EditorMajor", c.EditorMajor...);
  v.Integer("EditorMinor", c.EditorMinor...);
  v.Integer("Reserved1", c.Reserved1...);
  v.Integer(FieldName("NoButtonPowerDown", "Turn off after no button presses for"), c.NoButtonPowerDown...);
  v.Integer(FieldName("VolumeMin", "Minimum volume"), c.VolumeMin...);
  v.Integer(FieldName("VolumeMax", "Maximum volume"), c.VolumeMax...);
  v.Integer(FieldName("VolumeStep", "Volume step"), c.VolumeStep...);
  v.Integer(FieldName("PowerUpVolume", "Power up volume"), c.PowerUpVolume...);
  v.Flag(FieldName("AudioTurnsOnAmplifier", "Audio input turns on amplifier"), c.AudioTurnsOnAmplifier...);
  v.Integer(FieldName("TLVOXpowerDownTime", "Power down after no audio input for"), c.TLVOXpowerDownTime...);
  v.Integer(FieldName("AudioRouting", "Audio inputs"), c.AudioRouting...);
  v.Flag(FieldName("UsePC1", "PC 1 (Data 1) in use"), c.UsePC1...);
  v.Flag(FieldName("UsePC2", "PC 2 (Data 2) in use"), c.UsePC2...);
  v.Flag(FieldName("UseVideo", "Video in use"), c.UseVideo...);
  v.Flag(FieldName("LockOnNoButton", "Lock after no button power down"), c.LockOnNoButton...);
  v.Block("Spare", c.Spare...);
}

inline constexpr std::size_t kStoredConfigurationSize = 3161;
static_assert(std::is_trivially_copyable_v<PanelConfiguration>);
static_assert(sizeof(PanelConfiguration) == 3482);
static_assert(StoredSize<PanelConfiguration>() == kStoredConfigurationSize);

// New: every option back to its default and the projector's names cleared; the rest of the projector,
// `Reserved1` and `Spare` are left as they were.
void ResetToDefaults(PanelConfiguration& configuration);

}  // namespace qdm
