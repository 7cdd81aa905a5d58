#ifndef QV_SOUND_H
#define QV_SOUND_H

#include <SFML/Audio/SoundBuffer.hpp>
#include <memory>
#include <string>

namespace sf {
class Sound;
}

namespace qv {

// A labelled sound effect, decoded into memory once and played from there.
class Sound {
 public:
  Sound();
  ~Sound();

  // Decodes the whole file; 0 or -1 (the caller reports the failure). The
  // voice is made on the first successful load and reused by later ones.
  int loadSound(std::string filename);
  void setLabel(std::string new_label);
  std::string getLabel() const;

  // Without a voice (nothing loaded yet) only the log line is written.
  void play(bool loop = false);
  void stop();

  // The voice, or null before the first successful load.
  sf::Sound *getSound() const;

 private:
  Sound(const Sound &) = delete;
  Sound &operator=(const Sound &) = delete;

  std::unique_ptr<sf::Sound> m_p_sound;  // null: the voice, made on first load
  sf::SoundBuffer m_sound_buffer;        // empty: the decoded samples
  std::string m_label;                   // "[Undefined]": name for lookups
};

}  // namespace qv

#endif
