// Restarting a panel: up to 6 attempts at 9600,n,8,2, 500 ms for each acknowledgement. As steps, so that
// somebody else waits and several panels restart side by side in one loop.
#pragma once

#include "line/serial_port.h"
#include "line/waiting.h"

#include <stop_token>
#include <vector>

namespace qdm {

inline constexpr int kAttempts = 6;

// Closes the port and opens it at the settings at which panels take programs. False when it does not open.
bool OpenForProgramming(SerialPort& port);

class PanelRestart {
 public:
  // Opens the port and sends the first command. A stop request lets the attempt that has begun end, and there
  // are no more; the first one is always made.
  PanelRestart(SerialPort& port, const Waiting& time, std::stop_token stop);

  bool Finished() const { return finished_; }
  // To be called whenever something happened and at NextTime() at the latest.
  void Advance();
  Microseconds NextTime() const { return deadline_; }
  bool Acknowledged() const { return acknowledged_; }
  int Attempts() const { return attempts_; }

 private:
  void Attempt();
  void Finish(bool acknowledged);

  SerialPort* port_;
  const Waiting* time_;
  std::stop_token stop_;
  Microseconds deadline_{};
  int attempts_ = 0;
  bool finished_ = false;
  bool acknowledged_ = false;
};

// Until all of them have finished.
void RunRestarts(std::vector<PanelRestart>& restarts, Waiting& time);

}  // namespace qdm
