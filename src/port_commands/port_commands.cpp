#include "port_commands/port_commands.h"

namespace qdm {

PortCommands PortCommandsIn(PortContext& context) {
  return {
      .Find = [&context](const FindOptions& options) { return Find(options, context); },
      .Download = [&context](const DownloadOptions& options) { return Download(options, context); },
      .Sheet = [&context](const SheetOptions& options) { return Sheet(options, context); },
      .Simulate = [&context](const SimulateOptions& options) { return Simulate(options, context); },
      .Projector = [&context](const StandInOptions& options) { return Projector(options, context); },
      .Probe = [&context](const ProbeOptions& options) { return Probe(options, context); },
  };
}

}  // namespace qdm
