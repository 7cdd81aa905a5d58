#include "platform/platform.h"

#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <ctime>
#include <vector>

namespace qv {
namespace platform {

namespace {
volatile std::sig_atomic_t g_stop_requested = 0;

void onStopSignal(int) {
  g_stop_requested = 1;
}

int setHandler(void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  sigemptyset(&action.sa_mask);
  // Restart interrupted reads and writes (the window system's among them), so
  // a stop request never surfaces as an I/O error somewhere else.
  action.sa_flags = SA_RESTART;
  int result = 0;
  for (int sig : {SIGINT, SIGTERM})
    if (sigaction(sig, &action, nullptr) != 0) result = -1;
  return result;
}
}  // namespace

std::int64_t monotonicMicroseconds() {
  struct timespec now {};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<std::int64_t>(now.tv_sec) * 1000000 + now.tv_nsec / 1000;
}

void sleepMilliseconds(long ms) {
  if (ms <= 0) return;
  struct timespec left {};
  left.tv_sec = ms / 1000;
  left.tv_nsec = (ms % 1000) * 1000000L;
  // A signal cuts the sleep short; finish it so the frame keeps its length.
  while (nanosleep(&left, &left) != 0 && errno == EINTR) {
  }
}

std::string currentDirectory(std::size_t max_length) {
  std::vector<char> buffer(max_length);
  if (max_length == 0 || !getcwd(buffer.data(), buffer.size())) return "";
  return buffer.data();
}

int installStopSignals() {
  return setHandler(onStopSignal);
}

void restoreStopSignals() {
  setHandler(SIG_DFL);
}

bool stopRequested() {
  return g_stop_requested != 0;
}

void clearStopRequest() {
  g_stop_requested = 0;
}

void requestStop() {
  g_stop_requested = 1;
}

}  // namespace platform
}  // namespace qv
