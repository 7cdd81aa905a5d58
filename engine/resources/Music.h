#ifndef QV_MUSIC_H
#define QV_MUSIC_H

#include <SFML/Audio/Music.hpp>
#include <memory>
#include <string>

namespace qv {

// A labelled piece of music, streamed from its file while it plays. Without
// an audio device (platform::audioOutputAvailable) loads only check the file
// and play and stop do nothing but log.
class Music {
 public:
  Music();
  ~Music();

  // Opens the file for streaming; 0 or -1 (the caller reports the failure).
  int loadMusic(std::string filename);
  void setLabel(std::string new_label);
  std::string getLabel() const;

  void play(bool loop = true);
  void stop();

  // The stream itself, for its status, volume or position; null before the
  // first load and without sound.
  sf::Music *getMusic();

 private:
  Music(const Music &) = delete;
  Music &operator=(const Music &) = delete;

  // Made on the first load: it asks the audio library for the output device.
  std::unique_ptr<sf::Music> m_p_music;  // null: the stream
  std::string m_label;                   // "[Undefined]": name for lookups
};

}  // namespace qv

#endif
