// A line on which any byte may be lost, doubled, changed or late, either way, and at whose computer's end the
// program may be killed. It knows what was acknowledged falsely, and why.
#pragma once

#include "panels/frame.h"
#include "simulation/simulated_line.h"
#include "support/virtual_time.h"
#include "world/chances.h"

#include <algorithm>
#include <deque>
#include <functional>
#include <optional>
#include <utility>

namespace qdm {

// Thrown where the program ends without a word.
struct Killed {};

// Why an acknowledgement may be believed for what the panel never took: no program can tell.
struct ProtocolLimits {
  bool LateReply = false;     // one for an earlier frame, later than the program waits for such, or doubled
  bool ChangedReply = false;  // a byte that became an acknowledgement on its way
  bool CheckSum = false;      // a changed frame with the right sum

  bool Any() const { return LateReply || ChangedReply || CheckSum; }
};

struct LineFaults {
  int Rarity = 1000;       // of all bytes, one in that many
  int LatestReply = 2000;  // in ms; up to that the program promises to see through it
  int KillRarity = 0;      // of all frames, one in that many; 0: none
  bool EveryByte = true;   // of a frame; else one of each kind
};

class WorldLine : public SerialPort {
 public:
  using IsThere = std::function<bool()>;

  WorldLine(SimulatedPanel* panel, VirtualTime& time, Chances& chances, LineFaults faults,
            ProtocolLimits& limits, IsThere isThere)
      : panel_(panel),
        line_(panel, time),
        time_(time),
        chances_(chances),
        faults_(faults),
        limits_(limits),
        isThere_(std::move(isThere)) {}

  void SetSettings(std::string_view settings) override { line_.SetSettings(settings); }
  bool Open() override { return isThere_() && line_.Open(); }
  void Close() override {
    GoOnFrom({});
    line_.Close();
    coming_.clear();
  }
  bool IsOpen() const override { return isThere_() && line_.IsOpen(); }
  std::size_t BytesWaiting() override {
    Take();
    return static_cast<std::size_t>(std::count_if(
        coming_.begin(), coming_.end(), [this](const Coming& byte) { return byte.Due <= time_.Now(); }));
  }
  Bytes ReadAll() override {
    Take();
    Bytes read;
    for (auto byte = coming_.begin(); byte != coming_.end();) {
      if (byte->Due > time_.Now()) {
        ++byte;
        continue;
      }
      if (read.empty() && !answer_) answer_ = *byte;
      read.push_back(byte->Value);
      byte = coming_.erase(byte);
    }
    return read;
  }
  bool Write(ByteView bytes) override;
  // Nothing goes wrong from now on.
  void LeaveAlone() { disturbed_ = false; }

 private:
  struct Coming {
    Microseconds Due{};
    std::uint8_t Value = 0;
    std::uint8_t Sent = 0;
    int Frame = 0;  // how many the program had sent when it left the panel
  };

  int Fault(int kinds) { return disturbed_ ? chances_.Fault(kinds, faults_.Rarity) : 0; }
  void Take();
  void GoOnFrom(ByteView next);
  bool PanelTook(ByteView frame) const;
  Bytes OnTheWay(ByteView bytes);

  SimulatedPanel* panel_;
  SimulatedLine line_;
  VirtualTime& time_;
  Chances& chances_;
  LineFaults faults_;
  ProtocolLimits& limits_;
  IsThere isThere_;
  std::deque<Coming> coming_;
  bool disturbed_ = true;
  Bytes frame_;  // that was sent last
  int frames_ = 0;
  std::optional<Coming> answer_;  // what was read first since then
};

inline bool WorldLine::Write(ByteView bytes) {
  if (!IsOpen()) return false;
  if (faults_.KillRarity != 0 && chances_.Fault(1, faults_.KillRarity) != 0) throw Killed();
  GoOnFrom(bytes);
  ++frames_;
  return line_.Write(OnTheWay(bytes));
}

inline Bytes WorldLine::OnTheWay(ByteView bytes) {
  Bytes arriving;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const bool oneOfItsKind = i < 3 || i == 4 || i + 1 == bytes.size();
    const int fault = faults_.EveryByte || oneOfItsKind ? Fault(3) : 0;
    if (fault != 1) arriving.push_back(bytes[i]);
    if (fault == 2) arriving.push_back(bytes[i]);
    if (fault == 3) arriving.back() ^= static_cast<std::uint8_t>(chances_.Between(1, 255));
  }
  return arriving;
}

inline void WorldLine::Take() {
  if (!isThere_()) return coming_.clear();
  for (const std::uint8_t sent : line_.ReadAll()) {
    constexpr std::array kLate = {600, 1500, 2000};
    const int fault = Fault(3 + static_cast<int>(kLate.size()));
    if (fault == 1) continue;
    Coming byte{time_.Now(), sent, sent, frames_};
    if (fault == 3) byte.Value ^= static_cast<std::uint8_t>(chances_.Between(1, 255));
    if (fault > 3) {
      const int longest = kLate[static_cast<std::size_t>(fault) - 4];
      const int late = faults_.EveryByte ? chances_.Between(1, faults_.LatestReply) : longest;
      byte.Due += std::chrono::milliseconds(late);
    }
    coming_.push_back(byte);
    if (fault == 2) coming_.push_back(byte);
    if (fault == 2) coming_.back().Due += std::chrono::milliseconds(chances_.Between(0, 2));
    time_.WakeAt(coming_.back().Due);
  }
}

// A record is in the memory, a restart has ended the set-up mode.
inline bool WorldLine::PanelTook(ByteView frame) const {
  if (panel_ == nullptr || frame[1] == kRestartCommand) return panel_ != nullptr && !panel_->InSetUpMode();
  Bytes values;
  for (std::size_t i = 2; i < frame.size(); ++i)
    values.push_back(frame[i] == kEscape && i != 3 ? *Unescaped(frame[++i]) : frame[i]);
  const auto block = panel_->Memory().begin() + (values[0] | values[1] << 8);
  return std::equal(block, block + kRecordDataBytes, values.begin() + 2);
}

// The program has given up the last frame, or takes it for acknowledged.
inline void WorldLine::GoOnFrom(ByteView next) {
  const bool repeated = std::equal(next.begin(), next.end(), frame_.begin(), frame_.end());
  const bool isFrame = frame_.size() > 1 && (frame_[1] == kWriteCommand || frame_[1] == kRestartCommand);
  const bool believed = !repeated && isFrame && answer_ && answer_->Value == kAcknowledge;
  if (believed && !PanelTook(frame_)) {
    limits_.LateReply |= answer_->Frame != frames_;
    limits_.ChangedReply |= answer_->Sent != kAcknowledge;
    limits_.CheckSum |= answer_->Frame == frames_ && answer_->Sent == kAcknowledge;
  }
  frame_.assign(next.begin(), next.end());
  answer_.reset();
}

}  // namespace qdm
