// Finding panels: which port are they on, at which of the 15 line settings do they listen, which model and
// firmware are they. All ports are asked at once, setting by setting, 500 ms each.
#pragma once

#include "line/serial_port.h"
#include "line/waiting.h"
#include "panels/identification.h"

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace qdm {

inline constexpr Microseconds kReplyTimeout = std::chrono::milliseconds(500);

struct SearchSlot {
  std::unique_ptr<SerialPort> Port;
  bool Present = false;
  std::string Status;  // "Please Wait", "No Port", a search text, "No QDM found" or the identification text
  std::optional<Identification> Panel;  // whoever answered, of the wanted type or not
  std::string Settings;                 // where it answered; empty unless it is of the wanted type

  bool Choosable() const { return !Settings.empty(); }
};

// Told after every change of a slot.
using SlotChanged = std::function<void(std::size_t slot)>;

// Searches on every slot whose port opens. `controllerType` is the wanted one, nothing means any. Every port
// is closed afterwards. Ends early when nobody is left to ask, or at the next line setting after `stop` is
// set; slots that have not answered then read "No QDM found".
void SearchAllPorts(std::vector<SearchSlot>& slots, std::optional<int> controllerType, Waiting& time,
                    const std::stop_token& stop, const SlotChanged& changed);

// One slot for each of COM1..COM16.
std::vector<SearchSlot> AllSlots(SerialPorts& ports);

// What a search on one port found; `Settings` is where it answered.
struct OnePortResult {
  std::optional<Identification> Panel;
  std::string Settings;
};
// The exchange that every search is made of. Opens the port at `settings`, discards what waits there and
// asks. False when the port does not open or is gone.
bool AskForIdentification(SerialPort& port, std::string_view settings);
// The answer that waits: exactly 4 bytes with the right sum, else nothing.
std::optional<Identification> AnswerWaiting(SerialPort& port);

}  // namespace qdm
