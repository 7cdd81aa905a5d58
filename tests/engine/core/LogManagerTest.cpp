#include <gtest/gtest.h>

#include <regex>
#include <string>

#include "LogCapture.h"
#include "TempDir.h"
#include "core/Config.h"
#include "core/GameManager.h"
#include "core/LogManager.h"

using qvtest::LogCapture;
using qvtest::ScopedEnv;
using qvtest::TempDir;

namespace {
qv::LogManager &logManager() {
  return qv::LogManager::getInstance();
}

// The frame-number column as the log writes it now ("   0" in a fresh process).
std::string frameColumn() {
  char column[16];
  std::snprintf(column, sizeof column, "%4d", qv::GameManager::getInstance().getStepCount());
  return column;
}
}  // namespace

TEST(LogManagerTest, PrefixesEveryLineWithLocalTimeAndFrameNumberUpToTheLogLevel) {
  LogCapture log;
  ASSERT_TRUE(log.start());
  EXPECT_EQ(logManager().writeLog("hello %d", 42), 8);
  EXPECT_EQ(logManager().writeLog("%s", ""), 0);
  EXPECT_EQ(logManager().writeLog(1, "dropped"), 0);
  logManager().setLogLevel(5);
  EXPECT_EQ(logManager().writeLog(5, "at five"), 7);
  EXPECT_EQ(logManager().writeLog(6, "above five"), 0);
  EXPECT_EQ(logManager().writeLog(-3, "negative"), 8);
  logManager().setLogLevel(0);
  log.stop();
  // Time, a blank, the frame number in four columns, a blank, the message.
  std::string prefix = "[0-2][0-9]:[0-5][0-9]:[0-6][0-9] " + frameColumn() + " ";
  EXPECT_TRUE(
      std::regex_match(log.text(), std::regex(prefix + "hello 42\n" + prefix + "\n" + prefix +
                                              "at five\n" + prefix + "negative\n")))
      << log.text();
  std::string now = qv::getTimeString();
  std::time_t t = std::time(nullptr);
  std::tm local{};
  localtime_r(&t, &local);
  EXPECT_EQ(std::stoi(now.substr(0, 2)), local.tm_hour) << now;
}

TEST(LogManagerTest, WritesToStandardErrorBeforeStartAndAfterStop) {
  LogCapture log;
  testing::internal::CaptureStderr();
  logManager().writeLog("before %s", "start");
  ASSERT_TRUE(log.start());
  logManager().writeLog("in file");
  log.stop();
  logManager().writeLog("after stop");
  std::string err = testing::internal::GetCapturedStderr();
  EXPECT_EQ(qvtest::logMessages(err), (std::vector<std::string>{"before start", "after stop"}));
  EXPECT_TRUE(
      std::regex_search(err, std::regex("^[0-9:]{8} " + frameColumn() + " before start\n")));
  EXPECT_EQ(log.messages(), std::vector<std::string>{"in file"});
}

TEST(LogManagerTest, StartRefusesSecondStartAndUnopenableFile) {
  {
    LogCapture log;
    ASSERT_TRUE(log.start());
    EXPECT_EQ(logManager().startUp(), -1);
    EXPECT_TRUE(logManager().isStarted());
    EXPECT_TRUE(log.contains("LogManager::startup(): Warning! LogManager already started."));
  }
  TempDir dir;
  std::string bad = dir.file("no-such-folder/x.log");
  ScopedEnv env("QUORVELLE_LOG", bad.c_str());
  testing::internal::CaptureStderr();
  EXPECT_EQ(logManager().startUp(), -1);
  std::string err = testing::internal::GetCapturedStderr();
  EXPECT_FALSE(logManager().isStarted());
  EXPECT_EQ(qvtest::logMessages(err),
            std::vector<std::string>{"LogManager::startup(): Warning! Unable to open file '" + bad +
                                     "'."});
}

TEST(LogManagerTest, FileNameAndLevelComeFromEnvironmentElseConfiguration) {
  TempDir dir;
  std::string configured = dir.file("configured.log");
  qv::Config::getInstance().loadConfig("logfile:" + configured + ",log_level:7,");
  LogCapture log;  // QUORVELLE_LOG wins over the configured name
  ASSERT_EQ(logManager().startUp(), 0);
  EXPECT_EQ(logManager().getLogLevel(), 7);
  logManager().writeLog("to the environment's file");
  log.stop();
  EXPECT_TRUE(log.contains("to the environment's file"));
  {
    ScopedEnv level("QUORVELLE_LOG_LEVEL", "5");
    ASSERT_EQ(logManager().startUp(), 0);
    EXPECT_EQ(logManager().getLogLevel(), 5);
    log.stop();
  }
  // The start and stop lines are level 5, so they show at 5.
  EXPECT_EQ(log.messages(),
            (std::vector<std::string>{"LogManager::startUp(): successfully started.",
                                      "LogManager::shutDown(): successfully stopped."}));
  EXPECT_EQ(qvtest::readFile(configured), "");
  qv::Config::getInstance().loadConfig("logfile:" + configured + ",");
  {
    ScopedEnv no_env("QUORVELLE_LOG", nullptr);
    for (const char *run : {"first run", "second run"}) {
      ASSERT_EQ(logManager().startUp(), 0);
      logManager().writeLog("%s", run);
      logManager().shutDown();
    }
  }
  // A new start truncates the previous log.
  EXPECT_EQ(qvtest::logMessages(qvtest::readFile(configured)),
            std::vector<std::string>{"second run"});
  qv::Config::getInstance().loadConfig("frame_time:33,");
}

TEST(LogManagerTest, FlushPutsEachLineOnDiskAndReportsWriteErrors) {
  LogCapture log;
  ASSERT_TRUE(log.start());
  logManager().setFlush(true);
  logManager().writeLog("flushed");
  // Read with a separate stream, without flushing the log's own.
  EXPECT_EQ(qvtest::logMessages(qvtest::readFile(log.path())), std::vector<std::string>{"flushed"});
  log.stop();

  ScopedEnv full("QUORVELLE_LOG", "/dev/full");
  ASSERT_EQ(logManager().startUp(), 0);
  logManager().setFlush(true);
  EXPECT_EQ(logManager().writeLog("lost"), -1);
  log.stop();
}
