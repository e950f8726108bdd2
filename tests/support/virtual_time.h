// A clock that stands still until somebody waits, and then jumps to whatever comes next.
#pragma once

#include "line/waiting.h"

#include <algorithm>
#include <functional>
#include <map>
#include <utility>

namespace qdm {

class VirtualTime : public Waiting {
 public:
  Microseconds Now() const override { return now_; }
  void WakeAt(Microseconds when) override { events_.emplace(when, nullptr); }

  // `action` runs inside the wait that reaches `when`, as a click of the user would.
  void At(Microseconds when, std::function<void()> action) { events_.emplace(when, std::move(action)); }

  void Yield(Microseconds until) override {
    ++yields_;
    if (events_.empty() || events_.begin()->first > until) {
      now_ = std::max(now_, until);
      return;
    }
    now_ = std::max(now_, events_.begin()->first);
    while (!events_.empty() && events_.begin()->first <= now_) {
      const auto event = events_.extract(events_.begin());
      if (event.mapped()) event.mapped()();
    }
  }

  int Yields() const { return yields_; }

 private:
  Microseconds now_ = std::chrono::hours(1);
  std::multimap<Microseconds, std::function<void()>> events_;
  int yields_ = 0;
};

}  // namespace qdm
