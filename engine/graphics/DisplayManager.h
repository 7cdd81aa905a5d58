#ifndef QV_DISPLAY_MANAGER_H
#define QV_DISPLAY_MANAGER_H

#include <SFML/Graphics/Color.hpp>
#include <memory>
#include <string>

#include "core/Manager.h"
#include "core/utility.h"
#include "graphics/Console.h"
#include "graphics/ConsoleRenderer.h"
#include "world/Vector.h"

namespace sf {
class Font;
class RenderWindow;
}  // namespace sf

namespace qv {

enum Justification : int {
  LEFT_JUSTIFIED = 0,    // the string starts at the position
  CENTER_JUSTIFIED = 1,  // the middle character (length / 2) is at the position
  RIGHT_JUSTIFIED = 2,   // the string ends one cell left of the position
};

// Owns the window, the font and the drawing of the character grid: every
// visible thing ends up as single characters drawn here, each on its own
// background-coloured cell. In headless mode there is no window and every
// draw returns -1.
//
// Characters are recorded in a console (plain data) and drawn from it in
// batches: when the frame is swapped, and whenever someone takes the window
// to draw on it or read it, so everything lands in the order it was drawn.
// The console also gives a text view of the screen: one cell (character and
// colour) per grid cell, so a whole screen can be checked as text. It shows
// the frame being drawn (the back buffer, since the last swapBuffers);
// shownText() gives the frame last swapped onto the window. Only characters
// that really reach the window are recorded, so in headless mode the view
// stays blank.
class DisplayManager : public Manager {
 public:
  // One cell of the text view; blank cells hold ' ' in the background colour.
  using Cell = Console::Cell;

  static DisplayManager &getInstance();
  ~DisplayManager() override;

  // Opens the window and font from the configuration and readies the
  // character drawing; in headless mode only marks the manager started.
  int startUp() override;
  // Closes and frees the window; the font stays.
  void shutDown() override;

  // Draws one character with its top-left corner at a world position (cells).
  int drawChar(Vector world_pos, char ch, Color color, float angle);
  int drawChar(Vector world_pos, char ch, unsigned char r, unsigned char g, unsigned char b,
               float angle);
  // Draws a string along a row; the result of each character is not examined.
  int drawString(Vector world_pos, std::string str, Justification just, Color color);
  // Shows what was drawn and clears the back buffer to the background colour.
  int swapBuffers();

  // Change the grid (cells across or down): the cell size and all later
  // pixel conversions follow; the glyph size and the window do not. Values
  // below 1 or above CELLS_MAX are refused with a log line.
  void setHorizontalChars(int new_horizontal_chars);
  void setVerticalChars(int new_vertical_chars);

  int getHorizontalChars() const;
  int getVerticalChars() const;
  int getHorizontalPixels() const;
  int getVerticalPixels() const;
  // The window, or null before startUp, in headless mode and after shutDown.
  // The characters drawn so far are on it first, so what is drawn on it next
  // lands over them and what is read from it shows them.
  sf::RenderWindow *getWindow();

  // Text view of the back buffer: one line per grid row, each ending in '\n'.
  std::string screenText() const;
  // The same for the frame last swapped onto the window.
  std::string shownText() const;
  // One cell of the back buffer; a blank cell outside the grid.
  Cell screenCell(int x, int y) const;
  char screenChar(int x, int y) const;
  // The engine colour of a back-buffer cell; CUSTOM when its components match
  // none of the eight named colours.
  Color screenColor(int x, int y) const;

 private:
  DisplayManager();
  DisplayManager(const DisplayManager &) = delete;
  DisplayManager &operator=(const DisplayManager &) = delete;

  Cell blankCell() const;
  void resizeScreen();
  // Draws the characters recorded and not drawn yet onto the window.
  void flush();

  std::unique_ptr<sf::RenderWindow> m_p_window;  // null: no window
  int m_window_horizontal_pixels;                // 1024: window width
  int m_window_vertical_pixels;                  // 768: window height
  int m_window_horizontal_chars;                 // 80: cells across
  int m_window_vertical_chars;                   // 24: cells down
  std::unique_ptr<sf::Font> m_p_font;            // empty font until startUp
  sf::Color m_window_background_color;           // opaque black: clear and cell colour
  Console m_console;                             // the characters of the frame, as data
  ConsoleRenderer m_renderer;                    // draws them; idle without a window
};

// Cell size in pixels, from the display manager's current pixel and cell counts.
float charWidth();
float charHeight();
// Conversions between cells and window pixels; neither rounds.
Vector spacesToPixels(Vector spaces);
Vector pixelsToSpaces(Vector pixels);

}  // namespace qv

#endif
