// Real time without an event loop: for the last second of a program whose event loop must not run again.
// Ports are asked for their bytes, nothing tells of them.
#pragma once

#include "line/waiting.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace qdm {

class SleepingWaiting : public Waiting {
 public:
  Microseconds Now() const override {
    return std::chrono::duration_cast<Microseconds>(std::chrono::steady_clock::now().time_since_epoch());
  }
  void Yield(Microseconds until) override {
    constexpr Microseconds kLook = std::chrono::milliseconds(5);
    const Microseconds left = until - Now();
    if (left > Microseconds(0)) std::this_thread::sleep_for(std::min(kLook, left));
  }
  void WakeAt(Microseconds) override {}
};

}  // namespace qdm
