#include "support/event_loop.h"

#include <QTimer>

#include <gtest/gtest.h>

#include <ctime>

namespace qdm {
namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;

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
    const std::clock_t busyBefore = std::clock();
    EXPECT_LE(YieldsUntil(time.Now() + wait), 8) << wait.count();
    EXPECT_LT(std::clock() - busyBefore, CLOCKS_PER_SEC / 50) << wait.count();
  }
}

TEST_F(EventLoopWaitingTest, ReturnsAtOnceWhenTheTimeHasPassed) {
  bool seen = false;
  QTimer::singleShot(0, [&] { seen = true; });
  const Microseconds before = time.Now();
  time.Yield(before - milliseconds(5));
  EXPECT_TRUE(seen) << "events that are due run all the same";
  EXPECT_LT(time.Now() - before, milliseconds(500));
}

TEST_F(EventLoopWaitingTest, AnEventEndsTheWait) {
  bool clicked = false;
  QTimer::singleShot(5, [&] { clicked = true; });
  const Microseconds before = time.Now();
  EXPECT_TRUE(Eventually(time, [&] { return clicked; }));
  EXPECT_LT(time.Now() - before, kFarLimit / 2);
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

TEST_F(EventLoopWaitingTest, APromisedTimeIsForgottenWhenItHasCome) {
  time.WakeAt(time.Now() - milliseconds(1));
  time.Yield(time.Now() + kFarLimit);  // returns for it
  const Microseconds end = time.Now() + milliseconds(20);
  EXPECT_LE(YieldsUntil(end), 8);
}

}  // namespace
}  // namespace qdm
