#ifndef QV_CONSOLE_H
#define QV_CONSOLE_H

#include <string>
#include <vector>

#include "world/Vector.h"

namespace qv {

// The screen as plain data, with no window behind it: every character drawn
// since the last swap, in drawing order and at its exact pixel position, and
// the text view (one character and colour per grid cell) of that frame and
// of the frame shown before it. The display manager fills it; the renderer
// makes the pixels from the same records the text view is made from.
class Console {
 public:
  // One cell of the text view; blank cells hold ' ' in the background colour.
  struct Cell {
    char ch;
    unsigned char r, g, b;
  };
  // One drawn character; (x, y) is its glyph's top-left corner in pixels.
  struct Char {
    float x, y;
    float angle;  // degrees, about (x, y)
    char ch;
    unsigned char r, g, b;
  };

  Console();

  // Sets the grid and its blank cell: both views blank, the frame empty.
  void resize(int columns, int rows, Cell blank);
  // Records a character drawn at a view position (cells) and pixel position.
  // It takes the text view's cell that holds its top-left corner, if any.
  void put(Vector view_pos, Vector pixel, char ch, unsigned char r, unsigned char g,
           unsigned char b, float angle);
  // The frame drawn becomes the shown one; a blank, empty frame starts.
  // Storage is reused, so a steady game allocates nothing here.
  void swap();

  int getColumns() const;
  int getRows() const;
  // The characters drawn since the last swap, in drawing order.
  const std::vector<Char> &frame() const;
  // Text view of the frame being drawn: one line per row, each ending '\n'.
  std::string text() const;
  // The same for the frame last swapped.
  std::string shownText() const;
  // One cell of the frame being drawn; the blank cell outside the grid.
  Cell cell(int x, int y) const;

 private:
  std::string gridText(const std::vector<Cell> &cells) const;

  int m_columns;                    // 0: cells across
  int m_rows;                       // 0: cells down
  Cell m_blank;                     // ' ' in black
  std::vector<Cell> m_back_cells;   // text view being drawn
  std::vector<Cell> m_front_cells;  // text view last swapped
  std::vector<Char> m_frame;        // characters drawn since the last swap
};

bool operator==(const Console::Char &a, const Console::Char &b);

}  // namespace qv

#endif
