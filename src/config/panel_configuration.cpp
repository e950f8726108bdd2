#include "config/panel_configuration.h"

namespace qdm {

std::string_view NameOfStep(std::size_t step) {
  constexpr std::array<std::string_view, 4> kSteps = {"First button", "Second button", "Third button",
                                                      "Fourth button"};
  return kSteps[step];
}

void ResetToDefaults(PanelConfiguration& configuration) {
  PanelConfiguration defaults;
  defaults.Projector = configuration.Projector;
  defaults.Projector.Manufacturer = {};
  defaults.Projector.Model = {};
  defaults.Reserved1 = configuration.Reserved1;
  defaults.Spare = configuration.Spare;
  configuration = defaults;
}

}  // namespace qdm
