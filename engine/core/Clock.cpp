#include "core/Clock.h"

#include "platform/platform.h"

namespace qv {

namespace {
// Readings are whole milliseconds, the unit the frame loop sleeps in: the
// oversleep it then measures includes the drift below one millisecond, so
// the loop's average frame length settles on the frame time exactly.
std::int64_t now() {
  return platform::monotonicMicroseconds() / 1000 * 1000;
}
}  // namespace

Clock::Clock() : m_previous_time(now()) {
}

std::int64_t Clock::delta() {
  std::int64_t reading = now();
  std::int64_t elapsed = reading - m_previous_time;
  m_previous_time = reading;
  return elapsed;
}

std::int64_t Clock::split() const {
  return now() - m_previous_time;
}

}  // namespace qv
