#include <gtest/gtest.h>
#include <signal.h>

#include <string>

#include "SignalTimer.h"
#include "core/Clock.h"
#include "platform/platform.h"

TEST(ClockTest, MeasuresSleepsInWholeMillisecondsAndNeverGoesBack) {
  qv::Clock clock;
  qv::platform::sleepMilliseconds(20);
  std::int64_t split = clock.split();
  EXPECT_GE(split, 19000);  // a reading may sit just before a millisecond tick
  EXPECT_EQ(split % 1000, 0);
  std::int64_t delta = clock.delta();
  EXPECT_GE(delta, split);
  EXPECT_GE(clock.split(), 0);
  EXPECT_LT(clock.split(), 20000);
  qv::platform::sleepMilliseconds(-5);
  qv::platform::sleepMilliseconds(0);
  EXPECT_LT(clock.split(), 5000);
}

TEST(PlatformTest, SleepOutlastsAStopSignalThatItRecords) {
  ASSERT_EQ(qv::platform::installStopSignals(), 0);
  qv::platform::clearStopRequest();
  qvtest::SignalTimer timer(SIGTERM, 5);
  ASSERT_TRUE(timer.armed());
  std::int64_t start = qv::platform::monotonicMicroseconds();
  qv::platform::sleepMilliseconds(40);
  std::int64_t slept = qv::platform::monotonicMicroseconds() - start;
  EXPECT_TRUE(qv::platform::stopRequested());
  EXPECT_GE(slept, 40000);
  qv::platform::clearStopRequest();
  qv::platform::restoreStopSignals();
  EXPECT_FALSE(qv::platform::stopRequested());
}

TEST(PlatformTest, CurrentDirectoryIsEmptyWhenItDoesNotFit) {
  std::string cwd = qv::platform::currentDirectory(4096);
  ASSERT_FALSE(cwd.empty());
  EXPECT_EQ(cwd[0], '/');
  EXPECT_EQ(qv::platform::currentDirectory(cwd.size() + 1), cwd);
  EXPECT_EQ(qv::platform::currentDirectory(cwd.size()), "");
  EXPECT_EQ(qv::platform::currentDirectory(0), "");
}
