#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <vector>

#include "LogCapture.h"
#include "TempDir.h"
#include "core/Config.h"
#include "core/LogManager.h"

using qvtest::ScopedEnv;

namespace {
qv::LogManager &logManager() {
  return qv::LogManager::getInstance();
}
}  // namespace

// Lines go to standard error while no log file is open, as after a start that
// could not open its file. With flushing on, each line is on disk at once:
// the file is read without flushing the log.
TEST(LogManagerTest, PrefixesLinesUpToTheLevelAndTakesFileAndLevelFromEnvironmentOrConfig) {
  testing::internal::CaptureStderr();
  ScopedEnv unopenable("QUORVELLE_LOG", "/no-such-folder/x.log");
  EXPECT_EQ(logManager().startUp(), -1);
  qvtest::LogCapture log;  // a file that opens, till the end of the test
  logManager().writeLog("before %s", "start");
  ASSERT_TRUE(log.start(5));
  logManager().setFlush(true);
  EXPECT_EQ(
      (std::vector<int>{logManager().writeLog("hello %d", 42), logManager().writeLog("%s", ""),
                        logManager().writeLog(5, "at five"), logManager().writeLog(6, "above five"),
                        logManager().writeLog(-3, "negative")}),
      (std::vector<int>{8, 0, 7, 0, 8}));
  const std::string on_disk = qvtest::readFile(log.path());
  log.stop();
  logManager().writeLog("after stop");
  // Time, a blank, the frame number in four columns, a blank, the message.
  const std::string prefix = "[0-2][0-9]:[0-5][0-9]:[0-6][0-9]    0 ";
  EXPECT_TRUE(std::regex_match(on_disk, std::regex(prefix + "hello 42\n" + prefix + "\n" + prefix +
                                                   "at five\n" + prefix + "negative\n")))
      << on_disk;
  EXPECT_EQ(qvtest::logMessages(testing::internal::GetCapturedStderr()),
            (std::vector<std::string>{
                "LogManager::startup(): Warning! Unable to open file '/no-such-folder/x.log'.",
                "before start", "after stop"}));

  // The file name and level come from the environment, else the
  // configuration. The start and stop lines are level 5. A second start is
  // refused; a full disk fails the write.
  qvtest::TempDir dir;
  const std::string configured = dir.file("configured.log");
  qv::Config::getInstance().loadConfig("logfile:" + configured + ",log_level:7,");
  // QUORVELLE_LOG wins over the configured name.
  ASSERT_EQ(logManager().startUp(), 0);
  EXPECT_EQ(logManager().getLogLevel(), 7);
  log.stop();
  {
    ScopedEnv level("QUORVELLE_LOG_LEVEL", "5");
    ASSERT_EQ(logManager().startUp(), 0);
    EXPECT_EQ(logManager().getLogLevel(), 5);
    log.stop();
  }
  ScopedEnv no_env("QUORVELLE_LOG", nullptr);
  ASSERT_EQ(logManager().startUp(), 0);
  EXPECT_EQ(logManager().startUp(), -1);
  logManager().shutDown();
  EXPECT_EQ(qvtest::logMessages(qvtest::readFile(configured)),
            (std::vector<std::string>{"LogManager::startUp(): successfully started.",
                                      "LogManager::startup(): Warning! LogManager already started.",
                                      "LogManager::shutDown(): successfully stopped."}));
  ScopedEnv full("QUORVELLE_LOG", "/dev/full");
  ASSERT_EQ(logManager().startUp(), 0);
  logManager().setFlush(true);
  EXPECT_EQ(logManager().writeLog("lost"), -1);
}
