#include "resources/Music.h"

#include <utility>

#include "core/LogManager.h"
#include "platform/audio.h"
#include "resources/Sound.h"

namespace qv {

Music::Music() : m_label("[Undefined]") {
}

Music::~Music() = default;

int Music::loadMusic(std::string filename) {
  if (!platform::audioOutputAvailable()) return isSoundFile(filename) ? 0 : -1;
  if (!m_p_music) m_p_music = std::make_unique<sf::Music>();
  return m_p_music->openFromFile(filename) ? 0 : -1;
}

void Music::setLabel(std::string new_label) {
  m_label = std::move(new_label);
}

std::string Music::getLabel() const {
  return m_label;
}

void Music::play(bool loop) {
  LogManager::getInstance().writeLog(5, "Music::play(): Playing music.");
  if (!m_p_music) return;
  m_p_music->play();
  m_p_music->setLoop(loop);
}

void Music::stop() {
  LogManager::getInstance().writeLog(5, "Music::stop(): Stopping music.");
  if (m_p_music) m_p_music->stop();
}

sf::Music *Music::getMusic() {
  return m_p_music.get();
}

}  // namespace qv
