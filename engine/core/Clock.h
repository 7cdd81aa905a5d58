#ifndef QV_CLOCK_H
#define QV_CLOCK_H

#include <cstdint>

namespace qv {

// A stopwatch in microseconds, read in whole milliseconds, on a clock that
// never runs backwards.
class Clock {
 public:
  Clock();

  // Time since the previous reading; restarts the stopwatch.
  std::int64_t delta();
  // Time since the previous reading; changes nothing.
  std::int64_t split() const;

 private:
  std::int64_t m_previous_time;  // microseconds, the previous reading
};

}  // namespace qv

#endif
