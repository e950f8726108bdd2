// A line for the bench: a port at whose other end something answers in virtual time.
#pragma once

#include "line/line_settings.h"
#include "line/serial_port.h"
#include "line/waiting.h"

#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace qdm {

class BenchLine : public SerialPort {
 public:
  // What a projector makes of a byte: an answer and how long it takes.
  using Far = std::function<std::pair<Bytes, Microseconds>(std::uint8_t byte, const std::string& settings)>;

  BenchLine(Waiting& time, Far far) : time_(time), far_(std::move(far)) {}

  std::string Settings;
  bool Present = true;

  // What comes from the far end by itself.
  void Hear(std::string_view text) { waiting_.insert(waiting_.end(), text.begin(), text.end()); }

  void SetSettings(std::string_view settings) override { Settings = settings; }
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

}  // namespace qdm
