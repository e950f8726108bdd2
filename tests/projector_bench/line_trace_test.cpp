#include "projector_bench/line_trace.h"

#include "support/bench_lines.h"
#include "support/virtual_time.h"

#include <gtest/gtest.h>

#include <chrono>

namespace qdm {
namespace {

using namespace std::chrono_literals;

TEST(LineTrace, KeepsEveryByteWithItsTimeLateOnesToo) {
  VirtualTime time;
  LineTrace trace(time);
  auto inner = std::make_unique<BenchLine>(
      time, [](std::uint8_t, const std::string&) { return std::pair(Bytes(), Microseconds(0)); });
  BenchLine& line = *inner;
  TracedPort port(std::move(inner), trace);
  const auto at = [&](Microseconds pause) { time.Yield(time.Now() + pause); };

  at(70ms);
  trace.Restart();
  port.Write(Bytes{'P', 13});
  at(30ms);
  line.Hear("O");
  port.Poll();
  at(2ms);
  line.Hear("K\r");
  EXPECT_EQ(port.ReadAll(), (Bytes{'O', 'K', 13})) << "what was taken in before waits";
  at(1500ms);
  line.Hear("\xFF");
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
