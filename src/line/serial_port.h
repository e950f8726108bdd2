// The one seam to the line: what a search, a download and the test console need of a serial port. Binary both
// ways, 8 data bits, no flow control. Failures are quiet: a port that does not exist does not open, an
// adapter that is pulled out reads as closed.
#pragma once

#include "base/record_codec.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qdm {

enum class LineParameter { Speed, Parity, DataBits, StopBits };

// Why a port did not open.
struct OpenFailure {
  enum class Reason { Gone, Held, NotAllowed, Refused };

  Reason Why = Reason::Gone;
  // Held: who holds it, "minicom (4711)". NotAllowed: the group whose members may open it. Refused: what the
  // system says. Empty where that is not known, or no group would do.
  std::string Detail{};

  friend bool operator==(const OpenFailure&, const OpenFailure&) = default;
};
// The sentence for it; "%1" in it stands for the detail.
const char* TextOf(const OpenFailure& failure);
// With the detail in its place.
std::string SentenceOf(const OpenFailure& failure);

class SerialPort {
 public:
  virtual ~SerialPort() = default;

  // "9600,n,8,2": speed, parity letter, data bits, stop bits. Takes effect at once on an open port. A port
  // that refuses a setting stays open and simply gets no answer.
  virtual void SetSettings(std::string_view settings) = 0;
  // What of the settings an open port did not take; nothing while it is closed.
  virtual std::vector<LineParameter> RefusedSettings() const { return {}; }
  virtual bool Open() = 0;
  // Why the last Open() failed; nothing when it did not, or when that is not known.
  virtual std::optional<OpenFailure> WhyClosed() const { return std::nullopt; }
  virtual void Close() = 0;
  virtual bool IsOpen() const = 0;
  virtual std::size_t BytesWaiting() = 0;
  // Everything that waits, also nothing.
  virtual Bytes ReadAll() = 0;
  // False when the port is closed or gone.
  virtual bool Write(ByteView bytes) = 0;
};

inline constexpr int kPortSlots = 16;

// Which devices the port numbers COM1..COM16 stand for.
class SerialPorts {
 public:
  virtual ~SerialPorts() = default;

  // The device's own name ("ttyUSB0"); empty when there is no such port. `number` is 1..16.
  virtual std::string DeviceName(int number) const = 0;
  // What keeps the port from being opened now, as far as that is known.
  virtual std::optional<OpenFailure> WhyClosed(int) const { return std::nullopt; }
  // A closed port. One without a device fails to open.
  virtual std::unique_ptr<SerialPort> Port(int number) = 0;
};

}  // namespace qdm
