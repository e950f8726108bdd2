// A clock that runs faster than the wall's, so that a procedure with time-outs of half a second can run on
// real lines within a test. Delays of the simulated panel are divided by the same factor.
#pragma once

#include "line/waiting.h"

namespace qdm {

class ScaledWaiting : public Waiting {
 public:
  ScaledWaiting(Waiting& wall, int factor) : wall_(wall), factor_(factor) {}

  Microseconds Now() const override { return wall_.Now() * factor_; }
  void Yield(Microseconds until) override { wall_.Yield(OnTheWall(until)); }
  void WakeAt(Microseconds when) override { wall_.WakeAt(OnTheWall(when)); }

 private:
  // Never before the scaled clock has got there.
  Microseconds OnTheWall(Microseconds scaled) const { return scaled / factor_ + Microseconds(1); }

  Waiting& wall_;
  int factor_;
};

}  // namespace qdm
