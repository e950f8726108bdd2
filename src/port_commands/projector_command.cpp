#include "port_commands/bench_projector.h"
#include "port_commands/panel_ports.h"
#include "port_commands/stop_on_signals.h"
#include "projector_bench/bench_line.h"
#include "projector_bench/stand_in.h"

#include <memory>
#include <string>
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
                                        PortContext& context) {
  if (!options.Port.empty()) return OpenPortNamed(options.Port, settings, context);
#ifdef _WIN32
  throw CommandError(kUnusable, "projector", "this system has no pseudo-terminals; name a port with --port");
#else
  auto port = std::make_unique<PseudoTerminalPort>(settings);
  context.Out << port->Device() << std::endl;
  return port;
#endif
}

StandInSwitches SwitchesFor(const StandInOptions& options) {
  StandInSwitches switches;
  switches.Silent = options.Silent;
  switches.AnswerWrong = options.Wrong;
  switches.Delay = std::chrono::milliseconds(options.Delay);
  if (options.Busy.empty()) return switches;
  switches.Power = WhileBusy::Ignore;
  if (options.Busy == "ignore") return switches;
  switches.Power = WhileBusy::AnswerBusy;
  switches.BusyReply = BytesIn(TypedString("--busy", options.Busy));
  return switches;
}

void Tell(const StandIn& standIn, const HeardCommand& heard, Microseconds start,
          const StandInOptions& options, PortContext& context) {
  context.Out << ListLine(heard, start) << std::endl;
  const std::string remarks = standIn.RemarksOn(heard);
  if (options.Remarks && !remarks.empty()) context.Err << NameOf(heard) << ": " << remarks << std::endl;
}

}  // namespace

int Projector(const StandInOptions& options, PortContext& context) {
  const ProjectorDefinition projector = ReadProjector(options, context);
  const StandInSwitches switches = SwitchesFor(options);
  const StopOnSignals interruptible(context.Stop);
  const auto port = StandInPort(options, BenchLineSettings(projector), context);
  StandIn standIn(projector);
  standIn.Switches = switches;
  const Microseconds start = context.Time.Now();
  std::size_t told = 0;
  ServeStandIn(standIn, *port, context.Time, context.Stop.get_token(), [&] {
    for (; told < standIn.Heard().size(); ++told)
      Tell(standIn, standIn.Heard()[told], start, options, context);
  });
  if (options.Remarks) context.Err << ChecklistText(standIn) << std::endl;
  if (!context.Stop.stop_requested()) throw CommandError(kRefused, options.Port, "the port is gone");
  return kDone;
}

}  // namespace qdm
