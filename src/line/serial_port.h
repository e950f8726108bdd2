// The one seam to the line: what a search, a download and the test console need of a serial port. Binary both
// ways, 8 data bits, no flow control. Failures are quiet: a port that does not exist does not open, an
// adapter that is pulled out reads as closed.
#pragma once

#include "base/record_codec.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace qdm {

enum class LineParameter { Speed, Parity, DataBits, StopBits };

class SerialPort {
 public:
  virtual ~SerialPort() = default;

  // "9600,n,8,2": speed, parity letter, data bits, stop bits. Takes effect at once on an open port. A port
  // that refuses a setting stays open and simply gets no answer.
  virtual void SetSettings(std::string_view settings) = 0;
  // What of the settings an open port did not take; nothing while it is closed.
  virtual std::vector<LineParameter> RefusedSettings() const { return {}; }
  virtual bool Open() = 0;
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
  // The group that this user would have to join in order to open the port; empty when that is not what it
  // takes.
  virtual std::string GroupToJoin(int) const { return {}; }
  // A closed port. One without a device fails to open.
  virtual std::unique_ptr<SerialPort> Port(int number) = 0;
};

}  // namespace qdm
