#ifndef QV_TEST_ENGINE_FIXTURE_H
#define QV_TEST_ENGINE_FIXTURE_H

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "LogCapture.h"
#include "TempDir.h"

namespace qvtest {

// Starts the engine from a temporary headless configuration with the log in a
// temporary file, and shuts it down after the test. Override config() to
// change settings (the text is in the configuration file format).
class EngineFixture : public ::testing::Test {
 protected:
  // headless:true, networking:false, frame_time:10, random_seed:1.
  virtual std::string config() const;

  void SetUp() override;
  void TearDown() override;

  // Shuts the engine down and starts it again from extra_config followed by
  // config() (the first occurrence of a key wins); the result of
  // GameManager::startUp.
  int restartWith(const std::string &extra_config);
  // Shuts the engine down unless nothing of it is running.
  void stopEngine();

  TempDir dir;
  std::unique_ptr<LogCapture> log;  // the engine's log, readable any time
  std::unique_ptr<ScopedEnv> config_env;
};

// Only the log, started at level 0 and stopped after the test.
class LogFixture : public ::testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  std::unique_ptr<LogCapture> log;
};

}  // namespace qvtest

#endif
