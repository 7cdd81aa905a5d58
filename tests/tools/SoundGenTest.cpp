// The sound generator: the committed wave files are exactly what the
// description makes of them, and a bad description is refused by file and
// line with nothing written.

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <string>

#include "TempDir.h"

namespace fs = std::filesystem;

namespace {

// Runs the generator and returns its exit status; its standard error goes to
// err.
int generate(const std::string &description, const std::string &out_dir, std::string &err) {
  const std::string err_file = out_dir + ".err";
  const std::string command = "'" QV_BUILD_DIR "/qv-sound-gen' '" + description + "' '" + out_dir +
                              "' >/dev/null 2>'" + err_file + "'";
  const int status = std::system(command.c_str());
  err = qvtest::readFile(err_file);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(SoundGenTest, CommittedSoundsAreWhatTheDescriptionMakes) {
  qvtest::TempDir dir;
  std::string err;
  ASSERT_EQ(generate(QV_SOURCE_DIR "/tools/sounds.txt", dir.file("sounds"), err), 0) << err;
  const std::string committed = QV_SOURCE_DIR "/assets/sounds/";
  int made = 0;
  for (const fs::directory_entry &entry : fs::directory_iterator(dir.file("sounds"))) {
    const std::string name = entry.path().filename().string();
    EXPECT_TRUE(qvtest::readFile(entry.path().string()) == qvtest::readFile(committed + name))
        << name << " differs from tools/sounds.txt: regenerate it with qv-sound-gen";
    made++;
  }
  EXPECT_EQ(std::distance(fs::directory_iterator(committed), fs::directory_iterator()), made);
}

TEST(SoundGenTest, RefusesABadDescriptionByFileAndLine) {
  const std::pair<const char *, const char *> cases[] = {
      // description, error after its path
      {"file a.wav\nvoice sine\nnotes C4 F#4 # comment\nnotes H4\n",
       ":4: bad note \"H4\" (expected r, a note such as C4, F#3, Bb5, or 440hz)\n"},
      {"file a.wav\n# lead\nvoice sqare\n",
       ":3: unknown waveform \"sqare\" (square, triangle, saw, sine or noise)\n"},
      {"file a.wav\nvoice saw\nnotes [C4 D4]x2 E4:half\n",
       ":3: bad length in \"E4:half\" (beats such as 0.5, or 120ms)\n"},
      {"file a.wav\nvoice saw\nnotes [C4 D4\nnotes E4]x0\n",
       ":4: bad repeat \"]x0\" (expected ]x2, ]x3, ...)\n"},
      {"file a.wav\nloop\nvoice sine\nnotes C4:1\nvoice noise\nnotes 9000hz:0.5 r:600ms\n",
       ":5: voices of a looping file must be equally long\n"},
      {"voice sine\n", ":1: \"voice\" before the first \"file\"\n"},
  };
  qvtest::TempDir dir;
  for (const auto &c : cases) {
    const std::string description = dir.write("bad.txt", c.first);
    std::string err;
    EXPECT_EQ(generate(description, dir.file("out"), err), 1) << c.first;
    EXPECT_EQ(err, description + c.second);
    EXPECT_FALSE(fs::exists(dir.file("out"))) << c.first;
  }
}

}  // namespace
