// Real time, with the thread's event loop running in every wait: windows stay usable, and whatever an event
// brings ends the wait. Never keeps the processor busy. Needs a QCoreApplication (or QApplication) to exist.
#pragma once

#include "line/waiting.h"

#include <QElapsedTimer>
#include <QObject>

#include <cstdint>
#include <set>

namespace qdm {

class EventLoopWaiting : public Waiting {
 public:
  EventLoopWaiting();

  Microseconds Now() const override;
  void Yield(Microseconds until) override;
  void WakeAt(Microseconds when) override;

 private:
  // Counts the events of the application's objects.
  class EventCounter : public QObject {
   public:
    bool eventFilter(QObject* watched, QEvent* event) override;
    std::uint64_t Count = 0;
  };

  void SleepUntil(Microseconds end);

  QElapsedTimer clock_;
  EventCounter events_;
  std::multiset<Microseconds> wakes_;  // those that have not come yet
};

}  // namespace qdm
