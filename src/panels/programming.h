// Programming a panel: connect, 64 acknowledged records at 9600,n,8,2, restart.
//
// A record, before escaping:
//   FF | 22 | address low | address high | 8 data bytes | check byte
// The sum of all 13 is 0 modulo 256. In the address low byte, the data and the check byte FF goes out as FE
// FE and FE as FE FD, after the check byte was computed: 13 to 23 bytes on the wire. Restart: FF 44 BD. A
// reply that begins with F0 acknowledges either.
#pragma once

#include "base/message.h"
#include "panels/panel_image.h"
#include "panels/panel_search.h"

#include <stop_token>
#include <string>

namespace qdm {

inline constexpr int kRecords = 64;
inline constexpr int kRecordDataBytes = 8;
inline constexpr int kAttempts = 6;
inline constexpr std::uint8_t kAcknowledge = 0xF0;
extern const std::array<std::uint8_t, 3> RestartCommand;

// Record 0..63 of the image as it goes over the wire.
Bytes ProgramRecord(const PanelImage& image, int record);

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
// is restarted all the same.
ProgrammingResult ProgramPanel(SerialPort& port, const std::string& settings, int controllerType,
                               const PanelImage& image, Waiting& time, const std::stop_token& stop,
                               ProgrammingObserver& observer);

// Restarts every panel that identified itself in a search, whatever its type: up to 6 attempts each. A
// message for each that did not acknowledge; every port is closed afterwards.
std::vector<Message> RestartFoundPanels(std::vector<SearchSlot>& slots, Waiting& time);

// Amplifiers with firmware before 1.3 cannot be programmed: the message for one that is refused.
std::optional<Message> FirmwareGate(const Identification& panel);

}  // namespace qdm
