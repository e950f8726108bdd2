#include "simulation/simulated_line.h"

#include "config/panel_configuration.h"
#include "simulation/pressed_buttons_port.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace qdm {

SimulatedLine::SimulatedLine(SimulatedPanel* panel, Waiting& time, Pacing pacing)
    : panel_(panel), time_(time), pacing_(pacing), settings_(ParseLineSettings("9600,n,8,1")) {}

void SimulatedLine::SetSettings(std::string_view settings) {
  TakeDeliveries();
  const LineSettings wanted = ParseLineSettings(settings);
  if (wanted.Speed) settings_.Speed = wanted.Speed;
  if (wanted.Parity) settings_.Parity = wanted.Parity;
  if (wanted.StopBits) settings_.StopBits = wanted.StopBits;
}

void SimulatedLine::SetSettings(const LineSettings& settings) {
  TakeDeliveries();
  settings_ = settings;
}

bool SimulatedLine::Open() {
  if (IsUnplugged()) return false;
  TakeDeliveries();
  open_ = true;
  return true;
}

std::optional<OpenFailure> SimulatedLine::WhyClosed() const {
  return IsUnplugged() ? std::optional(OpenFailure{}) : std::nullopt;
}

void SimulatedLine::Close() {
  TakeDeliveries();
  open_ = false;
  waiting_.clear();
}

std::size_t SimulatedLine::BytesWaiting() {
  TakeDeliveries();
  return waiting_.size();
}

Bytes SimulatedLine::ReadAll() {
  TakeDeliveries();
  return std::exchange(waiting_, {});
}

bool SimulatedLine::Write(ByteView bytes) {
  if (!IsOpen()) return false;
  const Microseconds start = std::max(time_.Now(), freeAt_);
  std::vector<PanelReply> replies;
  for (std::size_t i = 0; i < bytes.size() && panel_ != nullptr; ++i) {
    const Microseconds through = start + TimeFor(i + 1, settings_);
    if (unplugged_ && through >= *unplugged_) break;
    panel_->Receive(bytes[i], settings_, replies);
    for (const PanelReply& reply : replies) Send(reply, through);
    replies.clear();
  }
  freeAt_ = start + TimeFor(bytes.size(), settings_);
  if (written_) written_(bytes, freeAt_);
  return true;
}

std::optional<Microseconds> SimulatedLine::NextDelivery() const {
  if (onTheirWay_.empty()) return std::nullopt;
  return onTheirWay_.front().Due;
}

void SimulatedLine::UnplugAt(Microseconds when) {
  unplugged_ = when;
  if (when > time_.Now()) time_.WakeAt(when);
}

void SimulatedLine::NoiseAt(Microseconds when, ByteView bytes) {
  for (const std::uint8_t byte : bytes) Deliver({when, byte, settings_});
}

Microseconds SimulatedLine::TimeFor(std::size_t bytes, const LineSettings& settings) const {
  return pacing_ == Pacing::None ? Microseconds(0) : TimeOfBytes(bytes, settings);
}

void SimulatedLine::Send(const PanelReply& reply, Microseconds from) {
  for (std::size_t i = 0; i < reply.Data.size(); ++i) {
    Deliver({from + reply.After + TimeFor(i + 1, reply.At), reply.Data[i], reply.At});
  }
}

void SimulatedLine::Deliver(const Delivery& delivery) {
  const auto later = [](Microseconds due, const Delivery& other) { return due < other.Due; };
  onTheirWay_.insert(std::upper_bound(onTheirWay_.begin(), onTheirWay_.end(), delivery.Due, later), delivery);
  time_.WakeAt(delivery.Due);
}

void SimulatedLine::TakeDeliveries() {
  while (!onTheirWay_.empty() && onTheirWay_.front().Due <= time_.Now()) {
    const Delivery delivery = onTheirWay_.front();
    onTheirWay_.pop_front();
    if (!IsOpen()) continue;
    if (UnderstandEachOther(delivery.At, settings_)) {
      waiting_.push_back(delivery.Byte);
    } else if (delivery.At.Speed != settings_.Speed) {
      waiting_.push_back(static_cast<std::uint8_t>(0x80 | delivery.Byte >> 1));
    }
  }
  if (IsUnplugged()) waiting_.clear();
}

void SimulatedPorts::AttachLine(int number, std::string deviceName) {
  places_.at(static_cast<std::size_t>(number) - 1) = {std::move(deviceName), nullptr};
}

void SimulatedPorts::AttachProjectorPort(int number, std::string deviceName) {
  places_.at(static_cast<std::size_t>(number) - 1) = {std::move(deviceName), nullptr, true};
}

SimulatedPanel& SimulatedPorts::AttachPanel(int number, std::string deviceName, SimulatedPanel panel) {
  Place& place = places_.at(static_cast<std::size_t>(number) - 1);
  place = {std::move(deviceName), std::make_unique<SimulatedPanel>(std::move(panel))};
  return *place.Panel;
}

const SimulatedPorts::Place* SimulatedPorts::PlaceOf(int number) const {
  if (number < 1 || number > kPortSlots) return nullptr;
  return &places_[static_cast<std::size_t>(number) - 1];
}

const SimulatedPanel* SimulatedPorts::PanelAt(int number) const {
  const Place* place = PlaceOf(number);
  return place != nullptr ? place->Panel.get() : nullptr;
}

std::optional<PanelButtons> SimulatedPorts::ButtonsOfProgrammed() const {
  if (programmedLast_ == nullptr) return std::nullopt;
  return PanelButtons::Of(programmedLast_->Memory(), programmedLast_->Panel().Model - 1);
}

std::string SimulatedPorts::DeviceName(int number) const {
  const Place* place = PlaceOf(number);
  if (place == nullptr || (place->IsProjectorPort && !ButtonsOfProgrammed())) return {};
  return place->DeviceName;
}

std::unique_ptr<SerialPort> SimulatedPorts::Port(int number) {
  const bool present = !DeviceName(number).empty();
  const Place* place = PlaceOf(number);
  if (present && place->IsProjectorPort)
    return std::make_unique<PressedButtonsPort>(*ButtonsOfProgrammed(), time_);
  SimulatedPanel* panel = present ? place->Panel.get() : nullptr;
  auto line = std::make_unique<SimulatedLine>(panel, time_, pacing_);
  if (!present) line->UnplugAt(Microseconds::min());
  if (panel != nullptr) {
    line->OnWritten([this, panel, written = panel->RecordsWritten()](ByteView, Microseconds) mutable {
      if (std::exchange(written, panel->RecordsWritten()) != written) programmedLast_ = panel;
    });
  }
  return line;
}

std::unique_ptr<SimulatedPorts> DemonstrationPorts(Waiting& time) {
  struct Demonstration {
    ControllerTypeValue Type;
    const char* Settings;
  };
  constexpr std::array<Demonstration, 4> kPanels = {
      {{kQdm7, "19200,e,8,2"}, {kQdm6, "9600,n,8,2"}, {kQdm4, "38400,o,8,2"}, {kTlVox, "57600,n,8,2"}}};
  auto ports = std::make_unique<SimulatedPorts>(time, Pacing::TrueByteTime);
  int number = 0;
  for (const auto& [code, settings] : kPanels) {
    const PanelType& type = *PanelTypeOf(code);
    SimulatedPanel::Description description;
    description.Panel = {.Model = type.ModelCode(), .Major = 1, .Minor = 3};
    description.Settings = settings;
    ports->AttachPanel(++number, "demo " + std::string(type.Caption), SimulatedPanel(std::move(description)));
  }
  ports->AttachProjectorPort(++number, "demo projector cable");
  return ports;
}

}  // namespace qdm
