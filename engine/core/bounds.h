#ifndef QV_BOUNDS_H
#define QV_BOUNDS_H

// The largest values the engine takes from outside: the configuration file,
// sprite files and object records (and so from peers). Each reader refuses a
// value past its bound with a log line and keeps what it had, or clamps it
// where the setting has a default. The bounds keep every later sum, product
// and conversion to int in range, and the memory and time a frame takes in
// proportion to what a screen can show.

namespace qv {

// Cells across or down the window's grid.
constexpr int CELLS_MAX = 1000;
// Window size in pixels, either way.
constexpr int WINDOW_PIXELS_MAX = 16384;
// Glyph size relative to the smaller side of a cell.
constexpr float FONT_SCALE_MIN = 0.1f;
constexpr float FONT_SCALE_MAX = 10.0f;
// Milliseconds per frame.
constexpr int FRAME_TIME_MAX = 10000;

// Width and height of a sprite frame, in cells.
constexpr int SPRITE_SIDE_MAX = CELLS_MAX;
// Frames of one sprite, and the frames an animation waits on each.
constexpr int SPRITE_FRAMES_MAX = 100000;
constexpr int SPRITE_SLOWDOWN_MAX = 100000;

// Every float of a record (coordinates, extents, speeds, shape sizes, path
// nodes, text box sizes) is finite and at most this far from 0, so sums and
// products of two of them stay finite and fit an int.
constexpr float RECORD_FLOAT_MAX = 1e6f;
// A received id (any from 1 up) moves the id counter no further than this,
// so the counter keeps over a billion ids for the objects this copy makes.
constexpr int ID_COUNTER_MAX = 1 << 30;
// A text box from a record is at most this many grids wide and high.
constexpr int TEXT_BOX_GRIDS_MAX = 4;

}  // namespace qv

#endif
