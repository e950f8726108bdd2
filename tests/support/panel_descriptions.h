// Simulated panels in a line: Described(kQdm7, "19200,e,8,2", {"lose-ack:3"}).
#pragma once

#include "config/panel_configuration.h"
#include "simulation/simulated_panel.h"

#include <string>
#include <vector>

namespace qdm {

inline SimulatedPanel::Description Described(int controllerType, std::string settings,
                                             const std::vector<std::string>& faults = {},
                                             std::uint8_t major = 1, std::uint8_t minor = 3) {
  SimulatedPanel::Description description;
  description.Panel = {PanelTypeOf(controllerType)->ModelCode(), major, minor};
  description.Settings = std::move(settings);
  for (const std::string& fault : faults) description.Faults.push_back(ParsePanelFault(fault));
  return description;
}

}  // namespace qdm
