#include "serial_io/event_loop_waiting.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <thread>

namespace qdm {

using std::chrono::milliseconds;

EventLoopWaiting::EventLoopWaiting() {
  clock_.start();
  QCoreApplication::instance()->installEventFilter(&events_);
}

bool EventLoopWaiting::EventCounter::eventFilter(QObject*, QEvent*) {
  ++Count;
  return false;
}

Microseconds EventLoopWaiting::Now() const {
  return std::chrono::duration_cast<Microseconds>(std::chrono::nanoseconds(clock_.nsecsElapsed()));
}

void EventLoopWaiting::WakeAt(Microseconds when) { wakes_.insert(when); }

void EventLoopWaiting::Yield(Microseconds until) {
  const Microseconds end = wakes_.empty() ? until : std::min(until, *wakes_.begin());
  const std::uint64_t eventsBefore = events_.Count;
  // What is due comes first and ends the wait: a wait for more events may deliver it too, and on Windows goes
  // on waiting all the same.
  if (!QEventLoop().processEvents() && events_.Count == eventsBefore) SleepUntil(end);
  wakes_.erase(wakes_.begin(), wakes_.upper_bound(Now()));
}

// Or until an event comes.
void EventLoopWaiting::SleepUntil(Microseconds end) {
  const auto wholeMilliseconds = std::chrono::floor<milliseconds>(end - Now());
  if (wholeMilliseconds <= milliseconds(0)) {
    // Timers count whole milliseconds. The rest of one is slept: bytes on a line are closer together.
    std::this_thread::sleep_for(end - Now());
    return;
  }
  QTimer timer;
  timer.setTimerType(Qt::PreciseTimer);
  timer.setSingleShot(true);
  // A day at the most: the caller looks again, and Qt counts milliseconds in an int.
  timer.start(std::min<milliseconds>(wholeMilliseconds, std::chrono::hours(24)));
  QEventLoop().processEvents(QEventLoop::WaitForMoreEvents);
}

}  // namespace qdm
