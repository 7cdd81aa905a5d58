// An object record, as a peer would send it.
#include "FuzzRecord.h"
#include "world/Object.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  qvfuzz::fuzzRecord<qv::Object>(data, size);
  return 0;
}
