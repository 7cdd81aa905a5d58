#ifndef QV_MUSIC_H
#define QV_MUSIC_H

#include <SFML/Audio/Music.hpp>
#include <string>

namespace qv {

// A labelled piece of music, streamed from its file while it plays.
class Music {
 public:
  Music();

  // Opens the file for streaming; 0 or -1 (the caller reports the failure).
  int loadMusic(std::string filename);
  void setLabel(std::string new_label);
  std::string getLabel() const;

  void play(bool loop = true);
  void stop();

  // The stream itself, for its status, volume or position.
  sf::Music *getMusic();

 private:
  Music(const Music &) = delete;
  Music &operator=(const Music &) = delete;

  sf::Music m_music;    // not open: the stream
  std::string m_label;  // "[Undefined]": name for lookups
};

}  // namespace qv

#endif
