// The near end of a pseudo-terminal as a port: a program at the device talks to whoever reads here. A program
// that has set another speed than this port is heard, and hears, as it would on a line. Pseudo-terminals know
// no parity: it always fits.
#pragma once

#include "line/line_settings.h"
#include "line/serial_port.h"
#include "serial_io/pseudo_terminal.h"

#include <QSocketNotifier>

#include <cstddef>
#include <string>
#include <string_view>

namespace qdm {

class PseudoTerminalPort : public SerialPort {
 public:
  // The device takes the same speed, until a program there sets another. std::system_error when the system
  // has none left.
  explicit PseudoTerminalPort(std::string_view settings);

  const std::string& Device() const { return terminal_.Device(); }

  void SetSettings(std::string_view settings) override;
  bool Open() override { return true; }
  void Close() override {}
  bool IsOpen() const override { return true; }
  std::size_t BytesWaiting() override;
  Bytes ReadAll() override;
  bool Write(ByteView bytes) override;

 private:
  void TakeIn();

  PseudoTerminal terminal_;
  LineSettings settings_;
  Bytes waiting_;
  QSocketNotifier arrived_{terminal_.Descriptor(), QSocketNotifier::Read};  // ends a wait of the event loop
};

}  // namespace qdm
