#include "port_commands/panel_ports.h"
#include "port_commands/port_commands.h"
#include "port_commands/stop_on_signals.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <ostream>

namespace qdm {

int Find(const FindOptions& options, PortContext& context) {
  const StopOnSignals interruptible(context.Stop);
  const PanelSearch search = SearchPanels(options.Ports, std::nullopt, context, context.Err);
  for (std::size_t slot = 0; slot < search.Slots.size(); ++slot) context.Out << search.Line(slot) << "\n";
  if (context.Stop.stop_requested()) throw CommandError(kRefused, "find", "interrupted");
  const bool found = std::any_of(search.Slots.begin(), search.Slots.end(), [&](const SearchSlot& slot) {
    return slot.Panel && (!options.ControllerType || slot.Panel->IsOfType(*options.ControllerType));
  });
  return found ? kDone : kRefused;
}

}  // namespace qdm
