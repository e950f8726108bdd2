// The limits of the options that are numbers, the labels that range messages give them, and their units.
// Records from files may lie outside; what a control enters does not.
#pragma once

#include "base/words.h"
#include "config/panel_configuration.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace qdm {

struct OptionRange {
  std::int16_t PanelConfiguration::*Field;
  int Low;
  int High;
  std::string_view Label;
  std::string_view Unit;  // empty where the number is passed on as it is and the panel gives it its meaning
};

// "TL-VOX minimum volume" is the label of the maximum as well. The labels of the two output times depend on
// the use of the outputs: see OutputTimeLabels.
inline constexpr std::array<OptionRange, 12> kOptionRanges = {{
    {&PanelConfiguration::UpTime, 1, 255, "", "s"},
    {&PanelConfiguration::DownTime, 1, 255, "", "s"},
    {&PanelConfiguration::RoomTimeout, 1, 255, Marked("Room empty timeout"), "min"},
    {&PanelConfiguration::ThresholdVoltage, 0, 255, Marked("Voltage threshold for PIR sensor"), "5 V / 255"},
    {&PanelConfiguration::LockAfterProjectorOffPeriod, 0, 255,
     Marked("Lock panel timeout after projector off"), ""},
    {&PanelConfiguration::LockAfterRoomEmptyPeriod, 0, 255,
     Marked("Lock panel timeout after room empty timeout"), ""},
    {&PanelConfiguration::NoButtonPowerDown, 1, 10, Marked("No button press power down time out"), ""},
    {&PanelConfiguration::VolumeMin, -45, 18, Marked("TL-VOX minimum volume"), "dB"},
    {&PanelConfiguration::VolumeMax, -6, 18, Marked("TL-VOX minimum volume"), "dB"},
    {&PanelConfiguration::VolumeStep, 1, 6, Marked("TL-VOX volume steps"), "dB"},
    {&PanelConfiguration::PowerUpVolume, -6, 18, Marked("TL-VOX powerup level"), "dB"},
    {&PanelConfiguration::TLVOXpowerDownTime, 1, 15, Marked("No audio input power down time out"), ""},
}};

constexpr const OptionRange& RangeOf(std::int16_t PanelConfiguration::*field) {
  const OptionRange* range = kOptionRanges.begin();
  while (range->Field != field) ++range;
  return *range;
}

}  // namespace qdm
