// The sound generator: the committed wave files are exactly what the
// description makes of them, and a bad description is refused by file and
// line with nothing written.

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>

#include "TempDir.h"

namespace fs = std::filesystem;

namespace {

const std::string SOURCE_DIR = QV_SOURCE_DIR;

// Runs the generator and returns its exit status; its standard error goes to
// `err`.
int generate(const qvtest::TempDir &dir, const std::string &description, const std::string &out_dir,
             std::string &err) {
  const std::string err_file = dir.file("stderr.txt");
  const std::string command = "'" + std::string(QV_BUILD_DIR) + "/qv-sound-gen' '" + description +
                              "' '" + out_dir + "' >/dev/null 2>'" + err_file + "'";
  int status = std::system(command.c_str());
  err = qvtest::readFile(err_file);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::set<std::string> wavFiles(const std::string &dir) {
  std::set<std::string> names;
  std::error_code ec;
  for (const fs::directory_entry &entry : fs::directory_iterator(dir, ec))
    if (entry.path().extension() == ".wav") names.insert(entry.path().filename().string());
  return names;
}

TEST(SoundGenTest, CommittedSoundsAreWhatTheDescriptionMakes) {
  qvtest::TempDir dir;
  const std::string out = dir.file("sounds");
  const std::string committed = SOURCE_DIR + "/assets/sounds";
  std::string err;
  ASSERT_EQ(generate(dir, SOURCE_DIR + "/tools/sounds.txt", out, err), 0) << err;

  const std::set<std::string> names = wavFiles(committed);
  ASSERT_EQ(wavFiles(out), names);
  for (const std::string &name : names)
    EXPECT_TRUE(qvtest::readFile(out + "/" + name) == qvtest::readFile(committed + "/" + name))
        << name << " differs from tools/sounds.txt: regenerate it with qv-sound-gen";
}

TEST(SoundGenTest, RefusesABadDescriptionByFileAndLine) {
  struct Case {
    const char *description;
    const char *error;  // after the description's path
  };
  const Case cases[] = {
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
  for (const Case &c : cases) {
    qvtest::TempDir dir;
    const std::string description = dir.write("bad.txt", c.description);
    std::string err;
    EXPECT_EQ(generate(dir, description, dir.file("out"), err), 1) << c.description;
    EXPECT_EQ(err, description + c.error);
    EXPECT_FALSE(fs::exists(dir.file("out"))) << c.description;
  }
}

}  // namespace
