#include "simulation/simulated_panel.h"

#include "panels/image_layout.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>

namespace qdm {
namespace {

using Kind = PanelFault::Kind;
using Target = PanelFault::Target;

PanelImage BlankMemory() {
  PanelImage memory;
  memory.fill(0xFF);
  return memory;
}

LineSettings ProgrammingSettings() { return ParseLineSettings(kProgrammingSettings); }

// Of the byte that kProjectorLine names.
std::optional<LineSettings> SettingsOfByte(std::uint8_t byte) {
  const LineSpeed* speed = SpeedWithCode(byte & 0x0F);
  const ParityChoice* parity = ParityWithCode(byte >> 4 & 0x03);
  if (byte >= 0x80 || speed == nullptr || parity == nullptr) return std::nullopt;
  return LineSettings{.Speed = speed->BitsPerSecond,
                      .Parity = parity->Parity,
                      .DataBits = 8,
                      .StopBits = byte & 0x40U ? 2 : 1};
}

}  // namespace

bool UnderstandEachOther(const LineSettings& one, const LineSettings& other) {
  const auto same = [](const auto& a, const auto& b) { return !a || !b || *a == *b; };
  return same(one.Speed, other.Speed) && same(one.Parity, other.Parity);
}

SimulatedPanel::SimulatedPanel(Description description)
    : SimulatedPanel(std::move(description), BlankMemory()) {}

SimulatedPanel::SimulatedPanel(Description description, const PanelImage& memory)
    : panel_(description.Panel),
      own_(ParseLineSettings(description.Settings)),
      faults_(std::move(description.Faults)),
      memory_(memory) {}

void SimulatedPanel::Receive(std::uint8_t byte, const LineSettings& line, std::vector<PanelReply>& replies) {
  static const LineSettings programming = ProgrammingSettings();
  if (dead_) return;
  if (UnderstandEachOther(line, own_)) ReceiveIdentificationByte(byte, replies);
  if (UnderstandEachOther(line, programming)) ReceiveOnWire(byte, replies);
}

void SimulatedPanel::ReceiveIdentificationByte(std::uint8_t byte, std::vector<PanelReply>& replies) {
  // No letter of the request but the first equals the first: a mismatch can only begin a new match.
  if (byte != SearchRequest[requestMatched_]) requestMatched_ = 0;
  if (byte == SearchRequest[requestMatched_]) ++requestMatched_;
  if (requestMatched_ < SearchRequest.size()) return;
  requestMatched_ = 0;
  inSetUpMode_ = true;
  const auto reply = IdentReplyOf(panel_);
  Reply(Target::Identification, Bytes(reply.begin(), reply.end()), own_, replies);
}

void SimulatedPanel::ReceiveOnWire(std::uint8_t byte, std::vector<PanelReply>& replies) {
  const bool startWaited = std::exchange(startWaits_, byte == kStartByte);
  if (startWaited && byte == kWriteCommand) {
    BeginRecord();
    if (recordByte_ < 0) return;
    ReceiveRecordByte(kStartByte, replies);
  } else if (startWaited) {
    recordByte_ = -1;
    ReceiveFrameByte(kStartByte, replies);
  }
  if (startWaits_) return;
  if (recordByte_ >= 0) {
    ReceiveRecordByte(byte, replies);
  } else {
    ReceiveFrameByte(byte, replies);
  }
}

void SimulatedPanel::BeginRecord() {
  ++recordsSeen_;
  recordByte_ = 0;
  recordChanged_ = false;
  for (const PanelFault& fault : faults_) {
    if (fault.Where != Target::Record || !fault.HitsNumber(recordsSeen_)) continue;
    if (fault.What == Kind::Restart) Restart();
    if (fault.What == Kind::Die) {
      dead_ = true;
      recordByte_ = -1;
    }
  }
}

void SimulatedPanel::ReceiveRecordByte(std::uint8_t byte, std::vector<PanelReply>& replies) {
  const int place = recordByte_++;
  for (const PanelFault& fault : faults_) {
    if (fault.Where != Target::Record || !fault.HitsNumber(recordsSeen_) || fault.Byte != place) continue;
    if (fault.What != Kind::Drop && fault.What != Kind::Corrupt) continue;
    recordChanged_ = true;
    if (fault.What == Kind::Drop) return;
    byte ^= fault.Mask;
  }
  ReceiveFrameByte(byte, replies);
}

void SimulatedPanel::ReceiveFrameByte(std::uint8_t byte, std::vector<PanelReply>& replies) {
  if (byte == kStartByte) {
    expects_ = Expects::Command;
    escaped_ = false;
    sum_ = kStartByte;
    return;
  }
  if (expects_ == Expects::Start) return;
  const bool mayBeEscaped =
      expects_ == Expects::AddressLow || expects_ == Expects::Data || expects_ == Expects::Check;
  if (escaped_) {
    escaped_ = false;
    const std::optional<std::uint8_t> value = Unescaped(byte);
    if (!value) {
      expects_ = Expects::Start;
      return;
    }
    byte = *value;
  } else if (mayBeEscaped && byte == kEscape) {
    escaped_ = true;
    return;
  }
  ReceiveValue(byte, replies);
}

void SimulatedPanel::ReceiveValue(std::uint8_t value, std::vector<PanelReply>& replies) {
  sum_ = static_cast<std::uint8_t>(sum_ + value);
  switch (std::exchange(expects_, Expects::Start)) {
    case Expects::Start:
      break;
    case Expects::Command:
      if (value == kWriteCommand) expects_ = Expects::AddressLow;
      if (value == kRestartCommand) expects_ = Expects::RestartCheck;
      break;
    case Expects::AddressLow:
      addressLow_ = value;
      expects_ = Expects::AddressHigh;
      break;
    case Expects::AddressHigh:
      addressHigh_ = value;
      dataReceived_ = 0;
      expects_ = Expects::Data;
      break;
    case Expects::Data:
      data_[dataReceived_++] = value;
      expects_ = dataReceived_ < data_.size() ? Expects::Data : Expects::Check;
      break;
    case Expects::Check:
      if (sum_ == 0) WriteRecord(replies);
      break;
    case Expects::RestartCheck:
      if (sum_ != 0) break;
      Reply(Target::RestartAcknowledge, {kAcknowledge}, ProgrammingSettings(), replies);
      Restart();
      break;
  }
}

void SimulatedPanel::WriteRecord(std::vector<PanelReply>& replies) {
  const std::size_t address = addressHigh_ * std::size_t{256} + addressLow_;
  if (address + data_.size() > memory_.size()) return;
  std::copy(data_.begin(), data_.end(), memory_.begin() + static_cast<std::ptrdiff_t>(address));
  ++recordsWritten_;
  if (recordChanged_) ++changedRecordsWritten_;
  Reply(Target::Acknowledge, {kAcknowledge}, ProgrammingSettings(), replies);
}

void SimulatedPanel::Restart() {
  ++restarts_;
  inSetUpMode_ = false;
  const std::size_t lineByte = OffsetOf(LayoutOf(panel_.Model - 1), kProjectorLine);
  own_ = SettingsOfByte(memory_[lineByte]).value_or(own_);
  startWaits_ = false;
  recordByte_ = -1;
  expects_ = Expects::Start;
  requestMatched_ = 0;
}

void SimulatedPanel::Reply(Target what, Bytes data, const LineSettings& at,
                           std::vector<PanelReply>& replies) {
  const int count = ++repliesCounted_[static_cast<std::size_t>(what)];
  Microseconds after{};
  for (const PanelFault& fault : faults_) {
    if (fault.Where != what || !fault.HitsNumber(count)) continue;
    switch (fault.What) {
      case Kind::Lose:
        return;
      case Kind::Wrong:
        data.front() = fault.Value;
        break;
      case Kind::Noise:
        data.insert(data.begin(), fault.Value);
        break;
      case Kind::Long:
        data.push_back(fault.Value);
        break;
      case Kind::Late:
        after = std::max(after, fault.Delay);
        break;
      default:
        break;
    }
  }
  replies.push_back({std::move(data), at, after});
}

}  // namespace qdm
