#include "SignalTimer.h"

#include <signal.h>

namespace qvtest {

SignalTimer::SignalTimer(int sig, long delay_ms) {
  struct sigevent event {};
  event.sigev_notify = SIGEV_SIGNAL;
  event.sigev_signo = sig;
  if (timer_create(CLOCK_MONOTONIC, &event, &m_timer) != 0) return;
  struct itimerspec when {};
  when.it_value.tv_sec = delay_ms / 1000;
  when.it_value.tv_nsec = (delay_ms % 1000) * 1000000L;
  m_armed = timer_settime(m_timer, 0, &when, nullptr) == 0;
  if (!m_armed) timer_delete(m_timer);
}

SignalTimer::~SignalTimer() {
  if (m_armed) timer_delete(m_timer);
}

}  // namespace qvtest
