#include "simulation/pressed_buttons_port.h"

#include "projector_bench/wrong_settings.h"
#include "simulation/simulated_panel.h"

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

namespace qdm {
namespace {

// A line that keeps what is written to it, and a clock of its own that jumps over every wait.
class Recorder : public SerialPort, public Waiting {
 public:
  Recorder(Microseconds start, const LineSettings& settings) : now_(start), settings_(settings) {}

  Microseconds Now() const override { return now_; }
  void Yield(Microseconds until) override { now_ = until; }
  void WakeAt(Microseconds) override {}

  void SetSettings(std::string_view) override {}
  bool Open() override { return true; }
  void Close() override {}
  bool IsOpen() const override { return true; }
  std::size_t BytesWaiting() override { return 0; }
  Bytes ReadAll() override { return {}; }
  bool Write(ByteView bytes) override {
    for (const std::uint8_t byte : bytes) {
      through_ = std::max(through_, now_) + TimeOfBytes(1, settings_);
      Written.push_back(byte);
      Times.push_back(through_);
    }
    return true;
  }

  // Since the last Forget, and when each byte was through.
  Bytes Written;
  std::vector<Microseconds> Times;
  void Forget() {
    Written.clear();
    Times.clear();
  }

 private:
  Microseconds now_;
  LineSettings settings_;
  Microseconds through_{};
};

}  // namespace

bool PressedButtonsPort::Open() {
  open_ = true;
  coming_.clear();
  const LineSettings theirs = ParseLineSettings(buttons_.LineSettings());
  Recorder recorder(time_.Now(), theirs);
  for (const Slot slot : buttons_.Available()) {
    recorder.Yield(recorder.Now() + kBetweenButtons);
    buttons_.Press({slot}, recorder, recorder, {});
    const Bytes heard = UnderstandEachOther(theirs, settings_) ? recorder.Written
                                                               : HeardAs(recorder.Written, theirs, settings_);
    for (std::size_t i = 0; i < heard.size(); ++i)
      coming_.push_back({recorder.Times[std::min(i, recorder.Times.size() - 1)], heard[i]});
    recorder.Forget();
  }
  BytesWaiting();
  return true;
}

void PressedButtonsPort::Close() {
  open_ = false;
  coming_.clear();
  waiting_.clear();
}

std::size_t PressedButtonsPort::BytesWaiting() {
  for (; !coming_.empty() && coming_.front().When <= time_.Now(); coming_.pop_front())
    waiting_.push_back(coming_.front().Byte);
  if (!coming_.empty()) time_.WakeAt(coming_.front().When);
  return waiting_.size();
}

Bytes PressedButtonsPort::ReadAll() {
  BytesWaiting();
  return std::exchange(waiting_, {});
}

}  // namespace qdm
