#include "EngineFixture.h"

#include "core/GameManager.h"
#include "core/LogManager.h"
#include "platform/platform.h"

namespace qvtest {

std::string EngineFixture::config() const {
  return "headless:true,\nnetworking:false,\nframe_time:10,\nrandom_seed:1,\n";
}

void EngineFixture::stopEngine() {
  // Like the program entry, shut down even after a failed start: it stops
  // exactly the managers that did start.
  qv::GameManager &game_manager = qv::GameManager::getInstance();
  if (game_manager.isStarted() || qv::LogManager::getInstance().isStarted())
    game_manager.shutDown();
}

void EngineFixture::SetUp() {
  log = std::make_unique<LogCapture>();
  config_env =
      std::make_unique<ScopedEnv>("QUORVELLE_CONFIG", dir.write("qv-config.txt", config()).c_str());
  ASSERT_EQ(qv::GameManager::getInstance().startUp(), 0) << log->text();
}

int EngineFixture::restartWith(const std::string &extra_config) {
  stopEngine();
  dir.write("qv-config.txt", extra_config + config());  // the first key wins
  return qv::GameManager::getInstance().startUp();
}

void EngineFixture::TearDown() {
  stopEngine();
  // A stop signal a test raised must not end the next test's loops.
  qv::platform::clearStopRequest();
  config_env.reset();
  log.reset();
}

void LogFixture::SetUp() {
  log = std::make_unique<LogCapture>();
  ASSERT_TRUE(log->start());
}

void LogFixture::TearDown() {
  log.reset();
}

}  // namespace qvtest
