// Drawing one full screen of characters and showing it: the display's cost
// per frame, through the display manager and, as the baseline, character by
// character as an SFML rectangle and text each (how the display drew before
// it gathered characters into vertex arrays). Needs an X display (run under
// xvfb-run -a). Each benchmark runs a fixed number of frames of both and
// reports the mean and the 99th percentile of the wall-clock time of one
// frame, and the mean CPU time of the process per frame.
#include <benchmark/benchmark.h>

#include <SFML/Graphics.hpp>
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <ctime>
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

// Times of single frames, in milliseconds: wall clock, and CPU time of
// the whole process (the GL driver draws on threads of its own).
class FrameTimes {
 public:
  FrameTimes() {
    m_wall.reserve(FRAMES);
    m_cpu.reserve(FRAMES);
  }
  // Draws and shows one frame through draw, timing it; returns the wall time in seconds.
  template <class Draw>
  double time(Draw draw) {
    const auto start = std::chrono::steady_clock::now();
    const std::clock_t cpu_start = std::clock();
    draw();
    qv::DisplayManager::getInstance().swapBuffers();
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    m_wall.push_back(took.count() * 1000);
    m_cpu.push_back(1000.0 * double(std::clock() - cpu_start) / CLOCKS_PER_SEC);
    return took.count();
  }
  // Mean and 99th percentile of the wall times, mean of the CPU times.
  void report(benchmark::State &state, const std::string &name) {
    std::sort(m_wall.begin(), m_wall.end());
    state.counters[name + "_mean_ms"] = mean(m_wall);
    state.counters[name + "_p99_ms"] = m_wall[std::size_t(0.99 * double(m_wall.size() - 1))];
    state.counters[name + "_cpu_ms"] = mean(m_cpu);
  }
  double meanWall() const { return mean(m_wall); }

 private:
  static double mean(const std::vector<double> &v) {
    double sum = 0;
    for (double x : v) sum += x;
    return v.empty() ? 0 : sum / double(v.size());
  }
  std::vector<double> m_wall, m_cpu;
};

// FRAMES frames through each path, alternating so that both see the same
// load on a shared machine; each frame differs from the one before unless
// the benchmark's third argument says unchanged. The benchmark's own time is
// the display manager's.
void BM_DisplayFrame(benchmark::State &state) {
  if (!startDisplay(state)) return;
  const int columns = int(state.range(0)), rows = int(state.range(1));
  const bool unchanged = state.range(2) != 0;
  Batched batched;
  CharByChar char_by_char;
  for (int frame = 0; frame < 2; frame++) {  // glyphs loaded, first picture kept
    char_by_char.draw(columns, rows, 0);
    qv::DisplayManager::getInstance().swapBuffers();
    batched.draw(columns, rows, 0);
    qv::DisplayManager::getInstance().swapBuffers();
  }
  FrameTimes old_times, new_times;
  int frame = 0;
  for (auto _ : state) {
    const int shown = unchanged ? 0 : ++frame;
    old_times.time([&] { char_by_char.draw(columns, rows, shown); });
    state.SetIterationTime(new_times.time([&] { batched.draw(columns, rows, shown); }));
  }
  qv::DisplayManager::getInstance().shutDown();
  old_times.report(state, "charbychar");
  new_times.report(state, "batched");
  state.counters["speedup"] = old_times.meanWall() / new_times.meanWall();
}
BENCHMARK(BM_DisplayFrame)
    ->ArgNames({"cols", "rows", "unchanged"})
    ->Args({80, 24, 0})
    ->Args({160, 48, 0})
    ->Args({80, 24, 1})
    ->Args({160, 48, 1})
    ->Iterations(FRAMES)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace
