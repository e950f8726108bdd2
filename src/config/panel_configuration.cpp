#include "config/panel_configuration.h"

namespace qdm {

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
