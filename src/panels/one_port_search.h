// The search on one port as steps: somebody else waits. So one event loop can drive as many searches as there
// are ports, none of which waits inside another. Up to 1 s for each of the 15 line settings. Knows the three
// panel models by name but not the amplifier. A port that goes away ends the search as not found.
#pragma once

#include "panels/panel_search.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>

namespace qdm {

inline constexpr Microseconds kOnePortReplyTimeout = std::chrono::milliseconds(1000);

class OnePortSearch {
 public:
  // Told each text that is to be shown.
  using StatusChanged = std::function<void(const std::string& text)>;

  // Asks at the first line setting. `port` is closed when the search has finished.
  OnePortSearch(SerialPort& port, const Waiting& time, StatusChanged status);

  bool Finished() const { return finished_; }
  // Takes what has arrived and moves on when the wait at this setting is over. To be called whenever
  // something happened and at NextTime() at the latest.
  void Advance();
  Microseconds NextTime() const { return deadline_; }
  // Ends a running search as not found.
  void Stop();

  // The settings at which the port was asked and the wait is over.
  std::size_t SettingsTried() const { return tried_; }
  const OnePortResult& Result() const { return result_; }

 private:
  void AskAt(std::size_t setting);
  void Found(const Identification& panel);
  void NotFound();

  SerialPort& port_;
  const Waiting& time_;
  StatusChanged status_;
  std::size_t setting_ = 0;
  std::size_t tried_ = 0;
  Microseconds deadline_{};
  bool finished_ = false;
  OnePortResult result_;
};

}  // namespace qdm
