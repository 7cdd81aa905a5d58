// Sprite files in both formats, read through the resource manager, with the
// exact lines every broken file produces; sound effects and music by label,
// on generated wave files (run with ALSOFT_DRIVERS=null: the audio library
// plays into nothing).

#include <sys/wait.h>
#include <unistd.h>

#include <SFML/Audio/OutputSoundFile.hpp>
#include <SFML/Audio/Sound.hpp>
#include <algorithm>
#include <cstdlib>

#include "ChildProcess.h"
#include "ResourceFixture.h"
#include "core/LogManager.h"

namespace {

using Lines = std::vector<std::string>;

// The two sample sprites: 2 frames of 3 x 2, slowdown 4, cyan.
const std::string SIMPLE_MAN = "2\n3\n2\n4\ncyan\n.o.\n/#\\\n\\o/\n.#.\n";
const std::string ROBUST_MAN =
    "<HEADER>\nframes 2\nwidth 3\nheight 2\ncolor cyan\ntransparency .\nslowdown 4\n</HEADER>\n"
    "<BODY>\n.o.\n/#\\\nend\n\\o/\n.#.\nend\n</BODY>\n"
    "<FOOTER>\nversion 1\n</FOOTER>\n";
// What describe() gives for them, with the transparency between.
const std::string MAN = "2 of 3x2 Cyan, slowdown 4, clear ";
const std::string MAN_FRAMES = ": .o./#\\ \\o/.#.";

std::string withCrLf(const std::string &text) {
  std::string out;
  for (char c : text) out += c == '\n' ? "\r\n" : std::string(1, c);
  return out;
}

// A robust file from its header lines, body lines and footer lines.
std::string robust(const std::string &header, const std::string &body = "a\nend\n",
                   const std::string &footer = "version 1\n") {
  return "<HEADER>\n" + header + "</HEADER>\n<BODY>\n" + body + "</BODY>\n<FOOTER>\n" + footer +
         "</FOOTER>\n";
}

// "frames of widthxheight colour, slowdown s, clear t: frame frame ...";
// a frame of another size than the sprite's is marked.
std::string describe(const qv::Sprite *s) {
  const char t = s->getTransparency();
  std::string text = std::to_string(s->getFrameCount()) + " of " + std::to_string(s->getWidth()) +
                     "x" + std::to_string(s->getHeight()) + " " + qv::colorToString(s->getColor()) +
                     ", slowdown " + std::to_string(s->getSlowdown()) + ", clear " +
                     (t ? "'" + std::string(1, t) + "'" : "none") + ":";
  for (int i = 0; i < s->getFrameCount(); i++) {
    const qv::Frame f = s->getFrame(i);
    const bool odd = f.getWidth() != s->getWidth() || f.getHeight() != s->getHeight();
    text += " " + f.getString() + (odd ? "(odd size)" : "");
  }
  return text;
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
};

TEST_F(ResourceManagerTest, ReadsBothFormatsLineEndsDefaultsAndOddValues) {
  qv::LogManager::getInstance().setLogLevel(5);
  const std::string one = "1 of 1x1 White, slowdown 0, clear ";
  const struct {
    std::string text, sprite;
    Lines logged;  // among the lines the load writes (all of them, for the first)
  } cases[] = {
      {SIMPLE_MAN,
       MAN + "none" + MAN_FRAMES,
       {"RM::loadSprite(): Loading sprite '" + dir.file("sprite.txt") + "'.",
        "RM::loadSprite(): assuming simple sprite file format.", "\t      Frames: 2",
        "\t       Width: 3", "\t      Height: 2", "\t    Slowdown: 4", "\t       Color: Cyan",
        "RM::loadSprite(): Sprite '0' loaded."}},
      {ROBUST_MAN,
       MAN + "'.'" + MAN_FRAMES,
       {"RM::loadSprite(): assuming robust sprite file format.", "\t       Width: 3",
        "\t      Height: 2", "\tTransparency: '.'", "RM::loadSprite(): Sprite '1' loaded."}},
      {withCrLf(SIMPLE_MAN), MAN + "none" + MAN_FRAMES, {}},
      {SIMPLE_MAN.substr(0, SIMPLE_MAN.size() - 1), MAN + "none" + MAN_FRAMES, {}},
      {withCrLf(ROBUST_MAN), MAN + "'.'" + MAN_FRAMES, {}},
      // Slowdown 0 is a still picture; numbers stop at the first non-digit.
      {"1\n1\n1\n0\nblue\na\n", "1 of 1x1 Blue, slowdown 0, clear none: a", {}},
      {"1x\n 2\n1\n+3\ngreen\nab\n", "1 of 2x1 Green, slowdown 3, clear none: ab", {}},
      {robust("frames 1\nwidth 1\nheight 1\n"),
       one + "none: a",
       {"RM::loadRobustSprite(): Warning! No 'color' in header.",
        "RM::loadRobustSprite(): Note! No 'transparency' in header.",
        "RM::loadRobustSprite(): Note! No 'slowdown' in header.", "\tTransparency: (none)"}},
      // A blank is written quoted; otherwise the value's first character counts.
      {robust("frames 1\nwidth 1\nheight 1\ntransparency \" \"\n"),
       one + "' ': a",
       {"RM::loadRobustSprite(): transparency is 'space'"}},
      {robust("frames 1\nwidth 1\nheight 1\ntransparency #x\n"), one + "'#': a", {}},
      // A repeated key warns and the later line wins; other lines are
      // reported as unused, not refused; nothing after the footer is read.
      {robust("frames 1\nwidth 9\nwidth 1\nheight 1\nauthor me\n", "a\nend\n", "version 1\nby\n") +
           "\n\nnotes\n",
       one + "none: a",
       {"matchLineInt(): Warning! 'width 1' matches multiple lines.",
        "RM::loadRobustSprite(): Warning! Unused HEADER lines:", "\t'author me'",
        "RM::loadRobustSprite(): Warning! Unused FOOTER lines:", "\t'by'"}},
  };
  int count = 0;
  for (const auto &c : cases) {
    Lines lines;
    const std::string label = std::to_string(count++);
    ASSERT_EQ(load(c.text, label, &lines), 0) << c.text;
    EXPECT_EQ(describe(rm().getSprite(label)), c.sprite) << c.text;
    if (count == 1) {
      EXPECT_EQ(lines, c.logged);
    }
    for (const std::string &line : c.logged)
      EXPECT_NE(std::find(lines.begin(), lines.end(), line), lines.end()) << line;
  }
}

TEST_F(ResourceManagerTest, RefusesBrokenFilesNamingTheLine) {
  const std::string unknown = "RM::loadSprite(): Error! Unknown sprite file format.";
  const std::string simple = "RM::loadSimpleSprite(): Error line ",
                    robust_error = "RM::loadRobustSprite(): Error! ";
  const std::string eof = "RM::loadSimpleSprite(): Error! Unexpected end of file.";
  const std::string no_frame = robust_error + "No frame data to add.";
  const std::string man_header = "frames 2\nwidth 3\nheight 2\n";  // ends on line 5
  const struct {
    std::string text;
    Lines lines;  // all the load writes before "NOT loaded"
  } cases[] = {
      {"0\n3\n1\n0\nred\nabc\n", {unknown, "RM::loadSprite(): First line is '0'."}},
      {"hello\n", {unknown, "RM::loadSprite(): First line is 'hello'."}},
      {"1\nx\n1\n0\nred\na\n", {simple + "2! Width is 'x'."}},
      {"1\n1\n0\n0\nred\na\n", {simple + "3! Height is '0'."}},
      {"1\n1\n1\n-1\nred\na\n", {simple + "4! Slowdown is '-1'."}},
      {"1\n1\n1\n0\nRed\na\n",
       {simple + "5! Unrecognized color 'Red'.", "  Valid colors are: black, red, green, yellow,",
        "                    blue, magenta, cyan or white."}},
      // A missing header line: an empty line, the file's end after a line
      // end, or right after the last character, where the reader notices first.
      {"2\n3\n\n4\n", {eof, "\tMissing height (an integer)."}},
      {"2\n3\n1\n", {eof, "\tMissing slowdown (an integer)."}},
      {"2\n3\n1\n4",
       {"getLine(): Error! Unexpected end of file.", eof, "\tMissing color (a string)."}},
      {"1\n3\n1\n0\nred\nabcd\n",
       {simple + "6!", "\tLine  6: 'abcd'", "\tWidth is 4, expected 3."}},
      {"2\n3\n1\n4\nred\nabc\n", {eof, "\tReading frame 2 of 2, row 1 of 1."}},
      // An empty row ends the frames as the file's end does.
      {"1\n3\n2\n4\nred\nabc\n\nabc\n", {eof, "\tReading frame 1 of 1, row 2 of 2."}},
      // One line end may follow the last row; anything more is refused.
      {"2\n3\n1\n4\nred\nabc\ndef\nx\n", {simple + "8!", "\tExtra file data: 'x'"}},
      {withCrLf("2\n3\n1\n4\nred\nabc\ndef\n\n"), {simple + "8!", "\tExtra file data: ''"}},
      // Frame counts far beyond the file fail on the missing rows, quickly.
      {"99999\n1\n1\n0\nred\na\n", {eof, "\tReading frame 2 of 99999, row 1 of 1."}},
      {robust("frames 99999\nwidth 1\nheight 1\n"),
       {"\tError! Line 9: No more frame data before 'end'.", no_frame}},
      {robust("frames 1\nwidth -1\nheight 1\n"), {robust_error + "Missing 'width' in header."}},
      {robust("width 1\nheight 1\n"), {robust_error + "Missing 'frames' in header."}},
      // A key with nothing after it has no value.
      {robust("frames 1\nwidth 1\nheight\n"), {robust_error + "Missing 'height' in header."}},
      {robust("frames 1\nwidth 1\nheight 1\ncolor purple\n"),
       {robust_error + "Unrecognized color 'purple'.",
        "  Valid colors are: black, red, green, yellow,",
        "                    blue, magenta, cyan and white."}},
      {"<HEADER>\nframes 1\nwidth 1\n\nheight 1\n</HEADER>\n",
       {"readData(): Error! Stop at line 3, never encountered '</HEADER>'."}},
      {"<HEADER>\nframes 1",
       {"getLine(): Error! Unexpected end of file.",
        "readData(): Error! Stop at line 1, never encountered '</HEADER>'."}},
      // A frame count the sprite could never hold is refused without a crash.
      {robust("frames -2\nwidth 1\nheight 1\n"),
       {"Sprite::Sprite(): Error! Unable to allocate -2 frames.",
        robust_error + "Unable to create Sprite."}},
      {robust(man_header, ".o.\n/#\\\n\\o/\n.#.\nend\n"),
       {"\tError! Line 10: Expected 'end'.", "\tLine 10: '\\o/'", no_frame}},
      {robust(man_header, ".o.\n/#\nend\n"),
       {"\tError! Line 9: Line length is 2 (frame width is 3).", "\tLine 9: '/#'", no_frame}},
      {robust(man_header, ".o.\n/#\\\nend\n"),
       {"\tError! Line 10: No more frame data before 'end'.", no_frame}},
      {robust("frames 1\nwidth 3\nheight 2\n", ".o.\n/#\\\nend\n\\o/\n.#.\nend\n"),
       {robust_error + "Extra BODY:", "\tLine 13: \\o/", "\tLine 14: .#.", "\tLine 15: end"}},
      {"<HEADER>\nframes 1\nwidth 1\nheight 1\n</HEADER>\n<BDY>\n",
       {"readData(): Error line 6! Expected '<BODY>', have '<BDY>'."}},
      {robust("frames 1\nwidth 1\nheight 1\n", "a\nend\n", "author me\n"),
       {robust_error + "Missing 'version' in FOOTER (line 12)."}},
  };
  for (const auto &c : cases) {
    Lines lines, expected = c.lines;
    expected.push_back("RM::loadSprite(): Sprite 's' NOT loaded.");
    EXPECT_EQ(load(c.text, "s", &lines), -1) << c.text;
    EXPECT_EQ(lines, expected) << c.text;
  }
  EXPECT_EQ(rm().getSpriteCount(), 0);
}

// Writes a mono 8 kHz wave file of a square wave of the given length.
std::string writeWav(const std::string &file_name, std::size_t samples) {
  std::vector<sf::Int16> wave(samples);
  for (std::size_t i = 0; i < samples; i++) wave[i] = i / 20 % 2 ? -8192 : 8192;
  sf::OutputSoundFile file;
  if (file.openFromFile(file_name, 8000, 1)) file.write(wave.data(), samples);
  return file_name;
}

// Sprites, sounds and musics by label up to their limits (1000, 100, 50);
// failed loads take no slot. Shut-down stops what plays, empties the sprites
// and refuses loads; the sounds go at the next start-up.
TEST_F(ResourceManagerTest, LabelsLimitsFailuresPlayingAndLifecycle) {
  const std::string missing = dir.file("missing");
  const std::string junk = dir.write("junk.wav", "RIFF this is not a wave file");
  EXPECT_EQ(rm().loadSprite(missing, "m"), -1);
  // Labels need not be unique: the first one loaded is found.
  ASSERT_EQ(load("1\n1\n1\n0\nred\na\n", "dup"), 0);
  ASSERT_EQ(load("1\n1\n1\n0\nblue\nb\n", "dup"), 0);
  EXPECT_EQ(rm().getSprite("dup")->getColor(), qv::RED);
  EXPECT_EQ(rm().getSprite("nope"), nullptr);
  const std::string file = dir.write("one.txt", "1\n1\n1\n0\nred\na\n");
  while (rm().getSpriteCount() < qv::MAX_SPRITES) ASSERT_EQ(rm().loadSprite(file, "x"), 0);
  EXPECT_EQ(rm().loadSprite(file, "last"), -1);
  EXPECT_EQ(rm().getSpriteCount(), 1000);
  EXPECT_EQ(rm().startUp(), -1);

  // An empty label is refused before the file is looked at.
  EXPECT_EQ(rm().loadSound(missing, "gone") + rm().loadSound(junk, "junk") +
                rm().loadMusic(missing, "gone") + rm().loadMusic(junk, ""),
            -4);
  // A second's worth of sound, so it is still playing when looked at.
  ASSERT_EQ(rm().loadSound(writeWav(dir.file("boom.wav"), 8000), "boom"), 0);
  ASSERT_EQ(rm().loadMusic(writeWav(dir.file("tune.wav"), 16000), "level"), 0);
  EXPECT_EQ(rm().getSoundCount() + rm().getMusicCount(), 2);
  EXPECT_EQ(rm().getMusic("gone"), nullptr);
  qv::Sound *p_boom = rm().getSound("boom");
  qv::Music *p_music = rm().getMusic("level");
  ASSERT_TRUE(p_boom && p_music);
  qv::LogManager::getInstance().setLogLevel(5);
  auto state = [&] {
    return std::to_string(p_boom->getSound()->getStatus()) +
           std::to_string(p_boom->getSound()->getLoop()) +
           std::to_string(p_music->getMusic()->getStatus()) +
           std::to_string(p_music->getMusic()->getLoop());
  };
  p_boom->play(false);
  p_music->play(true);
  const std::string playing = state();
  p_boom->stop();
  EXPECT_EQ(playing + " " + state(), "2021 0021");  // 2 playing, 0 stopped

  const std::string wav = writeWav(dir.file("tiny.wav"), 16);
  while (rm().getSoundCount() < qv::MAX_SOUNDS) ASSERT_EQ(rm().loadSound(wav, "s"), 0);
  while (rm().getMusicCount() < qv::MAX_MUSICS) ASSERT_EQ(rm().loadMusic(wav, "m"), 0);
  EXPECT_EQ(rm().loadSound(wav, "one-too-many") + rm().loadMusic(wav, "one-too-many"), -2);
  rm().shutDown();
  EXPECT_EQ(state(), "0001");
  EXPECT_EQ(rm().getSpriteCount(), 0);
  EXPECT_EQ(rm().getSoundCount() + rm().getMusicCount(), 150);
  EXPECT_EQ(
      rm().loadSprite(file, "late") + rm().loadSound(wav, "late") + rm().loadMusic(wav, "late"),
      -3);
  EXPECT_EQ(log->count("ResourceManager not started!"), 3);
  ASSERT_EQ(rm().startUp(), 0);
  EXPECT_EQ(rm().getSoundCount() + rm().getMusicCount(), 0);
  EXPECT_EQ(rm().getSound("boom"), nullptr);
  const std::string no_sound = "RM::loadSound(): Error! Cannot load sound from file '";
  const std::string no_music = "RM::loadmusic(): Error! Cannot load music from file '";
  EXPECT_FALSE(log->contains(no_music + junk + "'."));
  expectLogged({"RM::loadSprite(): Error! Cannot open file '" + missing + "'.",
                "RM::loadSprite(): Sprite 'm' not loaded.",
                "RM::getSprite(): Warning! Sprite 'nope' not found.",
                "RM::loadRobustSprite(): Error! Cannot add more Sprites (max is 1000).",
                "RM::loadRobustSprite(): Sprite 'last' not loaded.",
                "ResourceManager::startup(): Warning! ResourceManager already started.",
                no_sound + missing + "'.", no_sound + junk + "'.", no_music + missing + "'.",
                "RM::loadMusic(): Error! Must provide label for music.",
                "RM::getMusic(): Warning! Music 'gone' not found.", "Sound::play(): Playing sound.",
                "Music::play(): Playing music.", "Music::stop(): Stopping music.",
                "RM::loadSound(): Error! Unable to add more sounds (max is 100).",
                "RM::loadMusic(): Error! Unable to add more musics (max is 50).",
                "RM::getSound(): Warning! Sound 'boom' not found."});

  // A sound with nothing loaded only logs; a reload keeps the voice and
  // switches its samples, unless it fails.
  qv::Sound sound;
  sound.play();
  sound.stop();
  EXPECT_EQ(log->count("Sound::play(): Playing sound."), 2);
  EXPECT_EQ(sound.loadSound(missing), -1);
  EXPECT_EQ(sound.getSound(), nullptr);
  ASSERT_EQ(sound.loadSound(writeWav(dir.file("a.wav"), 300)), 0);
  sf::Sound *voice = sound.getSound();
  ASSERT_EQ(sound.loadSound(writeWav(dir.file("b.wav"), 700)), 0);
  EXPECT_EQ(sound.loadSound(missing), -1);
  EXPECT_EQ(sound.getSound(), voice);
  EXPECT_EQ(voice->getBuffer()->getSampleCount(), 700u);
}

// The checker game makers run on their art: a failing exit status and the
// reader's lines for a bad file.
TEST_F(ResourceManagerTest, SpriteCheckToolQuotesTheReader) {
  const std::string tool = QV_BUILD_DIR "/qv-sprite-check", out = dir.file("out.txt");
  if (access(tool.c_str(), X_OK) != 0) GTEST_SKIP() << "qv-sprite-check not built";
  const std::string bad = dir.write("bad.txt", "1\n3\n1\n0\nred\nabcd\n");
  EXPECT_EQ(WEXITSTATUS(std::system((tool + " " + bad + " >" + out + " 2>&1").c_str())), 1);
  EXPECT_NE(qvtest::readFile(out).find("    \tWidth is 4, expected 3.\n"), std::string::npos);
}

// A program that starts the engine, loads and plays a sound and a music and
// shuts down: once where the audio library's ALSA output names a device that
// does not exist (both complain on standard error when asked), once on the
// library's silent null device.
TEST(SoundOutputTest, WithoutADeviceOnlyTheLogSaysSoAndLoadsStillSucceed) {
  const std::string note = "RM::startUp(): Note! No audio device: sound is off.";
  for (const auto &[driver, notes] :
       {std::pair<const char *, int>{"alsa", 1}, std::pair<const char *, int>{"null", 0}}) {
    qvtest::TempDir dir;
    writeWav(dir.file("boom.wav"), 800);
    dir.write("qv-config.txt", "headless:true,\nnetworking:false,\n");
    const std::string conf = dir.write("alsoft.conf", "[alsa]\ndevice = no-such-device\n");
    qvtest::ChildProcess program(QV_START_STOP_PATH, dir.path(),
                                 {{"ALSOFT_DRIVERS", driver},
                                  {"ALSOFT_CONF", conf.c_str()},
                                  {"QUORVELLE_LOG", nullptr},
                                  {"QUORVELLE_CONFIG", nullptr},
                                  {"QUORVELLE_LOG_LEVEL", nullptr}});
    ASSERT_TRUE(program.wait()) << driver;
    EXPECT_EQ(program.exitStatus(), 0) << driver;
    EXPECT_EQ(program.stderrText(), "") << driver;
    const std::vector<std::string> lines = qvtest::runLog(dir);
    EXPECT_EQ(std::count(lines.begin(), lines.end(), note), notes) << driver;
    EXPECT_EQ(lines.size(), 6u + notes) << driver;  // otherwise only the banners
  }
}

}  // namespace
