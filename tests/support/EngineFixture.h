#ifndef QV_TEST_ENGINE_FIXTURE_H
#define QV_TEST_ENGINE_FIXTURE_H

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "LogCapture.h"
#include "TempDir.h"
#include "core/GameManager.h"
#include "core/LogManager.h"
#include "platform/platform.h"

namespace qvtest {

// Starts the engine from a temporary headless configuration with the log in a
// temporary file, and shuts it down after the test. Override config() to
// change settings (the text is in the configuration file format).
class EngineFixture : public ::testing::Test {
 protected:
  // headless:true, networking:false, frame_time:10, random_seed:1.
  virtual std::string config() const {
    return "headless:true,\nnetworking:false,\nframe_time:10,\nrandom_seed:1,"
           "\n";
  }

  void SetUp() override {
    log = std::make_unique<LogCapture>();
    config_env = std::make_unique<ScopedEnv>("QUORVELLE_CONFIG",
                                             dir.write("qv-config.txt", config()).c_str());
    ASSERT_EQ(qv::GameManager::getInstance().startUp(), 0) << log->text();
  }
  void TearDown() override {
    stopEngine();
    // A stop signal a test raised must not end the next test's loops.
    qv::platform::clearStopRequest();
    config_env.reset();
    log.reset();
  }

  // Shuts the engine down and starts it again from extra_config followed by
  // config() (the first occurrence of a key wins); the result of
  // GameManager::startUp.
  int restartWith(const std::string &extra_config) {
    stopEngine();
    dir.write("qv-config.txt", extra_config + config());
    return qv::GameManager::getInstance().startUp();
  }
  // Shuts the engine down unless nothing of it is running: like the program
  // entry, even after a failed start, which stops exactly the managers that
  // did start.
  void stopEngine() {
    if (qv::GameManager::getInstance().isStarted() || qv::LogManager::getInstance().isStarted())
      qv::GameManager::getInstance().shutDown();
  }

  TempDir dir;
  std::unique_ptr<LogCapture> log;  // the engine's log, readable any time
  std::unique_ptr<ScopedEnv> config_env;
};

// Only the log, started at level 0 and stopped after the test.
class LogFixture : public ::testing::Test {
 protected:
  void SetUp() override {
    log = std::make_unique<LogCapture>();
    ASSERT_TRUE(log->start());
  }
  void TearDown() override { log.reset(); }

  std::unique_ptr<LogCapture> log;
};

}  // namespace qvtest

#endif
