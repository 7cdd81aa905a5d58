#ifndef QV_FRAME_PACING_H
#define QV_FRAME_PACING_H

#include <cstdint>

#include "core/Clock.h"

namespace qv {

// The frame loop's timing arithmetic, apart from the loop so that it can be
// checked without sleeping. Times are microseconds unless named _ms.

// Microseconds left in the frame after split of work, less the oversleep
// (adjust) carried in from the previous frame. May be zero or negative.
std::int64_t frameRemaining(int frame_time_ms, std::int64_t split, std::int64_t adjust);

// Milliseconds path finding may spend: 95 % of what is left, truncated.
int pathBudget(int frame_time_ms, std::int64_t split, std::int64_t adjust);

// The oversleep carried into the next frame: how much longer than remaining
// the sleep lasted, never negative.
std::int64_t oversleep(std::int64_t slept, std::int64_t remaining);

// An overrun frame is reported only when no oversleep was pending, never in
// frame 0 and never when frame_time_ms is below 1.
bool overrunReported(int frame_time_ms, int step_count, std::int64_t adjust);

// Ends a frame started at clock's last delta(): sleeps out the rest of it or
// reports the overrun. Returns the adjust for the next frame.
std::int64_t finishFrame(const Clock &clock, int frame_time_ms, int step_count,
                         std::int64_t adjust);

}  // namespace qv

#endif
