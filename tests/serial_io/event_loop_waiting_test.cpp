#include "support/event_loop.h"

#include <QTimer>

#include <gtest/gtest.h>

#ifdef _WIN32
#include <windows.h>
#undef Yield  // an empty macro there
#else
#include <ctime>
#endif

namespace qdm {
namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;

// What this process has used of the processor. (std::clock counts the time of the day on Windows.)
Microseconds BusyTime() {
#ifdef _WIN32
  FILETIME ignored;
  FILETIME kernel;
  FILETIME user;
  GetProcessTimes(GetCurrentProcess(), &ignored, &ignored, &kernel, &user);
  return Microseconds((kernel.dwLowDateTime + user.dwLowDateTime) / 10);
#else
  return Microseconds(std::clock() * std::int64_t{1'000'000} / CLOCKS_PER_SEC);
#endif
}

// A wait that spins returns thousands of times in the shortest of these tests; a system that sleeps whole
// milliseconds takes a few turns for a part of one.
constexpr int kFewYields = 150;

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
    const Microseconds busyBefore = BusyTime();
    EXPECT_LE(YieldsUntil(time.Now() + wait), kFewYields) << wait.count();
    EXPECT_LT(BusyTime() - busyBefore, milliseconds(20)) << wait.count();
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
  EXPECT_LE(YieldsUntil(end), kFewYields);
}

}  // namespace
}  // namespace qdm
