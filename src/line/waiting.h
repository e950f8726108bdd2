// Time, as procedures on the line see it. Every wait is a loop over Now() and Yield(), so that the editor
// stays usable while it waits and tests and simulations jump through time. A procedure that can be ended
// early takes a std::stop_token and looks at it where a step begins: an exchange that has begun is always
// finished.
#pragma once

#include <chrono>

namespace qdm {

using Microseconds = std::chrono::microseconds;

class Waiting {
 public:
  virtual ~Waiting() = default;

  // Monotonic, from an arbitrary start.
  virtual Microseconds Now() const = 0;
  // Lets everything else run; returns as soon as something happened (input on a line, a click, a WakeAt time)
  // and at `until` at the latest. May return early for no reason: callers look again.
  virtual void Yield(Microseconds until) = 0;
  // A simulated line promises that something happens at `when`: no Yield runs past it.
  virtual void WakeAt(Microseconds when) = 0;
};

class Deadline {
 public:
  Deadline(const Waiting& time, Microseconds period) : time_(time), at_(time.Now() + period) {}

  bool Passed() const { return time_.Now() >= at_; }
  Microseconds At() const { return at_; }

 private:
  const Waiting& time_;
  Microseconds at_;
};

// Waits until `happened()` holds, `period` at the most.
template <class Condition>
void WaitUntil(Waiting& time, Microseconds period, Condition happened) {
  const Deadline deadline(time, period);
  while (!happened() && !deadline.Passed()) time.Yield(deadline.At());
}

}  // namespace qdm
