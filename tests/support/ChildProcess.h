#ifndef QV_TEST_CHILD_PROCESS_H
#define QV_TEST_CHILD_PROCESS_H

#include <sys/types.h>
#include <sys/wait.h>

#include <string>
#include <utility>
#include <vector>

#include "TempDir.h"

namespace qvtest {

// Copies the built program's run folder (assets, configuration) into dir,
// leaving out the program and any log, so a test can change files freely,
// and writes config as its configuration file.
void prepareRunFolder(const TempDir &dir, const std::string &config);
// The messages of the log a program wrote in its run folder.
std::vector<std::string> runLog(const TempDir &dir);

// The built program (or any executable) started as a separate process in a
// working directory of the test's choosing, its standard error kept in a
// file. The process is killed if it is still running when the object goes.
class ChildProcess {
 public:
  // env: variables to set; a null value unsets the variable.
  ChildProcess(const std::string &program, const std::string &dir,
               const std::vector<std::pair<std::string, const char *>> &env = {});
  ~ChildProcess();
  ChildProcess(const ChildProcess &) = delete;
  ChildProcess &operator=(const ChildProcess &) = delete;

  // Waits until the process catches sig (it has installed a handler).
  bool waitUntilCatching(int sig, int timeout_ms = 10000) const;
  void sendSignal(int sig) const;
  // Waits for the end; false on timeout (the process is then killed).
  bool wait(int timeout_ms = 10000);

  bool exited() const { return m_done && WIFEXITED(m_status); }
  int exitStatus() const { return exited() ? WEXITSTATUS(m_status) : -1; }
  // The signal that ended the process, 0 if it exited.
  int termSignal() const { return m_done && WIFSIGNALED(m_status) ? WTERMSIG(m_status) : 0; }
  std::string stderrText() const;

 private:
  pid_t m_pid = -1;
  bool m_done = false;
  int m_status = 0;  // from waitpid once done
  std::string m_stderr_path;
};

}  // namespace qvtest

#endif
