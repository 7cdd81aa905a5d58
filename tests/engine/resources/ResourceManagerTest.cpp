// Sprite files in both formats, read through the resource manager, with the
// exact lines every broken file produces.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "ResourceFixture.h"
#include "core/LogManager.h"

namespace {

using Lines = std::vector<std::string>;

// The two sample sprites: 2 frames of 3 x 2, slowdown 4, cyan.
const char *const SIMPLE_MAN = "2\n3\n2\n4\ncyan\n.o.\n/#\\\n\\o/\n.#.\n";
const char *const ROBUST_MAN =
    "<HEADER>\nframes 2\nwidth 3\nheight 2\ncolor cyan\ntransparency .\nslowdown 4\n</HEADER>\n"
    "<BODY>\n.o.\n/#\\\nend\n\\o/\n.#.\nend\n</BODY>\n"
    "<FOOTER>\nversion 1\n</FOOTER>\n";

std::string withCrLf(const std::string &text) {
  std::string out;
  for (char c : text) {
    if (c == '\n') out += '\r';
    out += c;
  }
  return out;
}

// A robust file from its header lines, body lines and footer lines.
std::string robust(const std::string &header, const std::string &body,
                   const std::string &footer = "version 1\n") {
  return "<HEADER>\n" + header + "</HEADER>\n<BODY>\n" + body + "</BODY>\n<FOOTER>\n" + footer +
         "</FOOTER>\n";
}

class ResourceManagerTest : public qvtest::ResourceFixture {
 protected:
  // Loads text as a sprite file under label; the log lines it produced go
  // to *lines.
  int load(const std::string &text, const std::string &label = "s", Lines *lines = nullptr) {
    const size_t before = log->messages().size();
    const int result = rm().loadSprite(dir.write("sprite.txt", text), label);
    if (lines) {
      Lines all = log->messages();
      lines->assign(all.begin() + static_cast<long>(before), all.end());
    }
    return result;
  }

  // Expects the load to fail with exactly these lines before "NOT loaded".
  void expectRefused(const std::string &text, Lines expected) {
    Lines lines;
    EXPECT_EQ(load(text, "s", &lines), -1);
    expected.push_back("RM::loadSprite(): Sprite 's' NOT loaded.");
    EXPECT_EQ(lines, expected) << text;
    EXPECT_EQ(rm().getSpriteCount(), 0);
  }
};

void expectMan(const qv::Sprite *s, char transparency) {
  ASSERT_NE(s, nullptr);
  EXPECT_EQ(s->getFrameCount(), 2);
  EXPECT_EQ(s->getWidth(), 3);
  EXPECT_EQ(s->getHeight(), 2);
  EXPECT_EQ(s->getSlowdown(), 4);
  EXPECT_EQ(s->getColor(), qv::CYAN);
  EXPECT_EQ(s->getTransparency(), transparency);
  EXPECT_EQ(s->getFrame(0).getString(), ".o./#\\");
  EXPECT_EQ(s->getFrame(1).getString(), "\\o/.#.");
  EXPECT_EQ(s->getFrame(1).getWidth(), 3);
  EXPECT_EQ(s->getFrame(1).getHeight(), 2);
}

TEST_F(ResourceManagerTest, ReadsBothFormatsWithAnyLineEnds) {
  Lines lines;
  ASSERT_EQ(load(SIMPLE_MAN, "simple", &lines), 0);
  ASSERT_EQ(load(withCrLf(SIMPLE_MAN), "simple-crlf", &lines), 0);
  // No line end after the last row is fine too.
  const std::string unterminated(SIMPLE_MAN, std::string(SIMPLE_MAN).size() - 1);
  ASSERT_EQ(load(unterminated, "simple-open", &lines), 0);
  ASSERT_EQ(load(ROBUST_MAN, "robust", &lines), 0);
  ASSERT_EQ(load(withCrLf(ROBUST_MAN), "robust-crlf", &lines), 0);
  EXPECT_TRUE(lines.empty()) << lines[0];

  expectMan(rm().getSprite("simple"), 0);
  expectMan(rm().getSprite("simple-crlf"), 0);
  expectMan(rm().getSprite("simple-open"), 0);
  expectMan(rm().getSprite("robust"), '.');
  expectMan(rm().getSprite("robust-crlf"), '.');
  EXPECT_EQ(rm().getSprite("robust")->getLabel(), "robust");
  EXPECT_EQ(rm().getSpriteCount(), 5);

  // The short sample: frames of one row, red.
  ASSERT_EQ(load("2\n3\n1\n4\nred\nabc\ndef", "short"), 0);
  const qv::Sprite *s = rm().getSprite("short");
  EXPECT_EQ(s->getFrameCount(), 2);
  EXPECT_EQ(s->getColor(), qv::RED);
  EXPECT_EQ(s->getFrame(1).getString(), "def");
}

TEST_F(ResourceManagerTest, TracesASimpleLoadLineByLine) {
  qv::LogManager::getInstance().setLogLevel(20);
  Lines lines;
  const std::string file = dir.file("sprite.txt");
  ASSERT_EQ(load(SIMPLE_MAN, "man", &lines), 0);
  const Lines expected = {"RM::loadSprite(): Loading sprite '" + file + "'.",
                          "RM::loadSprite(): assuming simple sprite file format.",
                          "\tLine  1: '2'",
                          "\tLine  2: '3'",
                          "\tLine  3: '2'",
                          "\tLine  4: '4'",
                          "\tLine  5: 'cyan'",
                          "\t      Frames: 2",
                          "\t       Width: 3",
                          "\t      Height: 2",
                          "\t    Slowdown: 4",
                          "\t       Color: Cyan",
                          "RM::loadSimpleSprite(): Reading frame 1 of 2.",
                          "\tLine  6: '.o.'",
                          "\tLine  7: '/#\\'",
                          "RM::loadSimpleSprite(): Reading frame 2 of 2.",
                          "\tLine  8: '\\o/'",
                          "\tLine  9: '.#.'",
                          "RM::loadSprite(): Sprite 'man' frames:",
                          "\tFrame 1:",
                          "\t.o.",
                          "\t/#\\",
                          "\tFrame 2:",
                          "\t\\o/",
                          "\t.#.",
                          "RM::loadSprite(): Sprite 'man' loaded."};
  EXPECT_EQ(lines, expected);
}

TEST_F(ResourceManagerTest, RefusesBrokenSimpleHeaders) {
  expectRefused("0\n3\n1\n0\nred\nabc\n", {"RM::loadSprite(): Error! Unknown sprite file format.",
                                           "RM::loadSprite(): First line is '0'."});
  expectRefused("hello\n", {"RM::loadSprite(): Error! Unknown sprite file format.",
                            "RM::loadSprite(): First line is 'hello'."});
  expectRefused("", {"RM::loadSprite(): Error! Unknown sprite file format.",
                     "RM::loadSprite(): First line is ''."});
  expectRefused("1\nx\n1\n0\nred\na\n", {"RM::loadSimpleSprite(): Error line 2! Width is 'x'."});
  expectRefused("1\n1\n0\n0\nred\na\n", {"RM::loadSimpleSprite(): Error line 3! Height is '0'."});
  expectRefused("1\n1\n1\n-1\nred\na\n",
                {"RM::loadSimpleSprite(): Error line 4! Slowdown is '-1'."});
  expectRefused("1\n1\n1\n0\nRed\na\n",
                {"RM::loadSimpleSprite(): Error line 5! Unrecognized color 'Red'.",
                 "  Valid colors are: black, red, green, yellow,",
                 "                    blue, magenta, cyan or white."});
  // A missing header line: an empty line, or the file's end after a line end...
  expectRefused("2\n3\n\n4\n", {"RM::loadSimpleSprite(): Error! Unexpected end of file.",
                                "\tMissing height (an integer)."});
  expectRefused("2\n3\n1\n", {"RM::loadSimpleSprite(): Error! Unexpected end of file.",
                              "\tMissing slowdown (an integer)."});
  // ...or right after the last character, where the reader notices first.
  expectRefused("2\n3\n1\n4", {"getLine(): Error! Unexpected end of file.",
                               "RM::loadSimpleSprite(): Error! Unexpected end of file.",
                               "\tMissing color (a string)."});

  // Slowdown 0 is a still picture and fine; numbers stop at the first non-digit.
  EXPECT_EQ(load("1\n1\n1\n0\nblue\na\n"), 0);
  EXPECT_EQ(load("1x\n 2\n1\n+3\ngreen\nab\n", "t"), 0);
  EXPECT_EQ(rm().getSprite("t")->getWidth(), 2);
  EXPECT_EQ(rm().getSprite("t")->getSlowdown(), 3);
}

TEST_F(ResourceManagerTest, RefusesBrokenSimpleFrames) {
  expectRefused("1\n3\n1\n0\nred\nabcd\n", {"RM::loadSimpleSprite(): Error line 6!",
                                            "\tLine  6: 'abcd'", "\tWidth is 4, expected 3."});
  expectRefused("2\n3\n1\n4\nred\nabc\n", {"RM::loadSimpleSprite(): Error! Unexpected end of file.",
                                           "\tReading frame 2 of 2, row 1 of 1."});
  // An empty row ends the frames as the file's end does.
  expectRefused("1\n3\n2\n4\nred\nabc\n\nabc\n",
                {"RM::loadSimpleSprite(): Error! Unexpected end of file.",
                 "\tReading frame 1 of 1, row 2 of 2."});
  // One line end may follow the last row; anything more is refused.
  expectRefused("2\n3\n1\n4\nred\nabc\ndef\nx\n",
                {"RM::loadSimpleSprite(): Error line 8!", "\tExtra file data: 'x'"});
  expectRefused("2\n3\n1\n4\nred\nabc\ndef\n\n",
                {"RM::loadSimpleSprite(): Error line 8!", "\tExtra file data: ''"});
  expectRefused(withCrLf("2\n3\n1\n4\nred\nabc\ndef\n\n"),
                {"RM::loadSimpleSprite(): Error line 8!", "\tExtra file data: ''"});
  // A frame count far beyond the file fails on the missing rows, quickly.
  expectRefused("99999\n1\n1\n0\nred\na\n",
                {"RM::loadSimpleSprite(): Error! Unexpected end of file.",
                 "\tReading frame 2 of 99999, row 1 of 1."});
}

TEST_F(ResourceManagerTest, RobustHeaderDefaultsAndOddValues) {
  qv::LogManager::getInstance().setLogLevel(5);
  Lines lines;
  ASSERT_EQ(load(robust("frames 1\nwidth 2\nheight 1\n", "ab\nend\n"), "plain", &lines), 0);
  const qv::Sprite *plain = rm().getSprite("plain");
  EXPECT_EQ(plain->getColor(), qv::WHITE);
  EXPECT_EQ(plain->getTransparency(), 0);
  EXPECT_EQ(plain->getSlowdown(), 0);
  auto has = [&](const std::string &line) {
    return std::find(lines.begin(), lines.end(), line) != lines.end();
  };
  EXPECT_TRUE(has("RM::loadRobustSprite(): Warning! No 'color' in header."));
  EXPECT_TRUE(has("RM::loadRobustSprite(): Note! No 'transparency' in header."));
  EXPECT_TRUE(has("RM::loadRobustSprite(): Note! No 'slowdown' in header."));
  EXPECT_TRUE(has("\tTransparency: (none)"));

  // A blank is written quoted; otherwise the value's first character counts.
  ASSERT_EQ(load(robust("frames 1\nwidth 1\nheight 1\ntransparency \" \"\n", "a\nend\n"), "blank",
                 &lines),
            0);
  EXPECT_EQ(rm().getSprite("blank")->getTransparency(), ' ');
  EXPECT_TRUE(has("RM::loadRobustSprite(): transparency is 'space'"));
  ASSERT_EQ(load(robust("frames 1\nwidth 1\nheight 1\ntransparency #x\n", "a\nend\n"), "hash"), 0);
  EXPECT_EQ(rm().getSprite("hash")->getTransparency(), '#');

  // A repeated key warns and the later line wins; other lines are reported
  // as unused, not refused.
  qv::LogManager::getInstance().setLogLevel(1);
  ASSERT_EQ(load(robust("frames 1\nwidth 9\nwidth 1\nheight 1\nauthor me\n", "a\nend\n"), "twice",
                 &lines),
            0);
  EXPECT_EQ(rm().getSprite("twice")->getWidth(), 1);
  EXPECT_TRUE(has("matchLineInt(): Warning! 'width 1' matches multiple lines."));
  EXPECT_TRUE(has("RM::loadRobustSprite(): Warning! Unused HEADER lines:"));
  EXPECT_TRUE(has("\t'author me'"));
}

TEST_F(ResourceManagerTest, RefusesBrokenRobustHeaders) {
  expectRefused(robust("frames 1\nwidth -1\nheight 1\n", "a\nend\n"),
                {"RM::loadRobustSprite(): Error! Missing 'width' in header."});
  expectRefused(robust("width 1\nheight 1\n", "a\nend\n"),
                {"RM::loadRobustSprite(): Error! Missing 'frames' in header."});
  // A key with nothing after it has no value.
  expectRefused(robust("frames 1\nwidth 1\nheight\n", "a\nend\n"),
                {"RM::loadRobustSprite(): Error! Missing 'height' in header."});
  expectRefused(robust("frames 1\nwidth 1\nheight 1\ncolor purple\n", "a\nend\n"),
                {"RM::loadRobustSprite(): Error! Unrecognized color 'purple'.",
                 "  Valid colors are: black, red, green, yellow,",
                 "                    blue, magenta, cyan and white."});
  expectRefused("<HEADER>\nframes 1\nwidth 1\n\nheight 1\n</HEADER>\n",
                {"readData(): Error! Stop at line 3, never encountered '</HEADER>'."});
  expectRefused("<HEADER>\nframes 1", {"getLine(): Error! Unexpected end of file.",
                                       "readData(): Error! Stop at line 1, never "
                                       "encountered '</HEADER>'."});
  // A frame count the sprite could never hold is refused without a crash.
  expectRefused(robust("frames -2\nwidth 1\nheight 1\n", "a\nend\n"),
                {"Sprite::Sprite(): Error! Unable to allocate -2 frames.",
                 "RM::loadRobustSprite(): Error! Unable to create Sprite."});
}

TEST_F(ResourceManagerTest, RefusesBrokenRobustBodiesAndFooters) {
  const std::string header = "frames 2\nwidth 3\nheight 2\n";  // header ends on line 5
  // Missing "end" after the first frame.
  expectRefused(robust(header, ".o.\n/#\\\n\\o/\n.#.\nend\n"),
                {"\tError! Line 10: Expected 'end'.", "\tLine 10: '\\o/'",
                 "RM::loadRobustSprite(): Error! No frame data to add."});
  // A row of the wrong length.
  expectRefused(robust(header, ".o.\n/#\nend\n"),
                {"\tError! Line 9: Line length is 2 (frame width is 3).", "\tLine 9: '/#'",
                 "RM::loadRobustSprite(): Error! No frame data to add."});
  // Fewer frames than declared.
  expectRefused(robust(header, ".o.\n/#\\\nend\n"),
                {"\tError! Line 10: No more frame data before 'end'.",
                 "RM::loadRobustSprite(): Error! No frame data to add."});
  expectRefused(robust("frames 99999\nwidth 1\nheight 1\n", "a\nend\n"),
                {"\tError! Line 9: No more frame data before 'end'.",
                 "RM::loadRobustSprite(): Error! No frame data to add."});
  // More frames than declared.
  expectRefused(robust("frames 1\nwidth 3\nheight 2\n", ".o.\n/#\\\nend\n\\o/\n.#.\nend\n"),
                {"RM::loadRobustSprite(): Error! Extra BODY:", "\tLine 13: \\o/", "\tLine 14: .#.",
                 "\tLine 15: end"});
  expectRefused("<HEADER>\nframes 1\nwidth 1\nheight 1\n</HEADER>\n<BDY>\n",
                {"readData(): Error line 6! Expected '<BODY>', have '<BDY>'."});
  expectRefused(robust("frames 1\nwidth 1\nheight 1\n", "a\nend\n", "author me\n"),
                {"RM::loadRobustSprite(): Error! Missing 'version' in FOOTER (line 12)."});
  // Whatever follows the footer is not read.
  EXPECT_EQ(load(robust("frames 1\nwidth 1\nheight 1\n", "a\nend\n") + "\n\nnotes\n"), 0);
}

TEST_F(ResourceManagerTest, LabelsLimitsAndLifecycle) {
  Lines lines;
  const std::string missing = dir.file("missing.txt");
  EXPECT_EQ(rm().loadSprite(missing, "m"), -1);
  EXPECT_TRUE(log->contains("RM::loadSprite(): Error! Cannot open file '" + missing + "'."));
  EXPECT_TRUE(log->contains("RM::loadSprite(): Sprite 'm' not loaded."));

  // Labels need not be unique: the first one loaded is found.
  ASSERT_EQ(load("1\n1\n1\n0\nred\na\n", "dup"), 0);
  ASSERT_EQ(load("1\n1\n1\n0\nblue\nb\n", "dup"), 0);
  EXPECT_EQ(rm().getSprite("dup")->getColor(), qv::RED);
  EXPECT_EQ(rm().getSprite("nope"), nullptr);
  EXPECT_TRUE(log->contains("RM::getSprite(): Warning! Sprite 'nope' not found."));

  const std::string file = dir.write("one.txt", "1\n1\n1\n0\nred\na\n");
  while (rm().getSpriteCount() < qv::MAX_SPRITES) ASSERT_EQ(rm().loadSprite(file, "x"), 0);
  EXPECT_EQ(rm().loadSprite(file, "last"), -1);
  EXPECT_TRUE(
      log->contains("RM::loadRobustSprite(): Error! Cannot add more Sprites (max is 1000)."));
  EXPECT_TRUE(log->contains("RM::loadRobustSprite(): Sprite 'last' not loaded."));
  EXPECT_EQ(rm().getSpriteCount(), 1000);

  EXPECT_EQ(rm().startUp(), -1);
  EXPECT_TRUE(
      log->contains("ResourceManager::startup(): Warning! ResourceManager already started."));
  rm().shutDown();
  EXPECT_EQ(rm().getSpriteCount(), 0);
  EXPECT_EQ(rm().loadSprite(file, "late"), -1);
  EXPECT_EQ(rm().getSprite("dup"), nullptr);
  EXPECT_EQ(log->count("ResourceManager not started!"), 1);
}

}  // namespace

namespace {

// The checker game makers run on their art: a summary per good file, the
// reader's lines per bad one, and a failing exit status.
TEST(SpriteCheckTool, SummarisesGoodFilesAndQuotesTheReaderOnBadOnes) {
  const std::string tool = QV_RUN_DIR "/../qv-sprite-check";
  if (access(tool.c_str(), X_OK) != 0) GTEST_SKIP() << "qv-sprite-check not built";
  qvtest::TempDir dir;
  const std::string good = dir.write("man.txt", ROBUST_MAN);
  const std::string bad = dir.write("bad.txt", "1\n3\n1\n0\nred\nabcd\n");
  auto run = [&](const std::string &args, std::string &out) {
    FILE *pipe = popen((tool + " " + args + " 2>&1").c_str(), "r");
    char buffer[512];
    out.clear();
    while (std::fgets(buffer, sizeof buffer, pipe)) out += buffer;
    return WEXITSTATUS(pclose(pipe));
  };
  std::string out;
  EXPECT_EQ(run(good, out), 0);
  EXPECT_EQ(out, good + ": 2 frames of 3x2, color cyan, slowdown 4, transparency '.'\n");
  EXPECT_EQ(run(good + " " + bad, out), 1);
  EXPECT_EQ(out, good + ": 2 frames of 3x2, color cyan, slowdown 4, transparency '.'\n" + bad +
                     ": FAILED\n    RM::loadSimpleSprite(): Error line 6!\n    \tLine  6: 'abcd'\n"
                     "    \tWidth is 4, expected 3.\n    RM::loadSprite(): Sprite '" +
                     bad + "' NOT loaded.\n1 of 2 sprite files load.\n");
}

}  // namespace
