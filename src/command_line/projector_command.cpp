#include "command_line/bench_projector.h"
#include "command_line/panel_ports.h"
#include "command_line/signals.h"
#include "projector_bench/bench_line.h"
#include "projector_bench/stand_in.h"
#ifndef _WIN32
#include "serial_io/pseudo_terminal_port.h"
#endif

#include <chrono>
#include <cstddef>
#include <ostream>

namespace qdm {
namespace {

// Without a port that is named: a device that others can open, told on the first line.
std::unique_ptr<SerialPort> StandInPort(const StandInOptions& options, const std::string& settings,
                                        CommandContext& context) {
  if (!options.Port.empty()) return OpenPortNamed(options.Port, settings, context);
#ifdef _WIN32
  throw CommandError(kUnusable, "projector", "this system has no pseudo-terminals; name a port with --port");
#else
  auto port = std::make_unique<PseudoTerminalPort>(settings);
  context.Out << port->Device() << std::endl;
  return port;
#endif
}

}  // namespace

int Projector(const StandInOptions& options, CommandContext& context) {
  const ProjectorDefinition projector = ReadProjector(options, context);
  const StopOnSignals interruptible(context.Stop);
  const auto port = StandInPort(options, BenchLineSettings(projector), context);
  StandIn standIn(projector);
  standIn.Switches.Silent = options.Silent;
  standIn.Switches.Delay = std::chrono::milliseconds(options.Delay);
  const Microseconds start = context.Time.Now();
  std::size_t told = 0;
  ServeStandIn(standIn, *port, context.Time, context.Stop.get_token(), [&] {
    for (; told < standIn.Heard().size(); ++told)
      context.Out << ListLine(standIn.Heard()[told], start) << std::endl;
  });
  if (!context.Stop.stop_requested()) throw CommandError(kRefused, options.Port, "the port is gone");
  return kDone;
}

}  // namespace qdm
