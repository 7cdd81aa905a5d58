#ifndef QV_TEST_LOG_CAPTURE_H
#define QV_TEST_LOG_CAPTURE_H

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "TempDir.h"
#include "core/LogManager.h"

namespace qvtest {

// Points the engine log at a file in a temporary folder (QUORVELLE_LOG) for
// the life of the object and reads it back. start() opens the log itself;
// an engine fixture lets the GameManager open it instead.
class LogCapture {
 public:
  LogCapture()
      : m_path(m_dir.file("test.log")),
        m_log_env("QUORVELLE_LOG", m_path.c_str()),
        m_level_env("QUORVELLE_LOG_LEVEL", nullptr) {}
  // Stops the log if it is still running and restores the environment.
  ~LogCapture() { stop(); }

  // Starts the LogManager at the given level; true on success.
  bool start(int log_level = 0) {
    if (manager().startUp() != 0) return false;
    manager().setLogLevel(log_level);
    return true;
  }
  void stop() {
    if (manager().isStarted()) manager().shutDown();
    manager().setLogLevel(0);
    manager().setFlush(false);
  }

  const std::string &path() const { return m_path; }
  // The file as written so far (flushes the log first).
  std::string text() const {
    std::fflush(nullptr);
    return readFile(m_path);
  }
  // Each line's message, without the time and frame-number prefix.
  std::vector<std::string> messages() const { return logMessages(text()); }
  // Whether some line's message is exactly message.
  bool contains(const std::string &message) const { return count(message) > 0; }
  // How many lines' messages are exactly message.
  int count(const std::string &message) const {
    const std::vector<std::string> all = messages();
    return static_cast<int>(std::count(all.begin(), all.end(), message));
  }

 private:
  static qv::LogManager &manager() { return qv::LogManager::getInstance(); }

  TempDir m_dir;
  std::string m_path;
  ScopedEnv m_log_env;
  ScopedEnv m_level_env;
};

}  // namespace qvtest

#endif
