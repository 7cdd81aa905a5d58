#include "ChildProcess.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <thread>

#include "TempDir.h"

namespace fs = std::filesystem;

namespace qvtest {

void prepareRunFolder(const TempDir &dir, const std::string &config) {
  const fs::path program = fs::path(QV_GAME_PATH).filename();
  for (const fs::directory_entry &entry : fs::directory_iterator(QV_RUN_DIR)) {
    const fs::path name = entry.path().filename();
    if (name == program || name.extension() == ".log") continue;
    fs::copy(entry.path(), fs::path(dir.path()) / name,
             fs::copy_options::recursive | fs::copy_options::overwrite_existing);
  }
  dir.write("qv-config.txt", config);
}

std::vector<std::string> runLog(const TempDir &dir) {
  return logMessages(readFile(dir.file("quorvelle.log")));
}

ChildProcess::ChildProcess(const std::string &program, const std::string &dir,
                           const std::vector<std::pair<std::string, const char *>> &env)
    : m_stderr_path(dir + "/stderr.txt") {
  m_pid = fork();
  if (m_pid != 0) return;
  // In the child, up to exec. Handlers do not survive exec, but the mask
  // does, and the test's must not leak into the program.
  if (chdir(dir.c_str()) != 0) _exit(126);
  for (const auto &[name, value] : env) setEnv(name, value);
  dup2(open(m_stderr_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644), STDERR_FILENO);
  dup2(open("/dev/null", O_WRONLY), STDOUT_FILENO);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  execl(program.c_str(), program.c_str(), static_cast<char *>(nullptr));
  _exit(127);
}

ChildProcess::~ChildProcess() {
  if (m_pid > 0 && !m_done) {
    kill(m_pid, SIGKILL);
    waitpid(m_pid, nullptr, 0);
  }
}

bool ChildProcess::waitUntilCatching(int sig, int timeout_ms) const {
  const std::string status_file = "/proc/" + std::to_string(m_pid) + "/status";
  for (int waited = 0; waited < timeout_ms; waited += 5) {
    std::ifstream status(status_file);
    std::string line;
    while (std::getline(status, line))
      if (line.rfind("SigCgt:", 0) == 0 &&
          (std::stoull(line.substr(7), nullptr, 16) >> (sig - 1) & 1))
        return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return false;
}

void ChildProcess::sendSignal(int sig) const {
  kill(m_pid, sig);
}

bool ChildProcess::wait(int timeout_ms) {
  for (int waited = 0; !m_done; waited += 5) {
    m_done = waitpid(m_pid, &m_status, WNOHANG) != 0;
    if (m_done) break;
    if (waited >= timeout_ms) {
      kill(m_pid, SIGKILL);
      m_done = waitpid(m_pid, &m_status, 0) != 0;
      m_status = -1;  // neither exited nor ended by a signal of its own
      return false;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return true;
}

std::string ChildProcess::stderrText() const {
  return readFile(m_stderr_path);
}

}  // namespace qvtest
