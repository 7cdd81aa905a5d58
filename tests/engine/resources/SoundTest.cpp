// Sound effects and music by label, on generated wave files (run with
// ALSOFT_DRIVERS=null: the audio library plays into nothing).

#include <gtest/gtest.h>

#include <SFML/Audio/OutputSoundFile.hpp>
#include <SFML/Audio/Sound.hpp>
#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "ChildProcess.h"
#include "ResourceFixture.h"
#include "TempDir.h"
#include "core/LogManager.h"

namespace {

// Writes a mono 8 kHz wave file of a square wave of the given length.
std::string writeWav(const std::string &file_name, std::size_t samples) {
  std::vector<sf::Int16> wave(samples);
  for (std::size_t i = 0; i < samples; i++) wave[i] = i / 20 % 2 ? -8192 : 8192;
  sf::OutputSoundFile file;
  if (file.openFromFile(file_name, 8000, 1)) file.write(wave.data(), samples);
  return file_name;
}

class SoundTest : public qvtest::ResourceFixture {};

// Play and stop by label; the limits of 100 sounds and 50 musics; shut-down
// stops what plays but keeps the data for the rest of the run.
TEST_F(SoundTest, PlaysByLabelUpToTheLimitsAndStopsAtShutDown) {
  // A second's worth, so it is still playing when looked at.
  ASSERT_EQ(rm().loadSound(writeWav(dir.file("boom.wav"), 8000), "boom"), 0);
  const std::string tune = writeWav(dir.file("tune.wav"), 16000);
  ASSERT_EQ(rm().loadMusic(tune, "menu"), 0);
  ASSERT_EQ(rm().loadMusic(tune, "level"), 0);
  qv::Sound *p_boom = rm().getSound("boom");
  qv::Music *p_music = rm().getMusic("level");
  ASSERT_TRUE(p_boom && p_music);

  qv::LogManager::getInstance().setLogLevel(5);
  p_boom->play(true);
  p_music->play(true);
  EXPECT_EQ(p_boom->getSound()->getStatus(), sf::Sound::Playing);
  EXPECT_EQ(p_music->getMusic()->getStatus(), sf::SoundSource::Playing);
  EXPECT_TRUE(p_boom->getSound()->getLoop() && p_music->getMusic()->getLoop());
  p_boom->stop();
  p_music->stop();
  EXPECT_EQ(p_boom->getSound()->getStatus(), sf::Sound::Stopped);
  EXPECT_EQ(p_music->getMusic()->getStatus(), sf::SoundSource::Stopped);
  expectLogged({"Sound::play(): Playing sound.", "Music::play(): Playing music.",
                "Music::stop(): Stopping music."});
  p_boom->play(false);
  p_music->play(false);
  EXPECT_FALSE(p_boom->getSound()->getLoop() || p_music->getMusic()->getLoop());

  const std::string wav = writeWav(dir.file("tiny.wav"), 16);
  while (rm().getSoundCount() < qv::MAX_SOUNDS) ASSERT_EQ(rm().loadSound(wav, "s"), 0);
  while (rm().getMusicCount() < qv::MAX_MUSICS) ASSERT_EQ(rm().loadMusic(wav, "m"), 0);
  EXPECT_EQ(rm().loadSound(wav, "one-too-many") + rm().loadMusic(wav, "one-too-many"), -2);
  expectLogged({"RM::loadSound(): Error! Unable to add more sounds (max is 100).",
                "RM::loadMusic(): Error! Unable to add more musics (max is 50)."});
  EXPECT_EQ(rm().getSoundCount() + rm().getMusicCount(), 150);

  rm().shutDown();
  EXPECT_EQ(rm().getSoundCount() + rm().getMusicCount(), 150);
  EXPECT_EQ(p_boom->getSound()->getStatus(), sf::Sound::Stopped);
  EXPECT_EQ(p_music->getMusic()->getStatus(), sf::SoundSource::Stopped);
  EXPECT_EQ(p_boom->getSound()->getBuffer()->getSampleCount(), 8000u);
  EXPECT_EQ(rm().loadSound(wav, "late") + rm().loadMusic(wav, "late"), -2);
  EXPECT_EQ(log->count("ResourceManager not started!"), 2);
  ASSERT_EQ(rm().startUp(), 0);
  EXPECT_EQ(rm().getSoundCount() + rm().getMusicCount(), 0);
  EXPECT_EQ(rm().getSound("boom"), nullptr);
  EXPECT_TRUE(log->contains("RM::getSound(): Warning! Sound 'boom' not found."));
}

TEST_F(SoundTest, FailedLoadsKeepTheCountsAndTheVoice) {
  const std::string missing = dir.file("missing.wav");
  const std::string junk = dir.write("junk.wav", "RIFF this is not a wave file");
  EXPECT_EQ(rm().loadSound(missing, "gone") + rm().loadSound(junk, "junk"), -2);
  // The slot is reused by the next load.
  ASSERT_EQ(rm().loadSound(writeWav(dir.file("ok.wav"), 100), "ok"), 0);
  EXPECT_EQ(rm().getSoundCount(), 1);
  EXPECT_EQ(rm().getSound("gone"), nullptr);
  // An empty label is refused before the file is looked at.
  EXPECT_EQ(rm().loadMusic(missing, "gone") + rm().loadMusic(junk, ""), -2);
  EXPECT_EQ(rm().getMusicCount(), 0);
  EXPECT_EQ(rm().getMusic("gone"), nullptr);
  const std::string no_sound = "RM::loadSound(): Error! Cannot load sound from file '";
  const std::string no_music = "RM::loadmusic(): Error! Cannot load music from file '";
  expectLogged({no_sound + missing + "'.", no_sound + junk + "'.", no_music + missing + "'.",
                "RM::loadMusic(): Error! Must provide label for music.",
                "RM::getMusic(): Warning! Music 'gone' not found."});
  EXPECT_FALSE(log->contains(no_music + junk + "'."));

  // A sound with nothing loaded only logs; a reload keeps the voice and
  // switches its samples, unless it fails.
  qv::LogManager::getInstance().setLogLevel(5);
  qv::Sound sound;
  sound.play();
  sound.stop();
  EXPECT_EQ(log->count("Sound::play(): Playing sound."), 1);
  EXPECT_EQ(sound.loadSound(missing), -1);
  EXPECT_EQ(sound.getSound(), nullptr);
  ASSERT_EQ(sound.loadSound(writeWav(dir.file("a.wav"), 300)), 0);
  sf::Sound *voice = sound.getSound();
  ASSERT_EQ(sound.loadSound(writeWav(dir.file("b.wav"), 700)), 0);
  EXPECT_EQ(sound.loadSound(missing), -1);
  EXPECT_EQ(sound.getSound(), voice);
  EXPECT_EQ(voice->getBuffer()->getSampleCount(), 700u);
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
    const std::vector<std::string> lines =
        qvtest::logMessages(qvtest::readFile(dir.file("quorvelle.log")));
    EXPECT_EQ(std::count(lines.begin(), lines.end(), note), notes) << driver;
    EXPECT_EQ(lines.size(), 6u + notes) << driver;  // otherwise only the banners
  }
}

}  // namespace
