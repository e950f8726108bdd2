// Virtual time for windows: every wait runs the event loop once before it jumps, so what a test types and
// clicks in the middle of a search arrives as it would. The thread's own timers (QTimer) are not driven.
#pragma once

#include "support/virtual_time.h"

#include <QCoreApplication>

namespace qdm {

class FormTime : public VirtualTime {
 public:
  // What the user does that much time from now.
  void Plan(Microseconds after, std::function<void()> action) { At(Now() + after, std::move(action)); }
  Microseconds Elapsed() const { return Now() - start_; }

  void Yield(Microseconds until) override {
    QCoreApplication::processEvents();
    VirtualTime::Yield(until);
  }

 private:
  Microseconds start_ = Now();
};

}  // namespace qdm
