#include "port_commands/bench_projector.h"
#include "port_commands/panel_ports.h"
#include "port_commands/stop_on_signals.h"
#include "projector_bench/settings_finder.h"
#include "projector_bench/stand_in.h"

#include <algorithm>
#include <memory>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace qdm {
namespace {

ProbeQuestion QuestionFor(const ProbeOptions& options, const ProjectorDefinition& projector) {
  if (options.Slot.empty() && options.Send.empty())
    throw CommandError(kUnusable, "probe", "what is to be sent? --slot NAME or --send TEXT");
  if (options.Slot.empty()) return QuestionOf(projector, TypedString("--send", options.Send));
  const Slot slot = CommandSlotNamed("--slot", options.Slot);
  if (projector.Strings[slot].BytesInUse() == 0)
    throw CommandError(kRefused, options.File, std::string(NameOfSlot(slot)) + " has no bytes");
  return QuestionOf(projector, slot);
}

struct NamedPorts {
  std::vector<std::string> Names;
  std::vector<std::unique_ptr<SerialPort>> Ports;
};

// One of several: the others are asked all the same.
void TellClosedPort(int number, const SerialPort& port, PortContext& context) {
  const auto failure = port.WhyClosed();
  context.Err << "qdm: COM" << number << " (" << context.Ports.DeviceName(number)
              << "): " << (failure ? SentenceOf(*failure) : "there is no such port") << std::endl;
}

NamedPorts PortsToProbe(const ProbeOptions& options, const std::string& settings, PortContext& context) {
  NamedPorts ports;
  if (!options.Port.empty()) {
    ports.Names.push_back(options.Port);
    ports.Ports.push_back(OpenPortNamed(options.Port, settings, context));
    return ports;
  }
  for (int number = 1; number <= kPortSlots; ++number) {
    if (context.Ports.DeviceName(number).empty()) continue;
    auto port = context.Ports.Port(number);
    port->SetSettings(settings);
    if (!port->Open()) {
      TellClosedPort(number, *port, context);
      continue;
    }
    ports.Names.push_back("COM" + std::to_string(number));
    ports.Ports.push_back(std::move(port));
  }
  if (ports.Ports.empty()) throw CommandError(kRefused, "probe", "no port could be opened");
  return ports;
}

}  // namespace

int Probe(const ProbeOptions& options, PortContext& context) {
  const ProjectorDefinition projector = ReadProjector(options, context);
  const ProbeQuestion question = QuestionFor(options, projector);
  const std::vector<ProbeSetting> settings = SettingsToProbe(projector);
  const StopOnSignals interruptible(context.Stop);
  const NamedPorts ports = PortsToProbe(options, settings.front().Text(), context);
  bool replied = false;
  bool silent = true;
  ProbeSettings(ports.Ports, question, settings, context.Time, context.Stop.get_token(),
                {[&](const ProbeResult& result) {
                  // The port stands first where there is more than one.
                  if (ports.Names.size() > 1) context.Out << ports.Names[result.Port] << "\t";
                  context.Out << result.Setting.Text() << "\t"
                              << (result.Received.empty() ? "-" : HexText(result.Received)) << "\t"
                              << NameOf(result.Verdict) << std::endl;
                  replied = replied || result.Verdict == ProbeVerdict::Reply;
                  silent = silent && result.Verdict == ProbeVerdict::Nothing;
                }});
  if (replied) return kDone;
  if (context.Stop.stop_requested()) throw CommandError(kRefused, "probe", "interrupted");
  if (!AnyIsOpen(ports.Ports)) throw CommandError(kRefused, ports.Names.back(), "the port is gone");
  throw CommandError(kRefused, options.File,
                     silent ? "everything is silent; check: " + std::string(WhatToCheckWhenSilent())
                            : "the expected reply did not come at any setting");
}

}  // namespace qdm
