// A text box record, as a peer would send it.
#include "FuzzRecord.h"
#include "graphics/TextBox.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  qvfuzz::fuzzRecord<qv::TextBox>(data, size);
  return 0;
}
