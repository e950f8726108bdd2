// The commands of `qdm` that need a port, an event loop or the editor's pages: what a program with Qt does,
// not the one that the user starts (command_line/hand_over.h). Options and results are commands.h's.
#pragma once

#include "command_line/commands.h"
#include "line/serial_port.h"
#include "line/waiting.h"

#include <functional>
#include <memory>
#include <stop_token>
#include <string>

namespace qdm {

// The program gives them the real ports and time, tests their own.
struct PortContext : CommandContext {
  SerialPorts& Ports;
  std::function<std::unique_ptr<SerialPort>(const std::string& device)> PortAt;
  Waiting& Time;
  std::stop_source& Stop;  // asked when the user interrupts a procedure on the line
};

int Find(const FindOptions& options, PortContext& context);
int Download(const DownloadOptions& options, PortContext& context);
int Sheet(const SheetOptions& options, PortContext& context);
int Simulate(const SimulateOptions& options, PortContext& context);
int Projector(const StandInOptions& options, PortContext& context);
int Probe(const ProbeOptions& options, PortContext& context);

// All of them; `context` has to outlive what is returned.
PortCommands PortCommandsIn(PortContext& context);

}  // namespace qdm
