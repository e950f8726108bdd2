// Ctrl-C and its kin (SIGINT, SIGTERM, SIGHUP; the console's events on Windows), which by themselves end the
// program at once: a procedure on the line is asked to stop instead and leaves the panels running.
#pragma once

#include <memory>
#include <stop_token>

namespace qdm {

// While this lives, signals ask `stop` to stop, from within the thread's event loop, and end its wait. One
// at a time.
class StopOnSignals {
 public:
  explicit StopOnSignals(std::stop_source& stop);
  ~StopOnSignals();
  StopOnSignals(const StopOnSignals&) = delete;
  StopOnSignals& operator=(const StopOnSignals&) = delete;

 private:
  struct Line;
  std::unique_ptr<Line> line_;
};

}  // namespace qdm
