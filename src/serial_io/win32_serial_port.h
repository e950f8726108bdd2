// A COM port of Windows, overlapped. One byte is always being asked for: its arrival ends a wait of the event
// loop, and the rest of what arrived with it is fetched at once. When the adapter is pulled out the port
// reads as closed.
#pragma once

#include "line/line_settings.h"
#include "line/serial_port.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qdm {

class Win32SerialPort : public SerialPort {
 public:
  // "COM3", "COM12".
  explicit Win32SerialPort(std::string device);
  ~Win32SerialPort() override;

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
  struct Line;  // the open handle and its pending operations

  std::string device_;
  LineSettings settings_;
  std::optional<OpenFailure> failure_;  // of the last Open
  std::unique_ptr<Line> line_;
};

}  // namespace qdm
