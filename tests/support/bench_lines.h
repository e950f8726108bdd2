// A line for the bench: a port at whose other end something answers in virtual time.
#pragma once

#include "line/line_settings.h"
#include "line/serial_port.h"
#include "line/waiting.h"
#include "projector_bench/stand_in.h"

#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qdm {

class BenchLine : public SerialPort {
 public:
  // What a projector makes of a byte: an answer and how long it takes.
  using Far = std::function<std::pair<Bytes, Microseconds>(std::uint8_t byte, const std::string& settings)>;

  BenchLine(Waiting& time, Far far) : time_(time), far_(std::move(far)) {}

  std::string Settings;
  bool Present = true;
  std::vector<LineParameter> Refused;

  // What comes from the far end by itself.
  void Hear(std::string_view text) { waiting_.insert(waiting_.end(), text.begin(), text.end()); }

  void SetSettings(std::string_view settings) override { Settings = settings; }
  std::vector<LineParameter> RefusedSettings() const override { return Refused; }
  bool Open() override { return Present; }
  void Close() override {}
  bool IsOpen() const override { return Present; }
  std::size_t BytesWaiting() override {
    while (!coming_.empty() && coming_.front().first <= time_.Now()) {
      waiting_.insert(waiting_.end(), coming_.front().second.begin(), coming_.front().second.end());
      coming_.pop_front();
    }
    return waiting_.size();
  }
  Bytes ReadAll() override {
    BytesWaiting();
    return std::exchange(waiting_, {});
  }
  bool Write(ByteView bytes) override {
    for (const std::uint8_t byte : bytes) {
      auto [answer, after] = far_(byte, Settings);
      if (answer.empty()) continue;
      coming_.emplace_back(time_.Now() + after, std::move(answer));
      time_.WakeAt(time_.Now() + after);
    }
    return true;
  }

 private:
  Waiting& time_;
  Far far_;
  std::deque<std::pair<Microseconds, Bytes>> coming_;
  Bytes waiting_;
};

// The stand-in at the far end.
inline BenchLine::Far AnswersOf(StandIn& standIn, Waiting& time) {
  return [&standIn, &time](std::uint8_t byte, const std::string&) {
    standIn.Receive({&byte, 1}, time.Now());
    return std::pair(standIn.TakeAnswers(time.Now()), Microseconds(0));
  };
}

}  // namespace qdm
