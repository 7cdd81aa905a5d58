#include "core/LogManager.h"

#include <cstdarg>
#include <cstdlib>
#include <ctime>
#include <string>

#include "core/Config.h"
#include "core/GameManager.h"

namespace qv {

LogManager::LogManager()
    : m_do_flush(false),
      m_log_level(0),
      m_log_time_string(true),
      m_log_step_count(true),
      m_p_f(nullptr) {
  setType("LogManager");
}

LogManager::~LogManager() {
  if (m_p_f) std::fclose(m_p_f);
}

LogManager &LogManager::getInstance() {
  static LogManager log_manager;
  return log_manager;
}

int LogManager::startUp() {
  if (refuseSecondStart()) return -1;
  const char *env_name = std::getenv("QUORVELLE_LOG");
  std::string file_name = env_name ? env_name : Config::getInstance().getLogfile();
  m_p_f = std::fopen(file_name.c_str(), "w");
  if (!m_p_f) {
    writeLog("LogManager::startup(): Warning! Unable to open file '%s'.", file_name.c_str());
    return -1;
  }
  // The level can be raised without recompiling: the environment wins over
  // the configuration file, as it does for the file name.
  const char *env_level = std::getenv("QUORVELLE_LOG_LEVEL");
  if (env_level && *env_level)
    m_log_level = std::atoi(env_level);
  else
    m_log_level = Config::getInstance().getLogLevel();
  Manager::startUp();
  writeLog(5, "LogManager::startUp(): successfully started.");
  return 0;
}

void LogManager::shutDown() {
  Manager::shutDown();
  writeLog(5, "LogManager::shutDown(): successfully stopped.");
  if (m_p_f) {
    std::fclose(m_p_f);
    m_p_f = nullptr;
  }
}

int LogManager::vwrite(int message_level, const char *fmt, va_list args) const {
  if (message_level > m_log_level) return 0;
  std::FILE *out = m_p_f ? m_p_f : stderr;
  bool failed = false;
  if (m_log_time_string && std::fprintf(out, "%s ", getTimeString()) < 0) failed = true;
  if (m_log_step_count && std::fprintf(out, "%4d ", GameManager::getInstance().getStepCount()) < 0)
    failed = true;
  int written = std::vfprintf(out, fmt, args);
  if (written < 0) failed = true;
  if (std::fputc('\n', out) == EOF) failed = true;
  // With flushing on, a full disk shows up here rather than at a later line.
  if (m_do_flush && std::fflush(out) != 0) failed = true;
  return failed ? -1 : written;
}

int LogManager::writeLog(int message_level, const char *fmt, ...) const {
  va_list args;
  va_start(args, fmt);
  int result = vwrite(message_level, fmt, args);
  va_end(args);
  return result;
}

int LogManager::writeLog(const char *fmt, ...) const {
  va_list args;
  va_start(args, fmt);
  int result = vwrite(m_log_level, fmt, args);
  va_end(args);
  return result;
}

void LogManager::setFlush(bool do_flush) {
  m_do_flush = do_flush;
}

void LogManager::setLogLevel(int log_level) {
  m_log_level = log_level;
}

int LogManager::getLogLevel() const {
  return m_log_level;
}

const char *getTimeString() {
  static char time_str[30];
  std::time_t now = std::time(nullptr);
  std::tm local{};
  if (now == static_cast<std::time_t>(-1) || !localtime_r(&now, &local)) return "(time error)";
  std::snprintf(time_str, sizeof time_str, "%02d:%02d:%02d", local.tm_hour, local.tm_min,
                local.tm_sec);
  return time_str;
}

}  // namespace qv
