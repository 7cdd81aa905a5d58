#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <vector>

#include "LogCapture.h"
#include "TempDir.h"
#include "core/Config.h"
#include "core/LogManager.h"

using qvtest::LogCapture;
using qvtest::ScopedEnv;

namespace {
qv::LogManager &logManager() {
  return qv::LogManager::getInstance();
}
}  // namespace

// Lines go to standard error while no log file is open. With flushing on,
// each line is on disk at once: the file is read without flushing the log.
TEST(LogManagerTest, PrefixesEveryLineWithTimeAndFrameNumberUpToTheLogLevel) {
  LogCapture log;
  testing::internal::CaptureStderr();
  logManager().writeLog("before %s", "start");
  ASSERT_TRUE(log.start(5));
  logManager().setFlush(true);
  EXPECT_EQ(logManager().writeLog("hello %d", 42), 8);
  EXPECT_EQ(logManager().writeLog("%s", ""), 0);
  EXPECT_EQ(logManager().writeLog(5, "at five"), 7);
  EXPECT_EQ(logManager().writeLog(6, "above five"), 0);
  EXPECT_EQ(logManager().writeLog(-3, "negative"), 8);
  const std::string on_disk = qvtest::readFile(log.path());
  log.stop();
  logManager().writeLog("after stop");
  const std::string err = testing::internal::GetCapturedStderr();
  // Time, a blank, the frame number in four columns, a blank, the message.
  const std::string prefix = "[0-2][0-9]:[0-5][0-9]:[0-6][0-9]    0 ";
  EXPECT_TRUE(std::regex_match(on_disk, std::regex(prefix + "hello 42\n" + prefix + "\n" + prefix +
                                                   "at five\n" + prefix + "negative\n")))
      << on_disk;
  EXPECT_TRUE(
      std::regex_match(err, std::regex(prefix + "before start\n" + prefix + "after stop\n")))
      << err;
}

TEST(LogManagerTest, StartRefusesASecondStartAndAnUnopenableFileAndWritesReportErrors) {
  {
    LogCapture log;
    ASSERT_TRUE(log.start());
    EXPECT_EQ(logManager().startUp(), -1);
    EXPECT_TRUE(logManager().isStarted());
    EXPECT_TRUE(log.contains("LogManager::startup(): Warning! LogManager already started."));
  }
  {
    ScopedEnv env("QUORVELLE_LOG", "/no-such-folder/x.log");
    testing::internal::CaptureStderr();
    EXPECT_EQ(logManager().startUp(), -1);
    EXPECT_FALSE(logManager().isStarted());
    EXPECT_EQ(qvtest::logMessages(testing::internal::GetCapturedStderr()),
              std::vector<std::string>{
                  "LogManager::startup(): Warning! Unable to open file '/no-such-folder/x.log'."});
  }
  ScopedEnv full("QUORVELLE_LOG", "/dev/full");
  ASSERT_EQ(logManager().startUp(), 0);
  logManager().setFlush(true);
  EXPECT_EQ(logManager().writeLog("lost"), -1);
  logManager().shutDown();
}

TEST(LogManagerTest, FileNameAndLevelComeFromTheEnvironmentElseTheConfiguration) {
  qvtest::TempDir dir;
  const std::string configured = dir.file("configured.log");
  qv::Config::getInstance().loadConfig("logfile:" + configured + ",log_level:7,");
  LogCapture log;  // QUORVELLE_LOG wins over the configured name
  ASSERT_EQ(logManager().startUp(), 0);
  EXPECT_EQ(logManager().getLogLevel(), 7);
  log.stop();
  {
    ScopedEnv level("QUORVELLE_LOG_LEVEL", "5");
    ASSERT_EQ(logManager().startUp(), 0);
    EXPECT_EQ(logManager().getLogLevel(), 5);
    log.stop();
  }
  // The start and stop lines are level 5; the second start emptied the file.
  EXPECT_EQ(log.messages(),
            (std::vector<std::string>{"LogManager::startUp(): successfully started.",
                                      "LogManager::shutDown(): successfully stopped."}));
  // Without the variable, the configured file; a new start truncates it.
  ScopedEnv no_env("QUORVELLE_LOG", nullptr);
  ASSERT_EQ(logManager().startUp(), 0);
  logManager().shutDown();
  EXPECT_EQ(qvtest::logMessages(qvtest::readFile(configured)), log.messages());
}
