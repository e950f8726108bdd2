// The projector port of a simulated panel as a port of this computer, for a desk without hardware: whoever
// opens it hears every button of the panel pressed once, one after the other, as the panel's memory has them.
// The replies that are written to it the panel takes without a sign.
#pragma once

#include "line/line_settings.h"
#include "line/serial_port.h"
#include "line/waiting.h"
#include "simulation/panel_buttons.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <string_view>

namespace qdm {

class PressedButtonsPort : public SerialPort {
 public:
  // From the opening to the first button, and from each to the next.
  static constexpr Microseconds kBetweenButtons = std::chrono::milliseconds(800);

  // `time` must outlive the port.
  PressedButtonsPort(const PanelButtons& buttons, Waiting& time) : buttons_(buttons), time_(time) {}

  // Of the listener; to be set before the port is opened.
  void SetSettings(std::string_view settings) override { settings_ = ParseLineSettings(settings); }
  bool Open() override;
  void Close() override;
  bool IsOpen() const override { return open_; }
  std::size_t BytesWaiting() override;
  Bytes ReadAll() override;
  bool Write(ByteView) override { return open_; }

 private:
  struct Coming {
    Microseconds When;
    std::uint8_t Byte;
  };

  PanelButtons buttons_;
  Waiting& time_;
  LineSettings settings_;
  bool open_ = false;
  std::deque<Coming> coming_;
  Bytes waiting_;
};

}  // namespace qdm
