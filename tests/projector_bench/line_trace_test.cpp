#include "projector_bench/line_trace.h"

#include "support/virtual_time.h"

#include <gtest/gtest.h>

#include <chrono>

namespace qdm {
namespace {

using namespace std::chrono_literals;

struct Loop : SerialPort {
  Bytes Arrived;

  void SetSettings(std::string_view) override {}
  bool Open() override { return true; }
  void Close() override {}
  bool IsOpen() const override { return true; }
  std::size_t BytesWaiting() override { return Arrived.size(); }
  Bytes ReadAll() override { return std::exchange(Arrived, {}); }
  bool Write(ByteView) override { return true; }
};

TEST(LineTrace, KeepsEveryByteWithItsTimeLateOnesToo) {
  VirtualTime time;
  LineTrace trace(time);
  auto inner = std::make_unique<Loop>();
  Loop& line = *inner;
  TracedPort port(std::move(inner), trace);
  const auto at = [&](Microseconds pause) { time.Yield(time.Now() + pause); };

  at(70ms);
  trace.Restart();
  port.Write(Bytes{'P', 13});
  at(30ms);
  line.Arrived = {'O'};
  port.Poll();
  at(2ms);
  line.Arrived = {'K', 13};
  EXPECT_EQ(port.ReadAll(), (Bytes{'O', 'K', 13})) << "what was taken in before waits";
  at(1500ms);
  line.Arrived = {0xFF};
  port.Poll();

  std::string text;
  for (const TraceRun& run : trace.Runs()) {
    const TraceWords words = WordsOf(run);
    text += words.Time + (run.Direction == LineDirection::Sent ? " > " : " < ") + words.Bytes + " " +
            words.Characters + "\n";
  }
  EXPECT_EQ(text, "0.000 > 50 0D P.\n0.030-0.032 < 4F 4B 0D OK.\n1.532 < FF .\n");
  EXPECT_EQ(port.ReadAll(), Bytes{0xFF});
}

TEST(LineTrace, ForgetsTheOldestOfALineFullOfNoise) {
  VirtualTime time;
  LineTrace trace(time);
  trace.Add(LineDirection::Received, Bytes(100'000, 0xAA));
  EXPECT_EQ(trace.Total(), 100'000U);
  EXPECT_EQ(trace.Runs().size(), LineTrace::kMostRuns);
}

}  // namespace
}  // namespace qdm
