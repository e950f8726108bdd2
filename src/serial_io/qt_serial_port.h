// A serial port of this machine, by its device path: an adapter, a port on the board, a pseudo-terminal.
// Nobody else can open it meanwhile. It counts and reads what has arrived whether or not an event loop runs;
// with one, its input ends a wait. A setting that the device refuses is left as it was. When the device goes
// away (adapter pulled out, the other end of a pseudo-terminal closed) the port reads as closed.
#pragma once

#include "line/line_settings.h"
#include "line/serial_port.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class QSerialPort;
class QSocketNotifier;

namespace qdm {

class QtSerialPort : public SerialPort {
 public:
  // "/dev/ttyUSB0"; a name without a slash is looked for in /dev. Links are followed when it is opened.
  explicit QtSerialPort(std::string device);
  ~QtSerialPort() override;

  void SetSettings(std::string_view settings) override;
  std::vector<LineParameter> RefusedSettings() const override;
  bool Open() override;
  std::optional<OpenFailure> WhyClosed() const override { return failure_; }
  void Close() override;
  bool IsOpen() const override;
  std::size_t BytesWaiting() override;
  Bytes ReadAll() override;
  bool Write(ByteView bytes) override;

 private:
  void ApplySettings();
  void ListenForTrouble();
  void TakeInWhatArrived();
  void CloseWhenGone();

  std::string device_;
  LineSettings settings_;
  std::vector<LineParameter> refused_;
  std::optional<OpenFailure> failure_;  // of the last Open
  // From Open to Close; closed in between when the device goes away.
  std::unique_ptr<QSerialPort> port_;
  std::unique_ptr<QSocketNotifier> unplugged_;
};

}  // namespace qdm
