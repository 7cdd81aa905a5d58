// Drawing one full screen of characters and showing it: the display's cost
// per frame. Needs an X display (run under xvfb-run -a).
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <string>

#include "core/Config.h"
#include "graphics/DisplayManager.h"
#include "world/WorldManager.h"

namespace {

const int COLUMNS = 80;
const int ROWS = 24;

// The font wherever the benchmark is run from: the program's folder, the
// build folder (with its run/ copy of the assets) or the source tree.
std::string findFont() {
  for (const char *candidate : {"qv-font.ttf", "run/qv-font.ttf", "assets/qv-font.ttf"})
    if (std::ifstream(candidate)) return candidate;
  return "qv-font.ttf";
}

// The default window: 1024 x 768 pixels, 80 x 24 cells, font scale 2.
bool startDisplay(benchmark::State &state) {
  if (!std::getenv("DISPLAY")) {
    state.SkipWithError("no X display: run under xvfb-run -a");
    return false;
  }
  qv::Config::getInstance().loadConfig("headless:false,font_file:" + findFont() + ",");
  qv::WorldManager::getInstance().setView(qv::Box(qv::Vector(0, 0), COLUMNS, ROWS));
  if (qv::DisplayManager::getInstance().startUp() != 0) {
    state.SkipWithError("the display did not start");
    return false;
  }
  return true;
}

// Figures per frame in wall-clock time: most of the work happens in the X
// server and the GL driver, outside this process's CPU time.
void report(benchmark::State &state, std::chrono::steady_clock::time_point start) {
  const double ms =
      std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
  const double frames = static_cast<double>(state.iterations());
  state.counters["ms_per_frame"] = ms / frames;
  state.counters["cells_per_ms"] = COLUMNS * ROWS * frames / ms;
  qv::DisplayManager::getInstance().shutDown();
}

void BM_DisplayFullScreenChars(benchmark::State &state) {
  if (!startDisplay(state)) return;
  qv::DisplayManager &display = qv::DisplayManager::getInstance();
  const auto start = std::chrono::steady_clock::now();
  for (auto _ : state) {
    for (int y = 0; y < ROWS; y++)
      for (int x = 0; x < COLUMNS; x++)
        display.drawChar(qv::Vector(float(x), float(y)), char('!' + (x + y) % 94),
                         static_cast<qv::Color>(1 + (x + y) % 7), 0);
    display.swapBuffers();
  }
  report(state, start);
}
BENCHMARK(BM_DisplayFullScreenChars)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_DisplayFullScreenStrings(benchmark::State &state) {
  if (!startDisplay(state)) return;
  qv::DisplayManager &display = qv::DisplayManager::getInstance();
  std::string row;
  for (int x = 0; x < COLUMNS; x++) row += char('A' + x % 26);
  const auto start = std::chrono::steady_clock::now();
  for (auto _ : state) {
    for (int y = 0; y < ROWS; y++)
      display.drawString(qv::Vector(0, float(y)), row, qv::LEFT_JUSTIFIED, qv::GREEN);
    display.swapBuffers();
  }
  report(state, start);
}
BENCHMARK(BM_DisplayFullScreenStrings)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
