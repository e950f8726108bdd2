// Panels that a procedure is programming and will restart, for who has to end the program at once: the screen
// or the session is gone, and no procedure goes on.
#pragma once

#include "line/serial_port.h"
#include "line/waiting.h"

#include <stop_token>

namespace qdm {

class PanelInHand {
 public:
  // From here to its end the panel on that port is in hand. `stop` is the request that ends its procedure.
  PanelInHand(SerialPort& port, std::stop_source stop);
  ~PanelInHand();
  PanelInHand(const PanelInHand&) = delete;
  PanelInHand& operator=(const PanelInHand&) = delete;

  // Somebody else restarted it meanwhile: it listens to no more records.
  bool Restarted() const { return restarted_; }

 private:
  friend void RestartPanelsInHand(Waiting& time);

  SerialPort& port_;
  std::stop_source stop_;
  bool restarted_ = false;
};

// Ends their procedures, lets the frame that is on the line end and sends the restart, once: within a second.
// `time` must not run what brought the end.
void RestartPanelsInHand(Waiting& time);

}  // namespace qdm
