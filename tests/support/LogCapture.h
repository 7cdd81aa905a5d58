#ifndef QV_TEST_LOG_CAPTURE_H
#define QV_TEST_LOG_CAPTURE_H

#include <string>
#include <vector>

#include "TempDir.h"

namespace qvtest {

// Points the engine log at a file in a temporary folder (QUORVELLE_LOG) for
// the life of the object and reads it back. start() opens the log itself;
// an engine fixture lets the GameManager open it instead.
class LogCapture {
 public:
  LogCapture();
  // Stops the log if it is still running and restores the environment.
  ~LogCapture();

  // Starts the LogManager at the given level; true on success.
  bool start(int log_level = 0);
  void stop();

  const std::string &path() const { return m_path; }
  // The file as written so far (flushes the log first).
  std::string text() const;
  // Each line's message, without the time and frame-number prefix.
  std::vector<std::string> messages() const;
  // Whether some line's message is exactly message.
  bool contains(const std::string &message) const;
  // How many lines' messages are exactly message.
  int count(const std::string &message) const;

 private:
  TempDir m_dir;
  std::string m_path;
  ScopedEnv m_log_env;
  ScopedEnv m_level_env;
};

}  // namespace qvtest

#endif
