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

void copyRunFolder(const std::string &dir) {
  fs::path run(QV_RUN_DIR);
  fs::path program = fs::path(QV_GAME_PATH).filename();
  for (const fs::directory_entry &entry : fs::directory_iterator(run)) {
    fs::path name = entry.path().filename();
    if (name == program || name.extension() == ".log") continue;
    fs::copy(entry.path(), fs::path(dir) / name,
             fs::copy_options::recursive | fs::copy_options::overwrite_existing);
  }
}

ChildProcess::ChildProcess(const std::string &program, const std::string &dir,
                           const std::vector<std::pair<std::string, const char *>> &env)
    : m_stderr_path(dir + "/stderr.txt") {
  m_pid = fork();
  if (m_pid != 0) return;
  // In the child: only async-signal-safe work matters little here, the
  // parent is a single-threaded test.
  if (chdir(dir.c_str()) != 0) _exit(126);
  for (const auto &[name, value] : env) {
    if (value)
      setenv(name.c_str(), value, 1);
    else
      unsetenv(name.c_str());
  }
  int err = open(m_stderr_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
  int null_out = open("/dev/null", O_WRONLY);
  if (err < 0 || null_out < 0) _exit(126);
  dup2(err, STDERR_FILENO);
  dup2(null_out, STDOUT_FILENO);
  // The test's own handlers and mask must not leak into the program.
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  signal(SIGINT, SIG_DFL);
  signal(SIGTERM, SIG_DFL);
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
  auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeout_ms);
  std::string status_file = "/proc/" + std::to_string(m_pid) + "/status";
  while (std::chrono::steady_clock::now() < deadline) {
    std::ifstream status(status_file);
    std::string line;
    while (std::getline(status, line)) {
      if (line.rfind("SigCgt:", 0) != 0) continue;
      unsigned long long caught = std::strtoull(line.c_str() + 7, nullptr, 16);
      if (caught & (1ULL << (sig - 1))) return true;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return false;
}

void ChildProcess::sendSignal(int sig) const {
  kill(m_pid, sig);
}

bool ChildProcess::wait(int timeout_ms) {
  if (m_done) return true;
  auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeout_ms);
  int status = 0;
  while (waitpid(m_pid, &status, WNOHANG) == 0) {
    if (std::chrono::steady_clock::now() > deadline) {
      kill(m_pid, SIGKILL);
      waitpid(m_pid, &status, 0);
      m_done = true;
      return false;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  m_done = true;
  m_exited = WIFEXITED(status);
  m_exit_status = m_exited ? WEXITSTATUS(status) : -1;
  m_term_signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
  return true;
}

std::string ChildProcess::stderrText() const {
  return readFile(m_stderr_path);
}

}  // namespace qvtest
