#include "panels/panel_in_hand.h"

#include "panels/panel_restart.h"
#include "panels/panel_search.h"

#include <utility>
#include <vector>

namespace qdm {
namespace {

// Procedures run on one thread.
std::vector<PanelInHand*> panelsInHand;

}  // namespace

PanelInHand::PanelInHand(SerialPort& port, std::stop_source stop) : port_(port), stop_(std::move(stop)) {
  panelsInHand.push_back(this);
}

PanelInHand::~PanelInHand() { std::erase(panelsInHand, this); }

void RestartPanelsInHand(Waiting& time) {
  for (PanelInHand* const panel : panelsInHand) {
    if (panel->restarted_) continue;
    panel->stop_.request_stop();
    // The acknowledgement of a frame says that all of it went out.
    WaitUntil(time, kReplyTimeout,
              [&port = panel->port_] { return port.BytesWaiting() > 0 || !port.IsOpen(); });
    std::vector<PanelRestart> restart = {PanelRestart(panel->port_, time, panel->stop_.get_token())};
    RunRestarts(restart, time);
    panel->restarted_ = restart.front().Acknowledged();
  }
}

}  // namespace qdm
