// Simulated ports of which some exist but do not open, and say why.
#pragma once

#include "simulation/simulated_line.h"

#include <map>
#include <utility>

namespace qdm {

struct ClosedPorts : SimulatedPorts {
  explicit ClosedPorts(Waiting& time) : SimulatedPorts(time), time_(time) {}

  std::map<int, OpenFailure> Closed;   // by port number
  std::map<int, SimulatedLine*> Made;  // the last one of each number

  std::optional<OpenFailure> WhyClosed(int number) const override {
    const auto closed = Closed.find(number);
    return closed == Closed.end() ? std::nullopt : std::optional(closed->second);
  }
  std::unique_ptr<SerialPort> Port(int number) override {
    if (const auto why = WhyClosed(number)) return std::make_unique<ClosedLine>(time_, *why);
    std::unique_ptr<SerialPort> port = SimulatedPorts::Port(number);
    Made[number] = static_cast<SimulatedLine*>(port.get());
    return port;
  }

 private:
  struct ClosedLine : SimulatedLine {
    ClosedLine(Waiting& time, OpenFailure why) : SimulatedLine(nullptr, time), Why(std::move(why)) {}
    bool Open() override { return false; }
    std::optional<OpenFailure> WhyClosed() const override { return Why; }
    OpenFailure Why;
  };

  Waiting& time_;
};

}  // namespace qdm
