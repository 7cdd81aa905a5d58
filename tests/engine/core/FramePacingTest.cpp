#include <gtest/gtest.h>

#include "EngineFixture.h"
#include "core/Clock.h"
#include "core/FramePacing.h"
#include "platform/platform.h"

class FramePacingLogTest : public qvtest::LogFixture {};

TEST(FramePacingTest, OversleepIsTakenOffTheNextFrame) {
  // 33 ms frames: 5 ms of work leaves 28 ms to sleep.
  EXPECT_EQ(qv::frameRemaining(33, 5000, 0), 28000);
  // That sleep lasted 30 ms: 2 ms carry into the next frame.
  std::int64_t adjust = qv::oversleep(30000, 28000);
  EXPECT_EQ(adjust, 2000);
  EXPECT_EQ(qv::frameRemaining(33, 5000, adjust), 26000);
  // Waking early carries nothing.
  EXPECT_EQ(qv::oversleep(27000, 28000), 0);
  EXPECT_EQ(qv::oversleep(28000, 28000), 0);
  // Overrun and zero frame times leave nothing to sleep.
  EXPECT_EQ(qv::frameRemaining(33, 40000, 0), -7000);
  EXPECT_EQ(qv::frameRemaining(0, 0, 0), 0);
  EXPECT_EQ(qv::frameRemaining(-5, 0, 0), -5000);
}

TEST(FramePacingTest, PathBudgetIsNinetyFivePercentTruncatedTowardZero) {
  EXPECT_EQ(qv::pathBudget(33, 5000, 0), 26);     // 26.6
  EXPECT_EQ(qv::pathBudget(33, 5000, 2000), 24);  // 24.7
  EXPECT_EQ(qv::pathBudget(33, 32000, 0), 0);     // 0.95
  EXPECT_EQ(qv::pathBudget(33, 40000, 0), -6);    // -6.65
  EXPECT_EQ(qv::pathBudget(0, 0, 0), 0);
}

TEST(FramePacingTest, OverrunIsReportedOnlyWhenNothingWasPending) {
  EXPECT_TRUE(qv::overrunReported(33, 1, 0));
  EXPECT_FALSE(qv::overrunReported(33, 0, 0));     // never in the first frame
  EXPECT_FALSE(qv::overrunReported(33, 5, 1000));  // the oversleep explains it
  EXPECT_FALSE(qv::overrunReported(0, 5, 0));      // no frame time, no pace
  EXPECT_TRUE(qv::overrunReported(1, 5, 0));
}

TEST_F(FramePacingLogTest, FinishFrameSleepsOutTheFrameOrLogsTheOverrun) {
  qv::Clock clock;
  clock.delta();
  EXPECT_EQ(qv::finishFrame(clock, 0, 5, 0), 0);
  EXPECT_LT(clock.split(), 5000);  // frame time 0 never sleeps

  clock.delta();
  std::int64_t adjust = qv::finishFrame(clock, 15, 1, 0);
  EXPECT_GE(clock.split(), 14000);  // one millisecond of clock granularity
  EXPECT_GE(adjust, 0);
  EXPECT_EQ(adjust % 1000, 0);

  clock.delta();
  qv::platform::sleepMilliseconds(4);
  EXPECT_EQ(qv::finishFrame(clock, 2, 0, 0), 0);     // step 0: silent
  EXPECT_EQ(qv::finishFrame(clock, 2, 3, 1000), 0);  // pending adjust: silent, cleared
  EXPECT_EQ(log->messages(), std::vector<std::string>{});
  EXPECT_EQ(qv::finishFrame(clock, 2, 3, 0), 0);
  std::vector<std::string> lines = log->messages();
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_EQ(lines[0].rfind("GameManager::run(): Can't keep up! frame_time 2 ms, split ", 0), 0u)
      << lines[0];
  EXPECT_EQ(lines[0].substr(lines[0].size() - 3), " ms");
}
