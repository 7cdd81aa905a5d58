// qv-sprite-check: reads sprite files exactly as the engine does and says,
// per file, what the engine would make of it: a one-line summary, or the
// reader's own error lines. Exits 1 if any file would not load.
//
//   qv-sprite-check [--trace] FILE...
//
// --trace also shows the reader's line-by-line trace for every file.

#include <unistd.h>

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "core/LogManager.h"
#include "core/utility.h"
#include "resources/ResourceManager.h"

namespace {

// The message part of a log line: the time of day and frame number removed.
std::string message(const std::string &line) {
  std::size_t pos = 9;
  while (pos < line.size() && line[pos] == ' ') pos++;
  while (pos < line.size() && std::isdigit(static_cast<unsigned char>(line[pos]))) pos++;
  return pos < line.size() ? line.substr(pos + 1) : "";
}

// What the log file gained since offset; offset moves to its end.
std::vector<std::string> newLines(const std::string &log_file, std::streamoff &offset) {
  std::ifstream in(log_file, std::ios::binary);
  in.seekg(offset);
  std::vector<std::string> lines;
  std::string line;
  while (std::getline(in, line)) lines.push_back(message(line));
  in.clear();
  in.seekg(0, std::ios::end);
  offset = in.tellg();
  return lines;
}

std::string summary(const qv::Sprite &sprite) {
  std::string color = qv::colorToString(sprite.getColor());
  for (char &c : color) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  std::ostringstream out;
  out << sprite.getFrameCount() << (sprite.getFrameCount() == 1 ? " frame" : " frames") << " of "
      << sprite.getWidth() << "x" << sprite.getHeight() << ", color " << color << ", slowdown "
      << sprite.getSlowdown() << ", transparency ";
  if (sprite.getTransparency())
    out << "'" << sprite.getTransparency() << "'";
  else
    out << "none";
  return out.str();
}

int usage() {
  std::cerr << "usage: qv-sprite-check [--trace] FILE...\n"
               "Loads each sprite file as the engine does and prints a summary or the\n"
               "reader's errors; exits 1 if any file would not load.\n";
  return 2;
}

}  // namespace

int main(int argc, char **argv) {
  bool trace = false;
  std::vector<std::string> files;
  for (int i = 1; i < argc; i++) {
    const std::string arg = argv[i];
    if (arg == "--trace")
      trace = true;
    else if (arg == "-h" || arg == "--help")
      return usage();
    else
      files.push_back(arg);
  }
  if (files.empty()) return usage();

  // The resource manager also holds the sound slots; this tool never plays
  // any, so it needs no audio device.
  setenv("ALSOFT_DRIVERS", "null", 1);

  // The reader reports through the engine log: send it to a scratch file and
  // hand each file's lines on.
  char log_name[] = "/tmp/qv-sprite-check-XXXXXX";
  const int fd = mkstemp(log_name);
  if (fd < 0) {
    std::perror("qv-sprite-check: cannot make a scratch log file");
    return 2;
  }
  close(fd);
  setenv("QUORVELLE_LOG", log_name, 1);
  qv::LogManager &log = qv::LogManager::getInstance();
  if (log.startUp() != 0) {
    std::remove(log_name);
    return 2;
  }
  log.setFlush(true);

  qv::ResourceManager &rm = qv::ResourceManager::getInstance();
  const int level = trace ? 20 : 0;
  // Runs what is not the reader's own work with the trace off.
  auto quietly = [&](auto work) {
    log.setLogLevel(0);
    work();
    log.setLogLevel(level);
  };
  std::streamoff offset = 0;
  newLines(log_name, offset);  // whatever start-up wrote
  int failed = 0;
  for (const std::string &file : files) {
    // A fresh start per file: no limit on how many files one run checks.
    quietly([&] { rm.startUp(); });
    const bool loaded = rm.loadSprite(file, file) == 0;
    std::string result = "FAILED";
    quietly([&] {
      if (loaded) result = summary(*rm.getSprite(file));
      rm.shutDown();
    });
    const std::vector<std::string> lines = newLines(log_name, offset);
    std::cout << file << ": " << result << "\n";
    if (!loaded) failed++;
    if (!loaded || trace)
      for (const std::string &line : lines) std::cout << "    " << line << "\n";
  }

  log.shutDown();
  std::remove(log_name);
  if (files.size() > 1)
    std::cout << files.size() - static_cast<std::size_t>(failed) << " of " << files.size()
              << " sprite files load.\n";
  return failed ? 1 : 0;
}
