#include <benchmark/benchmark.h>

#include "FramePacing.h"

static void BM_FrameRemaining(benchmark::State &state) {
  std::int64_t split = 1234;
  for (auto _ : state) benchmark::DoNotOptimize(qv::frameRemaining(33, split, 500));
}
BENCHMARK(BM_FrameRemaining);
