// Finding panels: which port are they on, at which of the 15 line settings do they listen, which model and
// firmware are they. All ports are asked at once, setting by setting, 500 ms each.
#pragma once

#include "base/words.h"
#include "line/serial_port.h"
#include "line/waiting.h"
#include "panels/identification.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace qdm {

inline constexpr Microseconds kReplyTimeout = std::chrono::milliseconds(500);

// How far the search on one port is.
enum class SlotState { Waiting, NoPort, Asking, Asked };

struct SearchSlot {
  std::unique_ptr<SerialPort> Port;
  // What the device was called when the port was made: names change hands when adapters come and go.
  std::string Device;
  SlotState State = SlotState::Waiting;
  const LineSetting* Setting = nullptr;  // the one that is being tried, or where the panel answered
  std::optional<Identification> Panel;   // whoever answered, of the wanted type or not
  bool Wanted = false;                   // the panel is of the type that is looked for
  std::size_t SettingsTried = 0;         // those at which it was asked and the wait is over
  std::optional<OpenFailure> Failure;    // why there is no port

  bool Present() const { return State != SlotState::NoPort; }
  bool Choosable() const { return Panel && Wanted; }
  // Nobody is there, as far as asking can tell.
  bool AskedInVain() const { return Present() && !Panel && SettingsTried == kLineSettings; }
  // Where it answered; empty unless it can be chosen.
  std::string_view Settings() const { return Choosable() ? Setting->Settings : std::string_view(); }
};

inline constexpr std::string_view kNoPanelText = Marked("No QDM found");
// What a slot shows: "Please Wait", "No Port", a search text, "No QDM found" or the identification text.
std::string StatusText(const SearchSlot& slot);

// Told after every change of a slot.
using SlotChanged = std::function<void(std::size_t slot)>;

// Searches on every slot whose port opens. `controllerType` is the wanted one, nothing means any. Every port
// is closed afterwards. Ends early when nobody is left to ask, or at the next line setting after `stop` is
// set; slots that have not answered then read "No QDM found".
void SearchAllPorts(std::vector<SearchSlot>& slots, std::optional<int> controllerType, Waiting& time,
                    const std::stop_token& stop, const SlotChanged& changed);

// One slot for each of COM1..COM16.
std::vector<SearchSlot> AllSlots(SerialPorts& ports);
// Another panel of the same model was found.
bool HasTwin(const std::vector<SearchSlot>& slots, std::size_t slot);

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
