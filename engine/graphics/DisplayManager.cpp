#include "graphics/DisplayManager.h"

#include <SFML/Graphics.hpp>
#include <algorithm>
#include <locale>
#include <new>

#include "core/Config.h"
#include "core/LogManager.h"
#include "core/bounds.h"
#include "platform/x11.h"

namespace qv {

namespace {

// A grid needs at least one cell each way: the cell size divides by it.
int checkedCells(const char *where, const char *axis, int cells, int fallback) {
  if (cells >= 1 && cells <= CELLS_MAX) return cells;
  LogManager::getInstance().writeLog("%s: Error! %d cells %s is no grid; using %d instead.", where,
                                     cells, axis, fallback);
  return fallback;
}

// A configured window size of 0 takes the desktop's; a negative one, which
// no window can have, does too after a log line.
int windowPixels(int configured, const char *axis, unsigned int desktop) {
  if (configured > 0) return configured;
  if (configured < 0)
    LogManager::getInstance().writeLog(
        "DisplayManager::startUp(): Error! %d pixels %s is no window size; using the desktop's %u.",
        configured, axis, desktop);
  return static_cast<int>(desktop);
}

}  // namespace

DisplayManager::DisplayManager()
    : m_window_horizontal_pixels(1024),
      m_window_vertical_pixels(768),
      m_window_horizontal_chars(80),
      m_window_vertical_chars(24),
      m_p_font(new sf::Font()),
      m_window_background_color(sf::Color::Black) {
  setType("DisplayManager");
}

DisplayManager::~DisplayManager() = default;

DisplayManager &DisplayManager::getInstance() {
  static DisplayManager display_manager;
  return display_manager;
}

int DisplayManager::startUp() {
  LogManager &log = LogManager::getInstance();
  if (refuseSecondStart()) return -1;

  const Config &config = Config::getInstance();
  m_window_horizontal_pixels = config.getWindowHorizontalPixels();
  m_window_vertical_pixels = config.getWindowVerticalPixels();
  m_window_horizontal_chars =
      checkedCells("DisplayManager::startUp()", "across", config.getWindowHorizontalChars(), 80);
  m_window_vertical_chars =
      checkedCells("DisplayManager::startUp()", "down", config.getWindowVerticalChars(), 24);
  m_window_background_color = colorToSFML(static_cast<Color>(config.getWindowBackgroundColor()));
  resizeScreen();

  if (config.getHeadless()) {
    log.writeLog(1, "DisplayManager::startUp(): no graphics in headless mode.");
    Manager::startUp();
    log.writeLog(5, "DisplayManager::startUp(): successfully started.");
    return 0;
  }

  const platform::DisplayConnection x_server;
  if (!x_server.reachable()) {
    log.writeLog("DisplayManager::startUp(): Error! No window system: %s.", x_server.reason());
    log.writeLog("DisplayManager::startUp(): Unable to allocate window!");
    return -1;
  }

  const sf::VideoMode desktop = sf::VideoMode::getDesktopMode();
  log.writeLog(5, "DisplayManager::startUp(): window resolution (%d, %d) pixels.",
               static_cast<int>(desktop.width), static_cast<int>(desktop.height));
  m_window_horizontal_pixels = windowPixels(m_window_horizontal_pixels, "across", desktop.width);
  m_window_vertical_pixels = windowPixels(m_window_vertical_pixels, "down", desktop.height);

  // SFML 2 has no separate window state: full screen is one more style bit.
  sf::Uint32 style = static_cast<sf::Uint32>(config.getWindowStyle());
  if (config.getWindowState() != 0) style |= sf::Style::Fullscreen;
  const sf::VideoMode mode(static_cast<unsigned int>(m_window_horizontal_pixels),
                           static_cast<unsigned int>(m_window_vertical_pixels), 32);
  m_p_window.reset(new (std::nothrow) sf::RenderWindow(
      mode, sf::String(config.getWindowTitle(), std::locale()), style, sf::ContextSettings()));
  if (!m_p_window || !m_p_window->isOpen()) {
    m_p_window.reset();
    log.writeLog("DisplayManager::startUp(): Unable to allocate window!");
    return -1;
  }
  m_p_window->setMouseCursorVisible(config.getShowMouse());
  m_p_window->setVerticalSyncEnabled(true);

  const std::string font_file = config.getFontFile();
  if (!m_p_font->loadFromFile(font_file)) {
    log.writeLog("DisplayManager::startUp(): Error! Unable to open font from file '%s'.",
                 font_file.c_str());
    return -1;
  }

  // Glyphs are font_scale times the smaller side of a cell, in bold.
  const float size = config.getFontScale() * std::min(charWidth(), charHeight());
  m_renderer.start(*m_p_font, size > 0 ? static_cast<unsigned int>(size) : 0u,
                   m_window_background_color);
  m_renderer.setCellSize(charWidth(), charHeight());

  m_p_window->clear(m_window_background_color);
  Manager::startUp();
  log.writeLog(5, "DisplayManager::startUp(): successfully started.");
  return 0;
}

void DisplayManager::shutDown() {
  if (m_p_window) {
    m_p_window->close();
    m_p_window.reset();
  }
  m_renderer.stop();
  Manager::shutDown();
  LogManager::getInstance().writeLog(5, "DisplayManager::shutDown(): successfully stopped.");
}

int DisplayManager::drawChar(Vector world_pos, char ch, Color color, float angle) {
  if (Config::getInstance().getHeadless()) return -1;
  // CUSTOM and unknown colours have no components of their own: they draw
  // in white, as colorToSFML shows them.
  unsigned char r = 255, g = 255, b = 255;
  colorToRGB(color, r, g, b);
  return drawChar(world_pos, ch, r, g, b, angle);
}

int DisplayManager::drawChar(Vector world_pos, char ch, unsigned char r, unsigned char g,
                             unsigned char b, float angle) {
  if (!isStarted()) {
    LogManager::getInstance().writeLog("%s not started!", getType().c_str());
    return -1;
  }
  if (!m_p_window) return -1;

  const Vector view_pos = worldToView(world_pos);
  const Vector pixel = spacesToPixels(view_pos);

  // Drawn with the rest of its run when the frame is swapped or the window
  // is taken; the console's storage is kept from frame to frame.
  m_console.put(view_pos, pixel, ch, r, g, b, angle);
  return 0;
}

int DisplayManager::drawString(Vector world_pos, std::string str, Justification just, Color color) {
  if (!isStarted()) {
    LogManager::getInstance().writeLog("%s not started!", getType().c_str());
    return -1;
  }
  if (Config::getInstance().getHeadless() || !m_p_window) return -1;

  const int length = static_cast<int>(str.size());
  Vector start = world_pos;
  if (just == CENTER_JUSTIFIED)
    start.setX(start.getX() - static_cast<float>(length / 2));
  else if (just == RIGHT_JUSTIFIED)
    start.setX(start.getX() - static_cast<float>(length));

  unsigned char r = 255, g = 255, b = 255;
  colorToRGB(color, r, g, b);
  for (int i = 0; i < length; i++)
    drawChar(Vector(start.getX() + i, start.getY()), str[static_cast<std::size_t>(i)], r, g, b, 0);
  return 0;
}

int DisplayManager::swapBuffers() {
  if (!isStarted()) {
    LogManager::getInstance().writeLog("%s not started!", getType().c_str());
    return -1;
  }
  if (!m_p_window) return -1;
  flush();
  m_p_window->display();
  m_p_window->clear(m_window_background_color);

  // The text view follows the pixels: the drawn frame is now the shown one,
  // and the back buffer starts blank again.
  m_console.swap();
  m_renderer.startFrame();
  return 0;
}

void DisplayManager::setHorizontalChars(int new_horizontal_chars) {
  flush();  // what was drawn keeps the cells it was drawn with
  m_window_horizontal_chars = checkedCells("DisplayManager::setHorizontalChars()", "across",
                                           new_horizontal_chars, m_window_horizontal_chars);
  m_renderer.setCellSize(charWidth(), charHeight());
  resizeScreen();
}

void DisplayManager::setVerticalChars(int new_vertical_chars) {
  flush();
  m_window_vertical_chars = checkedCells("DisplayManager::setVerticalChars()", "down",
                                         new_vertical_chars, m_window_vertical_chars);
  m_renderer.setCellSize(charWidth(), charHeight());
  resizeScreen();
}

int DisplayManager::getHorizontalChars() const {
  return m_window_horizontal_chars;
}
int DisplayManager::getVerticalChars() const {
  return m_window_vertical_chars;
}
int DisplayManager::getHorizontalPixels() const {
  return m_window_horizontal_pixels;
}
int DisplayManager::getVerticalPixels() const {
  return m_window_vertical_pixels;
}
sf::RenderWindow *DisplayManager::getWindow() {
  flush();
  return m_p_window.get();
}

std::string DisplayManager::screenText() const {
  return m_console.text();
}
std::string DisplayManager::shownText() const {
  return m_console.shownText();
}

DisplayManager::Cell DisplayManager::screenCell(int x, int y) const {
  return m_console.cell(x, y);
}

char DisplayManager::screenChar(int x, int y) const {
  return screenCell(x, y).ch;
}

Color DisplayManager::screenColor(int x, int y) const {
  const Cell cell = screenCell(x, y);
  for (int c = BLACK; c <= WHITE; c++) {
    unsigned char r = 0, g = 0, b = 0;
    colorToRGB(static_cast<Color>(c), r, g, b);
    if (r == cell.r && g == cell.g && b == cell.b) return static_cast<Color>(c);
  }
  return CUSTOM;
}

DisplayManager::Cell DisplayManager::blankCell() const {
  return Cell{' ', m_window_background_color.r, m_window_background_color.g,
              m_window_background_color.b};
}

void DisplayManager::resizeScreen() {
  m_console.resize(m_window_horizontal_chars, m_window_vertical_chars, blankCell());
  m_renderer.startFrame();
}

void DisplayManager::flush() {
  if (m_p_window && m_renderer.hasUndrawn(m_console)) m_renderer.draw(m_console, *m_p_window);
}

float charWidth() {
  const DisplayManager &display = DisplayManager::getInstance();
  return static_cast<float>(display.getHorizontalPixels()) /
         static_cast<float>(display.getHorizontalChars());
}

float charHeight() {
  const DisplayManager &display = DisplayManager::getInstance();
  return static_cast<float>(display.getVerticalPixels()) /
         static_cast<float>(display.getVerticalChars());
}

Vector spacesToPixels(Vector spaces) {
  const Vector pixels(spaces.getX() * charWidth(), spaces.getY() * charHeight());
  LogManager::getInstance().writeLog(30,
                                     "spacesToPixels(int): spaces (%.2f,%.2f) = pixels (%.2f,%.2f)",
                                     spaces.getX(), spaces.getY(), pixels.getX(), pixels.getY());
  return pixels;
}

Vector pixelsToSpaces(Vector pixels) {
  const Vector spaces(pixels.getX() / charWidth(), pixels.getY() / charHeight());
  LogManager::getInstance().writeLog(30,
                                     "pixelsToSpaces(): pixels (%.2f,%.2f) = spaces (%.2f,%.2f)",
                                     pixels.getX(), pixels.getY(), spaces.getX(), spaces.getY());
  return spaces;
}

}  // namespace qv
