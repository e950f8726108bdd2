#include "support/event_loop.h"

#include <gtest/gtest.h>

namespace qdm {
namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;

// A wait that spins returns thousands of times in the shortest of these tests; a system that sleeps whole
// milliseconds takes a few turns for a part of one.
constexpr int kFewYields = 50;

struct EventLoopWaitingTest : testing::Test {
  // How often the wait returned before it was over.
  int YieldsUntil(Microseconds end) {
    int yields = 0;
    for (; time.Now() < end; ++yields) time.Yield(end);
    return yields;
  }

  EventLoopWaiting time;
};

TEST_F(EventLoopWaitingTest, WaitsToTheEndWithoutSpinning) {
  for (const Microseconds wait : {microseconds(300), microseconds(2700), microseconds(40000)}) {
    EXPECT_LE(YieldsUntil(time.Now() + wait), kFewYields) << wait.count();
  }
}

TEST_F(EventLoopWaitingTest, NoWaitRunsPastAPromisedTime) {
  const Microseconds start = time.Now();
  const Microseconds promised[] = {start + milliseconds(12), start + milliseconds(4),
                                   start + microseconds(4500)};
  for (const Microseconds when : promised) time.WakeAt(when);
  for (const Microseconds when : {promised[1], promised[2], promised[0]}) {
    while (time.Now() < when) time.Yield(start + kFarLimit);
    EXPECT_LT(time.Now(), when + kFarLimit / 2);
  }
}

}  // namespace
}  // namespace qdm
