// Real time, with the thread's event loop running in every wait: windows stay usable, and whatever an event
// brings ends the wait. Never keeps the processor busy. Needs a QCoreApplication (or QApplication) to exist.
#pragma once

#include "download/waiting.h"

#include <QElapsedTimer>

#include <set>

namespace qdm {

class EventLoopWaiting : public Waiting {
 public:
  EventLoopWaiting() { clock_.start(); }

  Microseconds Now() const override;
  void Yield(Microseconds until) override;
  void WakeAt(Microseconds when) override;

 private:
  QElapsedTimer clock_;
  std::multiset<Microseconds> wakes_;  // those that have not come yet
};

}  // namespace qdm
