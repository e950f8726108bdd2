// Waits of tests on real time: driven by events, with a limit that only a failure reaches.
#pragma once

#include "serial_io/event_loop_waiting.h"

namespace qdm {

inline constexpr Microseconds kFarLimit = std::chrono::seconds(10);

template <class Condition>
bool Eventually(Waiting& time, Condition condition, Microseconds limit = kFarLimit) {
  const Deadline deadline(time, limit);
  while (!condition()) {
    if (deadline.Passed()) return false;
    time.Yield(deadline.At());
  }
  return true;
}

}  // namespace qdm
