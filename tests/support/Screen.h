#ifndef QV_TEST_SCREEN_H
#define QV_TEST_SCREEN_H

#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "XSession.h"
#include "core/utility.h"

namespace qvtest {

// A pixel's ink: the engine colour of a glyph's bright core, each bright
// channel adding its bit as the engine numbers its colours (red 1, green 2,
// blue 4); BLACK for the background and the glyphs' soft edges.
int inkOf(std::uint32_t rgb);

// A text as the engine draws it, from every start that falls differently on
// the pixels. Texts start at whole cells and at thirds and halves of one
// (labels are centred on sixths of the screen, text boxes on their middle);
// on whole cells the pixels repeat every few cells (five cells of 12.8
// pixels are 64).
struct ScreenText {
  static const int SIXTHS = 6;
  static const std::size_t MAX_LENGTH = 64;

  // The text drawn from one start: its ink over the pixel box of its cells.
  struct Drawing {
    int left = 0, width = 0, height = 0;  // the box in the picture it was drawn in
    std::vector<std::uint8_t> ink;        // row by row, 1 for ink of the text's colour
    std::vector<int> points;              // where ink is, as y * width + x
    std::vector<int> cell_of;             // for each pixel column, the cell it lies in
    std::vector<int> cell_points;         // ink per cell
  };

  std::string text;
  qv::Color colour = qv::WHITE;
  float cell_width = 0;           // of the grid it was drawn in
  int phases = 0;                 // starts on whole cells that fall differently
  std::vector<Drawing> drawings;  // [phase * SIXTHS + sixth]
};

// Draws each text from each start with the engine's own display, in a window
// opened from config_text with a grid of columns x rows (as a program sets it
// up), and keeps where its ink falls; the display is shut down again. Empty
// if the display does not start.
std::vector<ScreenText> drawTexts(const std::string &config_text, int columns, int rows,
                                  const std::vector<std::pair<std::string, qv::Color>> &texts);

// A picture of a window with a grid of character cells, read as a person
// reads it: the colours of the ink in a part of it, and texts.
class Screen {
 public:
  Screen(const Picture &picture, int columns, int rows);

  bool empty() const { return m_ink.empty(); }
  float cellWidth() const { return m_cell_width; }

  // Ink of each colour in a box of cells (whole or fractional; the far edges
  // not included).
  std::array<int, 8> inkIn(float x0, float y0, float x1, float y1) const;
  // Whether the text stands anywhere on the screen, at a whole or half row;
  // never for a text drawn on cells of another width.
  bool shows(const ScreenText &text) const;
  // How many pixels of a box of cells differ in ink from another picture's.
  int differences(const Screen &other, float x0, float y0, float x1, float y1) const;

 private:
  std::size_t index(int x, int y) const;
  bool showsAt(const ScreenText::Drawing &drawing, qv::Color colour, int left, int top) const;

  int m_width, m_height, m_columns, m_rows;
  float m_cell_width, m_cell_height;
  std::vector<std::uint8_t> m_ink;  // an engine colour per pixel
};

}  // namespace qvtest

#endif
