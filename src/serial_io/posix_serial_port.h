// A serial port of this machine, by its device path: an adapter, a port on the board, a pseudo-terminal.
// Nobody else can open it meanwhile. It counts and reads what has arrived whether or not an event loop runs;
// with one, its input ends a wait. A setting that the device refuses is left as it was. When the device goes
// away (adapter pulled out, the other end of a pseudo-terminal closed) the port reads as closed.
// A port class of its own: Qt's flushes a lock file to the disk at each opening, 240 times in a search.
#pragma once

#include "line/line_settings.h"
#include "line/serial_port.h"
#include "serial_io/posix_port_lock.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <termios.h>

class QSocketNotifier;

namespace qdm {

class PosixSerialPort : public SerialPort {
 public:
  // "/dev/ttyUSB0"; a name without a slash is looked for in /dev. Links are followed when it is opened.
  explicit PosixSerialPort(std::string device);
  ~PosixSerialPort() override;

  void SetSettings(std::string_view settings) override;
  std::vector<LineParameter> RefusedSettings() const override;
  bool Open() override;
  std::optional<OpenFailure> WhyClosed() const override { return failure_; }
  void Close() override;
  bool IsOpen() const override { return line_ >= 0; }
  std::size_t BytesWaiting() override;
  Bytes ReadAll() override;
  bool Write(ByteView bytes) override;

 private:
  bool OpenLine();
  void CloseLine();
  void ApplySettings();
  void TakeIn();

  std::string device_;
  LineSettings settings_;
  std::vector<LineParameter> refused_;
  std::optional<OpenFailure> failure_;  // of the last Open
  PortLock lock_;
  // From Open to Close, or to when the device goes away.
  int line_ = -1;
  termios before_{};  // how the device was found
  Bytes waiting_;
  std::unique_ptr<QSocketNotifier> arrived_;
};

}  // namespace qdm
