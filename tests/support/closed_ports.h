// Simulated ports of which some exist but belong to a group that the user is not in.
#pragma once

#include "simulation/simulated_line.h"

#include <map>

namespace qdm {

struct ClosedPorts : SimulatedPorts {
  using SimulatedPorts::SimulatedPorts;

  std::map<int, std::string> Groups;  // by port number

  std::string GroupToJoin(int number) const override {
    const auto group = Groups.find(number);
    return group == Groups.end() ? std::string() : group->second;
  }
  std::unique_ptr<SerialPort> Port(int number) override {
    constexpr int kAbsent = kPortSlots;
    return SimulatedPorts::Port(Groups.contains(number) ? kAbsent : number);
  }
};

}  // namespace qdm
