#include "resources/Sound.h"

#include <SFML/Audio/InputSoundFile.hpp>
#include <SFML/Audio/Sound.hpp>
#include <new>
#include <utility>

#include "core/LogManager.h"
#include "platform/audio.h"

namespace qv {

Sound::Sound() : m_label("[Undefined]") {
}

// The voice must go before the buffer it plays from.
Sound::~Sound() {
  m_p_sound.reset();
}

int Sound::loadSound(std::string filename) {
  if (!platform::audioOutputAvailable()) return isSoundFile(filename) ? 0 : -1;
  if (!m_p_sound_buffer) m_p_sound_buffer = std::make_unique<sf::SoundBuffer>();
  if (!m_p_sound_buffer->loadFromFile(filename)) return -1;
  if (!m_p_sound) {
    m_p_sound.reset(new (std::nothrow) sf::Sound(*m_p_sound_buffer));
    if (!m_p_sound) {
      LogManager::getInstance().writeLog("Sound::loadSound(): Error! Cannot allocate m_p_sound.");
      return -1;
    }
  } else {
    // Attached again explicitly so the voice plays the new samples whatever
    // the audio library does with voices on a reload.
    m_p_sound->setBuffer(*m_p_sound_buffer);
  }
  return 0;
}

void Sound::setLabel(std::string new_label) {
  m_label = std::move(new_label);
}

std::string Sound::getLabel() const {
  return m_label;
}

void Sound::play(bool loop) {
  LogManager::getInstance().writeLog(5, "Sound::play(): Playing sound.");
  if (!m_p_sound) return;
  m_p_sound->play();
  m_p_sound->setLoop(loop);
}

void Sound::stop() {
  if (m_p_sound) m_p_sound->stop();
}

sf::Sound *Sound::getSound() const {
  return m_p_sound.get();
}

bool isSoundFile(const std::string &filename) {
  sf::InputSoundFile file;
  return file.openFromFile(filename);
}

}  // namespace qv
