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
  v.Integer("ControllerType", c.ControllerType...);
  v.Integer("OutputsOption", c.OutputsOption...);
  v.Integer("UpTime", c.UpTime...);
  v.Integer("DownTime", c.DownTime...);
  v.Flag("ScreenUseVolume", c.ScreenUseVolume...);
  v.Flag("AllowVolumeWhenOff", c.AllowVolumeWhenOff...);
  v.Integer("ControlInputOption", c.ControlInputOption...);
  v.Flag("ControlInputActiveHigh", c.ControlInputActiveHigh...);
  v.Integer("RoomTimeout", c.RoomTimeout...);
  v.Integer("ThresholdVoltage", c.ThresholdVoltage...);
  v.Record("Projector", c.Projector...);
  v.Flag("LockOnFrontPanel", c.LockOnFrontPanel...);
  v.Flag("LockOnExternalPowerDown", c.LockOnExternalPowerDown...);
  v.Flag("LockOnRoomEmpty", c.LockOnRoomEmpty...);
  v.Flag("LockUsingButtons", c.LockUsingButtons...);
  v.Integer("LockAfterProjectorOffPeriod", c.LockAfterProjectorOffPeriod...);
  v.Integer("LockAfterRoomEmptyPeriod", c.LockAfterRoomEmptyPeriod...);
  v.Integers("LockSequence", c.LockSequence...);
  v.Integer("EditorMajor", c.EditorMajor...);
  v.Integer("EditorMinor", c.EditorMinor...);
  v.Integer("Reserved1", c.Reserved1...);
  v.Integer("NoButtonPowerDown", c.NoButtonPowerDown...);
  v.Integer("VolumeMin", c.VolumeMin...);
  v.Integer("VolumeMax", c.VolumeMax...);
  v.Integer("VolumeStep", c.VolumeStep...);
  v.Integer("PowerUpVolume", c.PowerUpVolume...);
  v.Flag("AudioTurnsOnAmplifier", c.AudioTurnsOnAmplifier...);
  v.Integer("TLVOXpowerDownTime", c.TLVOXpowerDownTime...);
  v.Integer("AudioRouting", c.AudioRouting...);
  v.Flag("UsePC1", c.UsePC1...);
  v.Flag("UsePC2", c.UsePC2...);
  v.Flag("UseVideo", c.UseVideo...);
  v.Flag("LockOnNoButton", c.LockOnNoButton...);
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
