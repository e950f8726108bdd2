// A panel or amplifier without the hardware: bytes in, replies out, 512 bytes of memory. Knows no time and no
// port; simulated_line.h gives it both.
//
// It assumes of the hardware that
// - identification is answered at the panel's own line settings, at any time, and puts the panel into set-up
//   mode: it then waits to be programmed, sends its projector nothing and ignores its buttons until it is
//   restarted;
// - records and restarts are taken at 9600,n,8,2 at any time, whatever the own settings are;
// - a restart is acknowledged first; from then on the own settings are those that its memory holds, and the
//   present ones where the memory holds none (blank, or values that no setting has);
// - stop bits do not matter: speed and parity decide whether two sides understand each other.
#pragma once

#include "line/line_settings.h"
#include "panels/frame.h"
#include "panels/identification.h"
#include "panels/panel_image.h"
#include "simulation/panel_faults.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace qdm {

// Speed and parity are the same, as far as both are known.
bool UnderstandEachOther(const LineSettings& one, const LineSettings& other);

struct PanelReply {
  Bytes Data;
  LineSettings At;       // what it is sent with
  Microseconds After{};  // later than the panel would answer by itself
};

class SimulatedPanel {
 public:
  struct Description {
    Identification Panel{.Model = 1, .Major = 1, .Minor = 3};
    std::string Settings = "9600,n,8,2";
    PanelFaults Faults{};
  };

  // The memory is blank, 0xFF.
  explicit SimulatedPanel(Description description);
  SimulatedPanel(Description description, const PanelImage& memory);

  // One byte from a line that is set to `line`; what of it the line cannot tell (a pseudo-terminal knows no
  // parity) is taken to fit. Replies are added to `replies`.
  void Receive(std::uint8_t byte, const LineSettings& line, std::vector<PanelReply>& replies);

  const Identification& Panel() const { return panel_; }
  const PanelImage& Memory() const { return memory_; }
  // Where it listens for identification.
  const LineSettings& OwnSettings() const { return own_; }
  // Records that came in, whole or not, and those that were written.
  int RecordsSeen() const { return recordsSeen_; }
  int RecordsWritten() const { return recordsWritten_; }
  int Restarts() const { return restarts_; }
  // It has identified itself and waits; it does not work until it is restarted.
  bool InSetUpMode() const { return inSetUpMode_; }
  // Records that a fault had changed and that passed the check byte all the same: inverting bits of an escape
  // byte can make another valid record.
  int ChangedRecordsWritten() const { return changedRecordsWritten_; }

 private:
  // What the next byte of a frame is.
  enum class Expects { Start, Command, AddressLow, AddressHigh, Data, Check, RestartCheck };

  void ReceiveOnWire(std::uint8_t byte, std::vector<PanelReply>& replies);
  void BeginRecord();
  void ReceiveRecordByte(std::uint8_t byte, std::vector<PanelReply>& replies);
  void ReceiveFrameByte(std::uint8_t byte, std::vector<PanelReply>& replies);
  void ReceiveValue(std::uint8_t value, std::vector<PanelReply>& replies);
  void ReceiveIdentificationByte(std::uint8_t byte, std::vector<PanelReply>& replies);
  void WriteRecord(std::vector<PanelReply>& replies);
  void Restart();
  void Reply(PanelFault::Target what, Bytes data, const LineSettings& at, std::vector<PanelReply>& replies);

  Identification panel_;
  LineSettings own_;
  PanelFaults faults_;
  PanelImage memory_;

  // The wire, before faults: a start byte waits for its command, which tells whether a record begins.
  bool startWaits_ = false;
  int recordByte_ = -1;  // place within the record that comes in, -1 outside
  bool recordChanged_ = false;

  Expects expects_ = Expects::Start;
  bool escaped_ = false;
  std::uint8_t sum_ = 0;
  std::uint8_t addressLow_ = 0;
  std::uint8_t addressHigh_ = 0;
  std::array<std::uint8_t, kRecordDataBytes> data_{};
  std::size_t dataReceived_ = 0;
  std::size_t requestMatched_ = 0;  // bytes of SearchRequest that came in last

  std::array<int, 3> repliesCounted_{};  // by PanelFault::Target
  int recordsSeen_ = 0;
  int recordsWritten_ = 0;
  int changedRecordsWritten_ = 0;
  int restarts_ = 0;
  bool inSetUpMode_ = false;
  bool dead_ = false;
};

}  // namespace qdm
