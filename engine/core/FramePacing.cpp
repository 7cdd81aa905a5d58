#include "core/FramePacing.h"

#include "core/LogManager.h"
#include "platform/platform.h"

namespace qv {

std::int64_t frameRemaining(int frame_time_ms, std::int64_t split, std::int64_t adjust) {
  return static_cast<std::int64_t>(frame_time_ms) * 1000 - split - adjust;
}

int pathBudget(int frame_time_ms, std::int64_t split, std::int64_t adjust) {
  float left = static_cast<float>(frameRemaining(frame_time_ms, split, adjust));
  return static_cast<int>(left * 0.95f / 1000.0f);
}

std::int64_t oversleep(std::int64_t slept, std::int64_t remaining) {
  return slept > remaining ? slept - remaining : 0;
}

bool overrunReported(int frame_time_ms, int step_count, std::int64_t adjust) {
  return adjust == 0 && frame_time_ms >= 1 && step_count >= 1;
}

std::int64_t finishFrame(const Clock &clock, int frame_time_ms, int step_count,
                         std::int64_t adjust) {
  std::int64_t split = clock.split();
  std::int64_t remaining = frameRemaining(frame_time_ms, split, adjust);
  if (remaining > 0) {
    std::int64_t before = clock.split();
    platform::sleepMilliseconds(static_cast<long>(remaining / 1000));
    std::int64_t after = clock.split();
    return oversleep(after - before, remaining);
  }
  if (overrunReported(frame_time_ms, step_count, adjust))
    LogManager::getInstance().writeLog(
        "GameManager::run(): Can't keep up! frame_time %d ms, split %d ms", frame_time_ms,
        static_cast<int>(split / 1000));
  return 0;
}

}  // namespace qv
