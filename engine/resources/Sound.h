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
// Without an audio device (platform::audioOutputAvailable) it stays silent:
// loads only check the file, so labels still resolve, and nothing plays.
class Sound {
 public:
  Sound();
  ~Sound();

  // Decodes the whole file; 0 or -1 (the caller reports the failure). The
  // voice is made on the first successful load and reused by later ones.
  int loadSound(std::string filename);
  void setLabel(std::string new_label);
  std::string getLabel() const;

  // Without a voice (nothing loaded yet, or no sound) only the log line is
  // written.
  void play(bool loop = false);
  void stop();

  // The voice, or null before the first successful load and without sound.
  sf::Sound *getSound() const;

 private:
  Sound(const Sound &) = delete;
  Sound &operator=(const Sound &) = delete;

  // Both are made on the first load: each asks the audio library for the
  // output device, which must not happen where there is none.
  std::unique_ptr<sf::SoundBuffer> m_p_sound_buffer;  // null: the decoded samples
  std::unique_ptr<sf::Sound> m_p_sound;               // null: the voice, made on first load
  std::string m_label;                                // "[Undefined]": name for lookups
};

// Whether the file opens as sound data the audio module can decode (only its
// header is read); what a silent load checks instead of decoding.
bool isSoundFile(const std::string &filename);

}  // namespace qv

#endif
