#ifndef QV_TEST_RESOURCE_FIXTURE_H
#define QV_TEST_RESOURCE_FIXTURE_H

#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
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

// Writes a mono 16-bit PCM wave file of `samples` samples of a square wave
// whose half period is `half_period` samples; returns the file name.
inline std::string writeWav(const std::string &file_name, std::uint32_t samples,
                            std::uint32_t half_period = 20, std::uint32_t rate = 8000) {
  std::vector<char> bytes;
  auto put = [&](std::uint32_t value, int size) {
    for (int i = 0; i < size; i++) bytes.push_back(static_cast<char>((value >> (8 * i)) & 0xff));
  };
  auto tag = [&](const char *text) { bytes.insert(bytes.end(), text, text + 4); };
  const std::uint32_t data_size = samples * 2;
  tag("RIFF");
  put(36 + data_size, 4);
  tag("WAVE");
  tag("fmt ");
  put(16, 4);        // format chunk size
  put(1, 2);         // PCM
  put(1, 2);         // one channel
  put(rate, 4);      // samples per second
  put(rate * 2, 4);  // bytes per second
  put(2, 2);         // bytes per frame
  put(16, 2);        // bits per sample
  tag("data");
  put(data_size, 4);
  for (std::uint32_t i = 0; i < samples; i++) put((i / half_period) % 2 ? 0xE000u : 0x2000u, 2);
  std::ofstream(file_name, std::ios::binary).write(bytes.data(), static_cast<long>(bytes.size()));
  return file_name;
}

}  // namespace qvtest

#endif
