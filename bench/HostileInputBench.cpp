#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "core/LogManager.h"
#include "network/NetworkManager.h"
#include "platform/platform.h"
#include "platform/sockets.h"
#include "resources/ResourceManager.h"

namespace {

// A peer's 2 MiB of empty messages, all waiting at once: draining them must
// cost time in proportion to the bytes, not to bytes times messages.
void BM_DrainEmptyMessages(benchmark::State &state) {
  setenv("QUORVELLE_LOG", "/dev/null", 1);
  qv::LogManager::getInstance().startUp();
  qv::NetworkManager &nm = qv::NetworkManager::getInstance();
  nm.startUp();
  nm.setServer("0");
  const int peer = qv::platform::socketConnect("127.0.0.1", std::to_string(nm.getPort()), 2000);
  while (nm.accept() == -1) qv::platform::sleepMilliseconds(1);
  const std::string bytes(static_cast<std::size_t>(state.range(0)), '\0');
  std::string message;
  for (auto _ : state) {
    std::size_t sent = 0;
    int received = 0;
    while (received < state.range(0) / 4) {
      if (sent < bytes.size()) {
        const long n = qv::platform::socketSend(peer, bytes.data() + sent,
                                                static_cast<long>(bytes.size() - sent));
        if (n > 0) sent += static_cast<std::size_t>(n);
      }
      while (nm.receiveMessage(&message, 0) == 1) received++;
    }
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * state.range(0));
  close(peer);
  nm.shutDown();
  qv::LogManager::getInstance().shutDown();
}
BENCHMARK(BM_DrainEmptyMessages)->Arg(1 << 18)->Arg(1 << 21)->Unit(benchmark::kMillisecond);

// A sectioned sprite file of one-cell frames: reading must stay linear in
// the number of frames.
void BM_SectionedSpriteRead(benchmark::State &state) {
  setenv("QUORVELLE_LOG", "/dev/null", 1);
  qv::LogManager::getInstance().startUp();
  qv::ResourceManager &rm = qv::ResourceManager::getInstance();
  const std::string path = "/tmp/qv-bench-sprite-" + std::to_string(getpid()) + ".txt";
  std::string file = "<HEADER>\nframes " + std::to_string(state.range(0)) +
                     "\nwidth 1\nheight 1\n</HEADER>\n<BODY>\n";
  for (int i = 0; i < state.range(0); i++) file += "x\nend\n";
  file += "</BODY>\n<FOOTER>\nversion 1\n</FOOTER>\n";
  std::FILE *p_f = std::fopen(path.c_str(), "w");
  std::fwrite(file.data(), 1, file.size(), p_f);
  std::fclose(p_f);
  for (auto _ : state) {
    rm.startUp();
    benchmark::DoNotOptimize(rm.loadSprite(path, "long"));
    rm.shutDown();
  }
  std::remove(path.c_str());
  qv::LogManager::getInstance().shutDown();
}
BENCHMARK(BM_SectionedSpriteRead)->Arg(4000)->Arg(40000)->Unit(benchmark::kMillisecond);

}  // namespace
