#include "serial_io/event_loop_waiting.h"

#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <thread>

namespace qdm {

using std::chrono::milliseconds;

Microseconds EventLoopWaiting::Now() const {
  return std::chrono::duration_cast<Microseconds>(std::chrono::nanoseconds(clock_.nsecsElapsed()));
}

void EventLoopWaiting::WakeAt(Microseconds when) { wakes_.insert(when); }

void EventLoopWaiting::Yield(Microseconds until) {
  const Microseconds end = wakes_.empty() ? until : std::min(until, *wakes_.begin());
  const auto wholeMilliseconds = std::chrono::floor<milliseconds>(end - Now());
  QEventLoop events;
  if (wholeMilliseconds > milliseconds(0)) {
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    timer.setSingleShot(true);
    // A day at the most: the caller looks again, and Qt counts milliseconds in an int.
    timer.start(std::min<milliseconds>(wholeMilliseconds, std::chrono::hours(24)));
    events.processEvents(QEventLoop::WaitForMoreEvents);
  } else if (!events.processEvents()) {
    // Timers count whole milliseconds. The rest of one is slept: bytes on a line are closer together.
    std::this_thread::sleep_for(end - Now());
  }
  wakes_.erase(wakes_.begin(), wakes_.upper_bound(Now()));
}

}  // namespace qdm
