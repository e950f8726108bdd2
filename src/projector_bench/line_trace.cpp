#include "projector_bench/line_trace.h"

#include "serial_strings/serial_string.h"

#include <array>
#include <cstdio>
#include <string>
#include <utility>

namespace qdm {

void LineTrace::Restart() {
  runs_.clear();
  start_ = time_.Now();
}

void LineTrace::Add(LineDirection direction, ByteView bytes) {
  const Microseconds at = time_.Now() - start_;
  for (const std::uint8_t byte : bytes) {
    const bool goesOn = !runs_.empty() && runs_.back().Direction == direction &&
                        at - runs_.back().Last <= kPause && runs_.back().Values.size() < kMostBytesOfRun;
    if (!goesOn) runs_.push_back({direction, at, at, {}});
    runs_.back().Last = at;
    runs_.back().Values.push_back(byte);
    ++total_;
  }
  while (runs_.size() > kMostRuns) runs_.pop_front();
}

TraceWords WordsOf(const TraceRun& run) {
  const auto seconds = [](Microseconds time) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.3f", static_cast<double>(time.count()) / 1e6);
    return std::string(text.data());
  };
  TraceWords words;
  words.Time = seconds(run.First);
  if (seconds(run.Last) != words.Time) words.Time += "-" + seconds(run.Last);
  for (const std::uint8_t byte : run.Values) {
    words.Bytes += (words.Bytes.empty() ? "" : " ") + HexByte(byte);
    words.Characters += byte >= 32 && byte < 127 ? static_cast<char>(byte) : '.';
  }
  return words;
}

void TracedPort::Poll() {
  const Bytes arrived = port_->ReadAll();
  trace_.Add(LineDirection::Received, arrived);
  waiting_.insert(waiting_.end(), arrived.begin(), arrived.end());
}

std::size_t TracedPort::BytesWaiting() {
  Poll();
  return waiting_.size();
}

Bytes TracedPort::ReadAll() {
  Poll();
  return std::exchange(waiting_, {});
}

bool TracedPort::Write(ByteView bytes) {
  Poll();
  if (!port_->Write(bytes)) return false;
  trace_.Add(LineDirection::Sent, bytes);
  return true;
}

}  // namespace qdm
