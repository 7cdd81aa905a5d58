// Frame pacing of the real frame loop: a headless engine runs 300 frames at
// 33 ms; an object interested in the step event stamps the start of each
// frame. Reports the mean and 99th-percentile frame length and the process's
// CPU use over the run (the loop should sleep, not spin).

#include "core/FramePacing.h"

#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <numeric>
#include <string>
#include <vector>

#include "core/EventStep.h"
#include "core/GameManager.h"
#include "platform/platform.h"
#include "world/Object.h"

namespace {

const int FRAMES = 300;

// Stamps each step event and ends the loop after FRAMES whole frames.
class FrameStamper : public qv::Object {
 public:
  explicit FrameStamper(std::vector<std::int64_t> *p_stamps) : m_p_stamps(p_stamps) {
    setType("FrameStamper");
    registerInterest(qv::STEP_EVENT);
  }
  int eventHandler(const qv::Event *p_e) override {
    if (p_e->getType() != qv::STEP_EVENT) return 0;
    m_p_stamps->push_back(qv::platform::monotonicMicroseconds());
    if (static_cast<int>(m_p_stamps->size()) > FRAMES) qv::GameManager::getInstance().setGameOver();
    return 1;
  }

 private:
  std::vector<std::int64_t> *m_p_stamps;
};

double cpuSeconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_utime.tv_sec + usage.ru_stime.tv_sec +
         (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

void BM_FrameLoopPacing(benchmark::State &state) {
  namespace fs = std::filesystem;
  fs::path dir = fs::temp_directory_path() / "quorvelle-bench-pacing";
  fs::create_directories(dir);
  std::ofstream(dir / "qv-config.txt")
      << "headless:true,networking:false,frame_time:" << state.range(0) << ",\n";
  setenv("QUORVELLE_CONFIG", (dir / "qv-config.txt").c_str(), 1);
  setenv("QUORVELLE_LOG", (dir / "bench.log").c_str(), 1);
  qv::GameManager &game = qv::GameManager::getInstance();
  for (auto _ : state) {
    if (game.startUp() != 0) {
      state.SkipWithError("engine did not start");
      game.shutDown();
      return;
    }
    std::vector<std::int64_t> stamps;
    stamps.reserve(FRAMES + 2);
    new FrameStamper(&stamps);  // the world owns it and deletes it at shut-down
    double cpu_before = cpuSeconds();
    game.run();
    double cpu = cpuSeconds() - cpu_before;
    game.shutDown();

    std::vector<double> frames;
    for (size_t i = 1; i < stamps.size(); i++)
      frames.push_back((stamps[i] - stamps[i - 1]) / 1000.0);
    double total = std::accumulate(frames.begin(), frames.end(), 0.0);
    std::vector<double> sorted = frames;
    std::sort(sorted.begin(), sorted.end());
    state.counters["frames"] = static_cast<double>(frames.size());
    state.counters["mean_ms"] = total / frames.size();
    state.counters["p99_ms"] = sorted[static_cast<size_t>(0.99 * (sorted.size() - 1))];
    state.counters["max_ms"] = sorted.back();
    state.counters["cpu_pct"] = 100.0 * cpu / (total / 1000.0);
  }
  fs::remove_all(dir);
}
BENCHMARK(BM_FrameLoopPacing)->Arg(33)->Iterations(1)->Unit(benchmark::kMillisecond);

// The per-frame arithmetic, for scale: it must cost nothing next to a frame.
void BM_FrameArithmetic(benchmark::State &state) {
  std::int64_t split = 1234, adjust = 500;
  for (auto _ : state) {
    benchmark::DoNotOptimize(qv::pathBudget(33, split, adjust));
    benchmark::DoNotOptimize(qv::frameRemaining(33, split, adjust));
  }
}
BENCHMARK(BM_FrameArithmetic);

}  // namespace
