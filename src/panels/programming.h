// Programming a panel: connect, 64 acknowledged records at 9600,n,8,2, restart. frame.h draws what goes over
// the wire. Up to 6 attempts for each frame, 500 ms for each reply.
#pragma once

#include "base/message.h"
#include "panels/panel_image.h"
#include "panels/panel_restart.h"
#include "panels/panel_search.h"

#include <cstddef>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace qdm {

// What happened so far, told as it happens. Boxes that it opens hold the procedure up, as the messages stand
// in its order.
class ProgrammingObserver {
 public:
  virtual ~ProgrammingObserver() = default;
  virtual void Connecting() = 0;
  virtual void RecordsAcknowledged(int records) = 0;  // 0..64
  virtual void Tell(const Message& message) = 0;
};

struct ProgrammingResult {
  bool Connected = false;
  int Records = 0;  // acknowledged
  int Retries = 0;  // attempts beyond the first, of all records
  bool Programmed = false;
  bool Restarted = false;
};

// `settings` is where the panel was found; where it no longer answers there, all 15 settings are tried. A
// stop request or a port that went away ends the procedure as failed, and a panel that was being programmed
// is restarted all the same: within a second of the request, since the exchange that has begun and one
// attempt at the restart are all that there is.
ProgrammingResult ProgramPanel(SerialPort& port, const std::string& settings, int controllerType,
                               const PanelImage& image, Waiting& time, const std::stop_token& stop,
                               ProgrammingObserver& observer);

// The same for a panel that has just identified itself and was not restarted since: nothing to connect to.
ProgrammingResult ProgramAnsweringPanel(SerialPort& port, const PanelImage& image, Waiting& time,
                                        const std::stop_token& stop, ProgrammingObserver& observer);

// Restarts every panel that identified itself in a search, whatever its type, side by side. The slots of
// those that did not acknowledge; every port is closed afterwards.
std::vector<std::size_t> RestartFoundPanels(std::vector<SearchSlot>& slots, Waiting& time,
                                            const std::stop_token& stop);
// The one message for them; `ports` names them.
Message RestartFailure(std::string ports);

// Amplifiers with firmware before 1.3 cannot be programmed: the message for one that is refused.
std::optional<Message> FirmwareGate(const Identification& panel);

}  // namespace qdm
