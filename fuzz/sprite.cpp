// A sprite file in either format (the first line decides), then an object
// wearing the sprite, moved and drawn for a few frames.
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "FuzzEngine.h"
#include "resources/ResourceManager.h"
#include "world/Object.h"
#include "world/WorldManager.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  static const std::string path = "/tmp/qv-fuzz-sprite-" + std::to_string(getpid()) + ".txt";
  qvfuzz::startDisplayAndWorld();
  std::FILE *p_f = std::fopen(path.c_str(), "wb");
  if (!p_f) std::abort();
  std::fwrite(data, 1, size, p_f);
  std::fclose(p_f);

  qv::ResourceManager &resources = qv::ResourceManager::getInstance();
  resources.startUp();
  if (resources.loadSprite(path, "in") == 0) {
    qv::Object *p_object = new qv::Object;
    p_object->setPosition(qv::Vector(12, 4));
    p_object->setSprite("in");
    for (int i = 0; i < 3; i++) qvfuzz::worldFrame();
    qv::WorldManager::getInstance().markForDelete(p_object);
    qv::WorldManager::getInstance().update();
  }
  resources.shutDown();
  std::remove(path.c_str());
  return 0;
}
