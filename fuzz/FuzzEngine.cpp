#include "FuzzEngine.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "core/Config.h"
#include "core/LogManager.h"
#include "graphics/DisplayManager.h"
#include "resources/ResourceManager.h"
#include "world/WorldManager.h"

namespace qvfuzz {

void startDisplayAndWorld() {
  static bool started = false;
  if (started) return;
  started = true;
  setenv("QUORVELLE_LOG", "/dev/null", 1);
  const char *display = std::getenv("DISPLAY");
  const bool window = display != nullptr && display[0] != '\0';
  if (!window) std::fprintf(stderr, "fuzz: no X display, drawing is not exercised\n");
  qv::Config::getInstance().loadConfig(
      std::string(window ? "headless:false," : "headless:true,") +
      "networking:false,window_horizontal_pixels:240,window_vertical_pixels:120,"
      "window_horizontal_chars:24,window_vertical_chars:8,font_scale:1.0,"
      "font_file:" QV_SOURCE_DIR "/assets/qv-font.ttf,");
  qv::LogManager::getInstance().startUp();
  if (qv::DisplayManager::getInstance().startUp() != 0) {
    std::fprintf(stderr, "fuzz: the display did not start\n");
    std::abort();
  }
  qv::WorldManager &world = qv::WorldManager::getInstance();
  world.startUp();
  world.setBoundary(qv::Box(qv::Vector(0, 0), 160, 48));
  world.setView(qv::Box(qv::Vector(0, 0), 24, 8));
}

void startResources() {
  startDisplayAndWorld();
  qv::ResourceManager &resources = qv::ResourceManager::getInstance();
  if (resources.isStarted()) return;
  resources.startUp();
  char path[] = "/tmp/qv-fuzz-sprite-XXXXXX";
  const int fd = mkstemp(path);
  if (fd == -1) std::abort();
  const char sprite[] = "2\n3\n2\n2\ncyan\n.o.\n/#\\\n\\o/\n.#.\n";
  if (write(fd, sprite, sizeof sprite - 1) != static_cast<ssize_t>(sizeof sprite - 1)) std::abort();
  close(fd);
  resources.loadSprite(path, "fuzz");
  unlink(path);
}

std::string text(const std::uint8_t *data, std::size_t size) {
  return std::string(reinterpret_cast<const char *>(data), size);
}

void worldFrame() {
  qv::WorldManager &world = qv::WorldManager::getInstance();
  world.update();
  world.draw();
  qv::DisplayManager::getInstance().swapBuffers();
}

}  // namespace qvfuzz
