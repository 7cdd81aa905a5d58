// The sound generator: the committed wave files are exactly what the
// description makes of them, and a bad description is refused by file and
// line with nothing written.

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <string>

#include "TempDir.h"

namespace fs = std::filesystem;

namespace {

// Runs the generator: its exit status, a line break and its standard error.
std::string generate(const std::string &description, const std::string &out_dir) {
  const std::string err_file = out_dir + ".err";
  const std::string command = "'" QV_BUILD_DIR "/qv-sound-gen' '" + description + "' '" + out_dir +
                              "' >/dev/null 2>'" + err_file + "'";
  const int status = std::system(command.c_str());
  return std::to_string(WIFEXITED(status) ? WEXITSTATUS(status) : -1) + "\n" +
         qvtest::readFile(err_file);
}

TEST(SoundGenTest, MakesTheCommittedSoundsAndRefusesABadDescriptionByFileAndLine) {
  qvtest::TempDir dir;
  ASSERT_EQ(generate(QV_SOURCE_DIR "/tools/sounds.txt", dir.file("sounds")), "0\n");
  const std::string diff = "diff -r '" + dir.file("sounds") + "' '" QV_SOURCE_DIR "/assets/sounds'";
  EXPECT_EQ(std::system(diff.c_str()), 0)
      << "assets/sounds differs from tools/sounds.txt: regenerate it with qv-sound-gen";

  // Each row: a description, its lines split by ';', and the error after its path.
  std::istringstream cases(
      R"(file a.wav;voice sine;notes C4 F#4 # comment;notes H4 => :4: bad note "H4" (expected r, a note such as C4, F#3, Bb5, or 440hz)
file a.wav;# lead;voice sqare => :3: unknown waveform "sqare" (square, triangle, saw, sine or noise)
file a.wav;voice saw;notes [C4 D4]x2 E4:half => :3: bad length in "E4:half" (beats such as 0.5, or 120ms)
file a.wav;voice saw;notes [C4 D4;notes E4]x0 => :4: bad repeat "]x0" (expected ]x2, ]x3, ...)
file a.wav;loop;voice sine;notes C4:1;voice noise;notes 9000hz:0.5 r:600ms => :5: voices of a looping file must be equally long
voice sine => :1: "voice" before the first "file")");
  for (std::string row; std::getline(cases, row);) {
    std::string text = row.substr(0, row.find(" => ")) + ";";
    std::replace(text.begin(), text.end(), ';', '\n');
    const std::string description = dir.write("bad.txt", text);
    EXPECT_EQ(generate(description, dir.file("out")),
              "1\n" + description + row.substr(row.find(" => ") + 4) + "\n");
    EXPECT_FALSE(fs::exists(dir.file("out"))) << row;
  }
}

}  // namespace
