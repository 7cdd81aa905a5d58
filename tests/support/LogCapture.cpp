#include "LogCapture.h"

#include <algorithm>
#include <cstdio>

#include "core/LogManager.h"

namespace qvtest {

LogCapture::LogCapture()
    : m_path(m_dir.file("test.log")),
      m_log_env("QUORVELLE_LOG", m_path.c_str()),
      m_level_env("QUORVELLE_LOG_LEVEL", nullptr) {
}

LogCapture::~LogCapture() {
  stop();
}

bool LogCapture::start(int log_level) {
  qv::LogManager &log = qv::LogManager::getInstance();
  if (log.startUp() != 0) return false;
  log.setLogLevel(log_level);
  return true;
}

void LogCapture::stop() {
  qv::LogManager &log = qv::LogManager::getInstance();
  if (log.isStarted()) log.shutDown();
  log.setLogLevel(0);
  log.setFlush(false);
}

std::string LogCapture::text() const {
  std::fflush(nullptr);
  return readFile(m_path);
}

std::vector<std::string> LogCapture::messages() const {
  return logMessages(text());
}

bool LogCapture::contains(const std::string &message) const {
  return count(message) > 0;
}

int LogCapture::count(const std::string &message) const {
  std::vector<std::string> all = messages();
  return static_cast<int>(std::count(all.begin(), all.end(), message));
}

}  // namespace qvtest
