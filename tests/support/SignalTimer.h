#ifndef QV_TEST_SIGNAL_TIMER_H
#define QV_TEST_SIGNAL_TIMER_H

#include <time.h>

namespace qvtest {

// Sends this process a signal once, after a delay, as a Ctrl-C arriving in
// the middle of whatever the test is doing would.
class SignalTimer {
 public:
  SignalTimer(int sig, long delay_ms);
  ~SignalTimer();
  SignalTimer(const SignalTimer &) = delete;
  SignalTimer &operator=(const SignalTimer &) = delete;

  bool armed() const { return m_armed; }

 private:
  timer_t m_timer{};
  bool m_armed = false;
};

}  // namespace qvtest

#endif
