// A view object record, as a peer would send it.
#include "FuzzRecord.h"
#include "graphics/ViewObject.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  qvfuzz::fuzzRecord<qv::ViewObject>(data, size);
  return 0;
}
