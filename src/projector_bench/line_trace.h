// What went over a line while something was tried: every byte that was sent and that came, with its time,
// late and surplus bytes too. `TracedPort` stands before a port and keeps it.
#pragma once

#include "line/serial_port.h"
#include "line/waiting.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qdm {

enum class LineDirection { Sent, Received };

// Bytes that followed one another without a pause.
struct TraceRun {
  LineDirection Direction = LineDirection::Sent;
  Microseconds First{0};  // times of the first and the last byte, from `Restart` on
  Microseconds Last{0};
  Bytes Values;
};

class LineTrace {
 public:
  // A byte that comes later than that after the one before begins a run of its own.
  static constexpr Microseconds kPause = std::chrono::milliseconds(5);
  // The oldest are forgotten: a line full of noise must not fill the memory.
  static constexpr std::size_t kMostRuns = 500;
  static constexpr std::size_t kMostBytesOfRun = 64;

  // The clock must outlive the trace.
  explicit LineTrace(const Waiting& time) : time_(time), start_(time.Now()) {}

  // Times count from now on; nothing is forgotten but what was kept so far.
  void Restart();
  void Add(LineDirection direction, ByteView bytes);

  const std::deque<TraceRun>& Runs() const { return runs_; }
  // Changes with every byte.
  std::size_t Total() const { return total_; }

 private:
  const Waiting& time_;
  Microseconds start_;
  std::deque<TraceRun> runs_;
  std::size_t total_ = 0;
};

// A run for reading.
struct TraceWords {
  std::string Time;        // "0.000" or "0.000-0.013", in seconds
  std::string Bytes;       // "50 57 0D"
  std::string Characters;  // "PW.": a dot for what is none
};
TraceWords WordsOf(const TraceRun& run);

class TracedPort : public SerialPort {
 public:
  // The trace must outlive the port.
  TracedPort(std::unique_ptr<SerialPort> port, LineTrace& trace) : port_(std::move(port)), trace_(trace) {}

  // Takes in what has come, so that it gets its time; to be called often. It waits here until it is read.
  void Poll();

  void SetSettings(std::string_view settings) override { port_->SetSettings(settings); }
  std::vector<LineParameter> RefusedSettings() const override { return port_->RefusedSettings(); }
  bool Open() override { return port_->Open(); }
  void Close() override { port_->Close(); }
  bool IsOpen() const override { return port_->IsOpen(); }
  std::size_t BytesWaiting() override;
  Bytes ReadAll() override;
  bool Write(ByteView bytes) override;

 private:
  std::unique_ptr<SerialPort> port_;
  LineTrace& trace_;
  Bytes waiting_;
};

}  // namespace qdm
