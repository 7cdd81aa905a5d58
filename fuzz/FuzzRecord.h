#ifndef QV_FUZZ_RECORD_H
#define QV_FUZZ_RECORD_H

#include <cstddef>
#include <cstdint>
#include <sstream>

#include "FuzzEngine.h"
#include "core/LogManager.h"
#include "world/WorldManager.h"

namespace qvfuzz {

// Reads the input as one record into a fresh object of class T, lets the
// world move and draw it for a few frames (several values do harm only once
// used), then writes it out and reads that into a second object. The first
// byte chooses the log level: odd traces every attribute (level 25).
template <class T>
void fuzzRecord(const std::uint8_t *data, std::size_t size) {
  startResources();
  if (size == 0) return;
  qv::LogManager::getInstance().setLogLevel((data[0] & 1) ? 25 : 0);
  std::stringstream record(text(data + 1, size - 1));
  T *p_object = new T;
  p_object->deserialize(&record, nullptr);
  for (int i = 0; i < 3; i++) worldFrame();

  std::stringstream again;
  p_object->serialize(&again, 0);
  T *p_copy = new T;
  p_copy->deserialize(&again, nullptr);
  worldFrame();

  qv::WorldManager &world = qv::WorldManager::getInstance();
  world.markForDelete(p_object);
  world.markForDelete(p_copy);
  world.update();
}

}  // namespace qvfuzz

#endif
