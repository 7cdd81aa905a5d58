// Drawing one full screen of characters and showing it: the display's cost
// per frame, through the display manager and, as the baseline, character by
// character as an SFML rectangle and text each (how the display drew before
// it gathered characters into vertex arrays). Needs an X display (run under
// xvfb-run -a). Each benchmark runs a fixed number of frames and reports the
// mean and the 99th percentile of the wall-clock time of one frame: most of
// the work happens in the X server and the GL driver, outside this process's
// CPU time.
#include <benchmark/benchmark.h>

#include <SFML/Graphics.hpp>
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "core/Config.h"
#include "graphics/DisplayManager.h"
#include "world/WorldManager.h"

namespace {

const int FRAMES = 400;

// The font wherever the benchmark is run from: the program's folder, the
// build folder (with its run/ copy of the assets) or the source tree.
std::string findFont() {
  for (const char *candidate : {"qv-font.ttf", "run/qv-font.ttf", "assets/qv-font.ttf"})
    if (std::ifstream(candidate)) return candidate;
  return "qv-font.ttf";
}

// The default window of 1024 x 768 pixels and font scale 2, with the grid
// given by the benchmark's arguments (columns, rows).
bool startDisplay(benchmark::State &state) {
  if (!std::getenv("DISPLAY")) {
    state.SkipWithError("no X display: run under xvfb-run -a");
    return false;
  }
  const std::string columns = std::to_string(state.range(0)), rows = std::to_string(state.range(1));
  qv::Config::getInstance().loadConfig("headless:false,font_file:" + findFont() +
                                       ",window_horizontal_chars:" + columns +
                                       ",window_vertical_chars:" + rows + ",");
  qv::WorldManager::getInstance().setView(
      qv::Box(qv::Vector(0, 0), float(state.range(0)), float(state.range(1))));
  if (qv::DisplayManager::getInstance().startUp() != 0) {
    state.SkipWithError("the display did not start");
    return false;
  }
  return true;
}

// The character and colour of a cell; a frame number that changes changes them all.
char charAt(int x, int y, int frame) {
  return static_cast<char>('!' + (x + y + frame) % 94);
}
qv::Color colorAt(int x, int y, int frame) {
  return static_cast<qv::Color>(1 + (x + y + frame) % 7);
}

// The display manager: characters gathered and drawn in runs.
class Batched {
 public:
  void draw(int columns, int rows, int frame) {
    qv::DisplayManager &display = qv::DisplayManager::getInstance();
    for (int y = 0; y < rows; y++)
      for (int x = 0; x < columns; x++)
        display.drawChar(qv::Vector(float(x), float(y)), charAt(x, y, frame), colorAt(x, y, frame),
                         0);
  }
};

// The baseline: each character as its own cell rectangle and glyph text,
// drawn straight onto the display's window.
class CharByChar {
 public:
  CharByChar() : m_cell(sf::Vector2f(qv::charWidth(), qv::charHeight())) {
    m_font.loadFromFile(findFont());
    m_text.setFont(m_font);
    m_text.setStyle(sf::Text::Bold);
    // Font scale 2, as startDisplay leaves it.
    m_text.setCharacterSize(unsigned(2.0f * std::min(qv::charWidth(), qv::charHeight())));
    m_cell.setFillColor(sf::Color::Black);
  }
  void draw(int columns, int rows, int frame) {
    sf::RenderWindow &window = *qv::DisplayManager::getInstance().getWindow();
    for (int y = 0; y < rows; y++)
      for (int x = 0; x < columns; x++) {
        const qv::Vector pixel = qv::spacesToPixels(qv::Vector(float(x), float(y)));
        m_cell.setPosition(pixel.getX() - qv::charWidth() / 10,
                           pixel.getY() + qv::charHeight() / 5);
        window.draw(m_cell);
        m_text.setString(sf::String(charAt(x, y, frame)));
        m_text.setPosition(pixel.getX(), pixel.getY());
        m_text.setFillColor(qv::colorToSFML(colorAt(x, y, frame)));
        window.draw(m_text);
      }
  }

 private:
  sf::Font m_font;
  sf::Text m_text;
  sf::RectangleShape m_cell;
};

// Draws and shows FRAMES frames, each different from the one before unless
// unchanged, timing each; reports the mean and 99th percentile.
template <class Path>
void runFrames(benchmark::State &state, bool unchanged) {
  if (!startDisplay(state)) return;
  qv::DisplayManager &display = qv::DisplayManager::getInstance();
  const int columns = int(state.range(0)), rows = int(state.range(1));
  Path path;
  for (int frame = 0; frame < 2; frame++) {  // glyphs loaded, first picture kept
    path.draw(columns, rows, 0);
    display.swapBuffers();
  }
  std::vector<double> ms;
  ms.reserve(FRAMES);
  int frame = 0;
  for (auto _ : state) {
    const auto start = std::chrono::steady_clock::now();
    path.draw(columns, rows, unchanged ? 0 : ++frame);
    display.swapBuffers();
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    state.SetIterationTime(took.count());
    ms.push_back(took.count() * 1000);
  }
  display.shutDown();
  std::sort(ms.begin(), ms.end());
  double sum = 0;
  for (double m : ms) sum += m;
  state.counters["mean_ms"] = sum / double(ms.size());
  state.counters["p99_ms"] = ms[std::size_t(0.99 * double(ms.size() - 1))];
}

void BM_FrameCharByChar(benchmark::State &state) {
  runFrames<CharByChar>(state, false);
}
void BM_FrameBatched(benchmark::State &state) {
  runFrames<Batched>(state, false);
}
void BM_UnchangedFrameCharByChar(benchmark::State &state) {
  runFrames<CharByChar>(state, true);
}
void BM_UnchangedFrameBatched(benchmark::State &state) {
  runFrames<Batched>(state, true);
}

void grids(benchmark::internal::Benchmark *b) {
  b->Args({80, 24})->Args({160, 48})->ArgNames({"cols", "rows"});
  b->Iterations(FRAMES)->UseManualTime()->Unit(benchmark::kMillisecond);
}
BENCHMARK(BM_FrameCharByChar)->Apply(grids);
BENCHMARK(BM_FrameBatched)->Apply(grids);
BENCHMARK(BM_UnchangedFrameCharByChar)->Apply(grids);
BENCHMARK(BM_UnchangedFrameBatched)->Apply(grids);

}  // namespace
