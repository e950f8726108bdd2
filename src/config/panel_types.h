// The controllers that a configuration can be for: one row each, with everything in which one type differs
// from another. Whoever must tell types apart asks the row; a code that no type has (records may hold any)
// has none.
#pragma once

#include "base/words.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace qdm {

// Stored on disk and, plus one, what a panel answers: never renumber.
enum ControllerTypeValue : std::int16_t { kQdm7 = 0, kQdm6 = 1, kQdm4 = 2, kTlVox = 3 };

// What bytes 0..25 of the panel's memory mean.
enum class MemoryLayout { Qdm, Tlvox };

// A wall panel has outputs, a control input and a room sensor. An amplifier has audio inputs and a volume
// range instead, and the search on a single port has no name for it.
enum class DeviceKind { WallPanel, Amplifier };

// The pictures of a lock sequence, in the order of their stored numbers.
enum LockButton : std::uint8_t {
  kVolumeUpButton,
  kVolumeDownButton,
  kPc1Button,
  kPc2Button,
  kVideoButton,
  kPowerButton
};
inline constexpr std::size_t kLockButtons = 6;
inline constexpr std::array<std::string_view, kLockButtons> kLockButtonNames = {
    Marked("Volume up"), Marked("Volume down"), Marked("PC 1"),
    Marked("PC 2"),      Marked("Video"),       Marked("Power")};

// By LockButton.
using LockButtonSet = std::array<bool, kLockButtons>;
inline constexpr LockButtonSet kEveryButton = {true, true, true, true, true, true};
inline constexpr LockButtonSet kAllButVolume = {false, false, true, true, true, true};
inline constexpr LockButtonSet kAllButVideoAndPower = {true, true, true, true, false, false};

struct PanelType {
  ControllerTypeValue Code;
  std::string_view Caption;
  std::string_view ShortName;  // in front of a firmware version and on the command line
  DeviceKind Kind;
  MemoryLayout Layout;
  LockButtonSet HasButton;

  // What a panel of this type calls itself in an identification reply.
  constexpr std::uint8_t ModelCode() const { return static_cast<std::uint8_t>(Code + 1); }
};

// By code.
inline constexpr std::array PanelTypes = {
    PanelType{kQdm7, "QDM 7", "QDM7", DeviceKind::WallPanel, MemoryLayout::Qdm, kEveryButton},
    PanelType{kQdm6, "QDM 6", "QDM6", DeviceKind::WallPanel, MemoryLayout::Qdm, kEveryButton},
    PanelType{kQdm4, "QDM 4", "QDM4", DeviceKind::WallPanel, MemoryLayout::Qdm, kAllButVolume},
    PanelType{kTlVox, "TL-VOX", "TL-VOX", DeviceKind::Amplifier, MemoryLayout::Tlvox, kAllButVideoAndPower},
};

// Nothing for a code that no type has.
const PanelType* PanelTypeOf(int controllerType);
const PanelType* PanelTypeOfModel(int modelCode);
// "QDM 7", "qdm7", "tl-vox": case and blanks do not matter.
const PanelType* PanelTypeNamed(std::string_view name);

// The captions of all types: "QDM 7, QDM 6, QDM 4, TL-VOX", with `beforeLast` for the last ", ".
std::string CaptionsOfPanelTypes(std::string_view beforeLast = ", ");

bool IsAmplifier(int controllerType);
// Records with a code that no type has are laid out like a QDM panel's.
MemoryLayout MemoryLayoutOf(int controllerType);

}  // namespace qdm
