#include "panels/panel_restart.h"

#include "panels/frame.h"
#include "panels/panel_search.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace qdm {

bool OpenForProgramming(SerialPort& port) {
  port.Close();
  port.SetSettings(kProgrammingSettings);
  return port.Open();
}

PanelRestart::PanelRestart(SerialPort& port, const Waiting& time, std::stop_token stop)
    : port_(&port), time_(&time), stop_(std::move(stop)) {
  if (OpenForProgramming(port)) {
    Attempt();
  } else {
    Finish(false);
  }
}

void PanelRestart::Attempt() {
  ++attempts_;
  port_->ReadAll();
  if (!port_->Write(RestartCommand)) return Finish(false);
  deadline_ = time_->Now() + kReplyTimeout;
}

void PanelRestart::Advance() {
  if (finished_) return;
  if (!port_->IsOpen()) return Finish(false);
  if (port_->BytesWaiting() == 0 && time_->Now() < deadline_) return;
  if (IsAcknowledged(port_->ReadAll())) return Finish(true);
  if (attempts_ == kAttempts || stop_.stop_requested()) return Finish(false);
  Attempt();
}

void PanelRestart::Finish(bool acknowledged) {
  finished_ = true;
  acknowledged_ = acknowledged;
  port_->Close();
}

void RunRestarts(std::vector<PanelRestart>& restarts, Waiting& time) {
  for (;;) {
    std::optional<Microseconds> next;
    for (PanelRestart& restart : restarts) {
      restart.Advance();
      if (!restart.Finished()) next = std::min(next.value_or(restart.NextTime()), restart.NextTime());
    }
    if (!next) return;
    time.Yield(*next);
  }
}

}  // namespace qdm
