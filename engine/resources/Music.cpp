#include "resources/Music.h"

#include <utility>

#include "core/LogManager.h"

namespace qv {

Music::Music() : m_label("[Undefined]") {
}

int Music::loadMusic(std::string filename) {
  return m_music.openFromFile(filename) ? 0 : -1;
}

void Music::setLabel(std::string new_label) {
  m_label = std::move(new_label);
}

std::string Music::getLabel() const {
  return m_label;
}

void Music::play(bool loop) {
  LogManager::getInstance().writeLog(5, "Music::play(): Playing music.");
  m_music.play();
  m_music.setLoop(loop);
}

void Music::stop() {
  LogManager::getInstance().writeLog(5, "Music::stop(): Stopping music.");
  m_music.stop();
}

sf::Music *Music::getMusic() {
  return &m_music;
}

}  // namespace qv
