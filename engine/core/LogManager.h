#ifndef QV_LOG_MANAGER_H
#define QV_LOG_MANAGER_H

#include <cstdarg>
#include <cstdio>

#include "core/Manager.h"

namespace qv {

// Writes the diagnostic log: one line per call, prefixed with the time of day
// and the frame number. Before start-up and after shut-down lines go to the
// standard error stream, so logging is always safe.
class LogManager : public Manager {
 public:
  static LogManager &getInstance();
  ~LogManager() override;

  // Opens the log file ("QUORVELLE_LOG", else the configured logfile) and
  // takes the log level from "QUORVELLE_LOG_LEVEL", else the configured
  // log_level.
  int startUp() override;
  void shutDown() override;

  // A levelled line: dropped (returning 0) when message_level exceeds the
  // log level. Returns the message's length, or -1 when a write failed.
  int writeLog(int message_level, const char *fmt, ...) const __attribute__((format(printf, 3, 4)));
  // An unlevelled line: always written.
  int writeLog(const char *fmt, ...) const __attribute__((format(printf, 2, 3)));

  // Flush after every line, so the log survives a crash.
  void setFlush(bool do_flush = true);
  void setLogLevel(int log_level);
  int getLogLevel() const;

 private:
  LogManager();
  int vwrite(int message_level, const char *fmt, va_list args) const;

  bool m_do_flush;         // false: the C library decides when to flush
  int m_log_level;         // 0: only unlevelled lines are written
  bool m_log_time_string;  // true: prefix with the time of day
  bool m_log_step_count;   // true: prefix with the frame number
  std::FILE *m_p_f;        // open log file, null when not started
};

// The local time of day as "HH:MM:SS" in a static buffer each call
// overwrites, or "(time error)".
const char *getTimeString();

}  // namespace qv

#endif
