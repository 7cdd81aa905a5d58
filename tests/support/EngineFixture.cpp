#include "EngineFixture.h"

#include "GameManager.h"

namespace qvtest {

std::string EngineFixture::config() const {
  return "headless:true,\nnetworking:false,\nframe_time:10,\nrandom_seed:1,\n";
}

void EngineFixture::SetUp() {
  log = std::make_unique<LogCapture>();
  config_env = std::make_unique<ScopedEnv>(
      "QUORVELLE_CONFIG", dir.write("qv-config.txt", config()).c_str());
  ASSERT_EQ(qv::GameManager::getInstance().startUp(), 0) << log->text();
}

void EngineFixture::TearDown() {
  // Like the program entry, shut down even after a failed start: it stops
  // exactly the managers that did start.
  qv::GameManager::getInstance().shutDown();
  config_env.reset();
  log.reset();
}

void LogFixture::SetUp() {
  log = std::make_unique<LogCapture>();
  ASSERT_TRUE(log->start());
}

void LogFixture::TearDown() { log.reset(); }

}  // namespace qvtest
