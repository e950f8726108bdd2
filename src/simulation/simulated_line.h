// Serial ports without hardware: lines, in virtual or real time, with simulated panels at their ends, and the
// COM ports of a demonstration.
#pragma once

#include "line/serial_port.h"
#include "line/waiting.h"
#include "simulation/panel_buttons.h"
#include "simulation/simulated_panel.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace qdm {

enum class Pacing { None, TrueByteTime };

// The panel takes what is written when its last bit is through. Sides that do not understand each other hear
// nothing when their parity differs, and garbage when their speed does.
class SimulatedLine : public SerialPort {
 public:
  // `panel` may be null: a port with nothing at the other end. It has to outlive the line, and so does
  // `time`.
  SimulatedLine(SimulatedPanel* panel, Waiting& time, Pacing pacing = Pacing::None);

  void SetSettings(std::string_view settings) override;
  // Exactly these: what is empty is not known.
  void SetSettings(const LineSettings& settings);
  bool Open() override;
  std::optional<OpenFailure> WhyClosed() const override;
  void Close() override;
  bool IsOpen() const override { return open_ && !IsUnplugged(); }
  std::size_t BytesWaiting() override;
  Bytes ReadAll() override;
  bool Write(ByteView bytes) override;

  // When the next byte of the panel arrives, of those that are on their way.
  std::optional<Microseconds> NextDelivery() const;
  // From then on the port is gone: an open one reads as closed, a closed one does not open.
  void UnplugAt(Microseconds when);
  // Bytes that appear on the line by themselves.
  void NoiseAt(Microseconds when, ByteView bytes);
  // Called after each write with the time when its last bit is through.
  void OnWritten(std::function<void(ByteView bytes, Microseconds through)> told) {
    written_ = std::move(told);
  }

 private:
  struct Delivery {
    Microseconds Due;
    std::uint8_t Byte;
    LineSettings At;
  };

  bool IsUnplugged() const { return unplugged_ && time_.Now() >= *unplugged_; }
  Microseconds TimeFor(std::size_t bytes, const LineSettings& settings) const;
  void Send(const PanelReply& reply, Microseconds from);
  void Deliver(const Delivery& delivery);
  void TakeDeliveries();

  SimulatedPanel* panel_;
  Waiting& time_;
  Pacing pacing_;
  LineSettings settings_;
  bool open_ = false;
  std::optional<Microseconds> unplugged_;
  Microseconds freeAt_{};            // when all that was written is through
  std::deque<Delivery> onTheirWay_;  // by time
  Bytes waiting_;
  std::function<void(ByteView, Microseconds)> written_;
};

// COM1..COM16, each absent, or a simulated line, with or without a panel.
class SimulatedPorts : public SerialPorts {
 public:
  explicit SimulatedPorts(Waiting& time, Pacing pacing = Pacing::None) : time_(time), pacing_(pacing) {}

  void AttachLine(int number, std::string deviceName);
  // Where the panel that was programmed last has its buttons pressed; absent until one was programmed.
  void AttachProjectorPort(int number, std::string deviceName);
  SimulatedPanel& AttachPanel(int number, std::string deviceName, SimulatedPanel panel);
  // Null where there is none.
  const SimulatedPanel* PanelAt(int number) const;

  std::string DeviceName(int number) const override;
  // Lines must not outlive this.
  std::unique_ptr<SerialPort> Port(int number) override;

 private:
  struct Place {
    std::string DeviceName;
    std::unique_ptr<SimulatedPanel> Panel;
    bool IsProjectorPort = false;
  };
  const Place* PlaceOf(int number) const;
  std::optional<PanelButtons> ButtonsOfProgrammed() const;

  Waiting& time_;
  Pacing pacing_;
  std::array<Place, kPortSlots> places_;
  const SimulatedPanel* programmedLast_ = nullptr;
};

// One panel of each type on COM1..COM4, at different line settings, at the true speed of their lines, and the
// projector port of the one that was programmed last on COM5.
std::unique_ptr<SimulatedPorts> DemonstrationPorts(Waiting& time);

}  // namespace qdm
