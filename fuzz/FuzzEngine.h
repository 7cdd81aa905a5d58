#ifndef QV_FUZZ_ENGINE_H
#define QV_FUZZ_ENGINE_H

#include <cstddef>
#include <cstdint>
#include <string>

// What the fuzz targets share: the parts of the engine a target needs,
// started once per process, with the log going nowhere.
namespace qvfuzz {

// The log (to /dev/null), the display and the world; with a window when an
// X display is there (drawing records characters only in a window), else
// headless. A small grid keeps each drawn frame cheap.
void startDisplayAndWorld();
// Also the resource manager, with the sprite "fuzz" (2 frames of 3 x 2,
// slowdown 2) that records may name.
void startResources();

// The input as text.
std::string text(const std::uint8_t *data, std::size_t size);
// One frame of the world: update (moves, collisions, deletions), draw, and
// the swap that shows it and clears the text view.
void worldFrame();

}  // namespace qvfuzz

#endif
