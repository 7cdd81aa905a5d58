#include <gtest/gtest.h>

#include "Clock.h"
#include "platform.h"

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
}
