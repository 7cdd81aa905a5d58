#include "platform/audio.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

namespace qv {
namespace platform {

namespace {

// Standard error pointed at /dev/null for the life of the object. Without a
// device the audio library and the sound system below it explain at length
// why they found none; the engine says it once, in its log.
class MutedStandardError {
 public:
  MutedStandardError() {
    std::fflush(stderr);
    m_saved = dup(STDERR_FILENO);
    const int null_out = open("/dev/null", O_WRONLY);
    if (m_saved >= 0 && null_out >= 0) dup2(null_out, STDERR_FILENO);
    if (null_out >= 0) close(null_out);
  }
  ~MutedStandardError() {
    std::fflush(stderr);
    if (m_saved < 0) return;
    dup2(m_saved, STDERR_FILENO);
    close(m_saved);
  }
  MutedStandardError(const MutedStandardError &) = delete;
  MutedStandardError &operator=(const MutedStandardError &) = delete;

 private:
  int m_saved = -1;  // the real standard error
};

// OpenAL, loaded with SFML's audio module, is looked up rather than linked so
// the engine names no audio library of its own. Without it there is nothing
// to ask, and SFML is left to try.
bool probeOutputDevice() {
  const auto open_device =
      reinterpret_cast<void *(*)(const char *)>(dlsym(RTLD_DEFAULT, "alcOpenDevice"));
  const auto close_device =
      reinterpret_cast<char (*)(void *)>(dlsym(RTLD_DEFAULT, "alcCloseDevice"));
  if (!open_device || !close_device) return true;
  MutedStandardError muted;
  void *p_device = open_device(nullptr);
  if (p_device) close_device(p_device);
  return p_device != nullptr;
}

}  // namespace

bool audioOutputAvailable() {
  static const bool available = probeOutputDevice();
  return available;
}

}  // namespace platform
}  // namespace qv
