// A configuration with a distinct value in every field, as distinct_projector.h does it for its projector.
#pragma once

#include "config/panel_configuration.h"
#include "support/distinct_projector.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <string_view>

namespace qdm {

inline const std::vector<WordPlace<PanelConfiguration>> kConfigurationWords = {
    {0, "ControllerType", &PanelConfiguration::ControllerType},
    {2, "OutputsOption", &PanelConfiguration::OutputsOption},
    {4, "UpTime", &PanelConfiguration::UpTime},
    {6, "DownTime", &PanelConfiguration::DownTime},
    {8, "ScreenUseVolume", &PanelConfiguration::ScreenUseVolume, true},
    {10, "AllowVolumeWhenOff", &PanelConfiguration::AllowVolumeWhenOff, true},
    {12, "ControlInputOption", &PanelConfiguration::ControlInputOption},
    {14, "ControlInputActiveHigh", &PanelConfiguration::ControlInputActiveHigh, true},
    {16, "RoomTimeout", &PanelConfiguration::RoomTimeout},
    {18, "ThresholdVoltage", &PanelConfiguration::ThresholdVoltage},
    {2104, "LockOnFrontPanel", &PanelConfiguration::LockOnFrontPanel, true},
    {2106, "LockOnExternalPowerDown", &PanelConfiguration::LockOnExternalPowerDown, true},
    {2108, "LockOnRoomEmpty", &PanelConfiguration::LockOnRoomEmpty, true},
    {2110, "LockUsingButtons", &PanelConfiguration::LockUsingButtons, true},
    {2112, "LockAfterProjectorOffPeriod", &PanelConfiguration::LockAfterProjectorOffPeriod},
    {2114, "LockAfterRoomEmptyPeriod", &PanelConfiguration::LockAfterRoomEmptyPeriod},
    {2124, "EditorMajor", &PanelConfiguration::EditorMajor},
    {2126, "EditorMinor", &PanelConfiguration::EditorMinor},
    {2128, "Reserved1", &PanelConfiguration::Reserved1},
    {2130, "NoButtonPowerDown", &PanelConfiguration::NoButtonPowerDown},
    {2132, "VolumeMin", &PanelConfiguration::VolumeMin},
    {2134, "VolumeMax", &PanelConfiguration::VolumeMax},
    {2136, "VolumeStep", &PanelConfiguration::VolumeStep},
    {2138, "PowerUpVolume", &PanelConfiguration::PowerUpVolume},
    {2140, "AudioTurnsOnAmplifier", &PanelConfiguration::AudioTurnsOnAmplifier, true},
    {2142, "TLVOXpowerDownTime", &PanelConfiguration::TLVOXpowerDownTime},
    {2144, "AudioRouting", &PanelConfiguration::AudioRouting},
    {2146, "UsePC1", &PanelConfiguration::UsePC1, true},
    {2148, "UsePC2", &PanelConfiguration::UsePC2, true},
    {2150, "UseVideo", &PanelConfiguration::UseVideo, true},
    {2152, "LockOnNoButton", &PanelConfiguration::LockOnNoButton, true},
};

inline PanelConfiguration DistinctConfiguration() {
  PanelConfiguration configuration;
  configuration.Projector = DistinctProjector();
  for (const auto& word : kConfigurationWords) configuration.*word.Member = DistinctWord(word.Offset);
  for (std::size_t i = 0; i < 4; ++i) configuration.LockSequence[i] = DistinctWord(2116 + 2 * i);
  for (std::size_t i = 0; i < 1007; ++i) configuration.Spare[i] = DistinctByte(2154 + i);
  return configuration;
}

// The word of that name: "UpTime", "Projector.WarmUpTime".
inline std::int16_t& WordNamed(PanelConfiguration& configuration, std::string_view name) {
  constexpr std::string_view kOfProjector = "Projector.";
  const auto find = [](const auto& words, std::string_view wanted, auto& record) -> std::int16_t& {
    const auto named = [wanted](const auto& word) { return word.Name == wanted; };
    const auto word = std::find_if(words.begin(), words.end(), named);
    if (word == words.end()) throw std::runtime_error("no " + std::string(wanted));
    return record.*(word->Member);
  };
  if (!name.starts_with(kOfProjector)) return find(kConfigurationWords, name, configuration);
  return find(kProjectorWords, name.substr(kOfProjector.size()), configuration.Projector);
}

}  // namespace qdm
