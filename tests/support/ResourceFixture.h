#ifndef QV_TEST_RESOURCE_FIXTURE_H
#define QV_TEST_RESOURCE_FIXTURE_H

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "LogCapture.h"
#include "TempDir.h"
#include "resources/ResourceManager.h"

namespace qvtest {

// Only the log (level 0) and the resource manager, stopped after the test.
class ResourceFixture : public ::testing::Test {
 protected:
  void SetUp() override {
    log = std::make_unique<LogCapture>();
    ASSERT_TRUE(log->start(0));
    ASSERT_EQ(rm().startUp(), 0);
  }
  void TearDown() override {
    if (rm().isStarted()) rm().shutDown();
    log.reset();
  }

  static qv::ResourceManager &rm() { return qv::ResourceManager::getInstance(); }
  // Each of the lines must be in the log.
  void expectLogged(const std::vector<std::string> &lines) const {
    for (const std::string &line : lines) EXPECT_TRUE(log->contains(line)) << line;
  }

  TempDir dir;
  std::unique_ptr<LogCapture> log;
};

}  // namespace qvtest

#endif
