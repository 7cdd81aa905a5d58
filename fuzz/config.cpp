// A configuration file, then the start-up of what it configures: the log,
// the display (headless: a window per input would be far too slow, but the
// text view is sized all the same) and the world with its collision grid.
#include "core/Config.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "FuzzEngine.h"
#include "core/LogManager.h"
#include "graphics/DisplayManager.h"
#include "world/WorldManager.h"

namespace {

std::string configPath() {
  return "/tmp/qv-fuzz-config-" + std::to_string(getpid()) + ".txt";
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  static const std::string path = configPath();
  static const bool once = [] {
    setenv("QUORVELLE_LOG", "/dev/null", 1);
    setenv("QUORVELLE_CONFIG", path.c_str(), 1);
    return true;
  }();
  (void)once;
  // The first key given wins: the program never opens a window here.
  const std::string file = "headless:true,\n" + qvfuzz::text(data, size);
  std::FILE *p_f = std::fopen(path.c_str(), "wb");
  if (!p_f) std::abort();
  std::fwrite(file.data(), 1, file.size(), p_f);
  std::fclose(p_f);

  qv::Config &config = qv::Config::getInstance();
  config.loadConfig();
  qv::LogManager &log = qv::LogManager::getInstance();
  log.startUp();
  log.setLogLevel(1);
  config.writeConfigToLog();
  qv::DisplayManager &display = qv::DisplayManager::getInstance();
  qv::WorldManager &world = qv::WorldManager::getInstance();
  if (display.startUp() == 0) {
    display.swapBuffers();
    display.shutDown();
  }
  if (world.startUp() == 0) world.shutDown();
  log.shutDown();
  std::remove(path.c_str());
  return 0;
}
