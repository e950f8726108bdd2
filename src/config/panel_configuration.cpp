#include "config/panel_configuration.h"

#include "base/words.h"

namespace qdm {

std::string_view NameOfStep(std::size_t step) {
  constexpr std::array<std::string_view, 4> kSteps = {Marked("First button"), Marked("Second button"),
                                                      Marked("Third button"), Marked("Fourth button")};
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
