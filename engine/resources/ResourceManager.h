#ifndef QV_RESOURCE_MANAGER_H
#define QV_RESOURCE_MANAGER_H

#include <array>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "core/Manager.h"
#include "graphics/Frame.h"
#include "graphics/Sprite.h"
#include "resources/Music.h"
#include "resources/Sound.h"

namespace qv {

const int MAX_SPRITES = 1000;
const int MAX_SOUNDS = 100;
const int MAX_MUSICS = 50;

// Loads every asset once and hands out pointers by label: sprites from text
// files (a simple and a sectioned format), sound effects and music from audio
// files. A broken sprite file is reported with line numbers and the offending
// text and is not loaded at all. Pointers stay valid until shutDown. Where
// no audio device opens, start-up logs it once and sounds and music load and
// resolve by label but play silently.
class ResourceManager : public Manager {
 public:
  static ResourceManager &getInstance();
  ~ResourceManager() override;

  int startUp() override;
  // Frees the sprites and stops every sound and music; their data stays
  // loaded until the program ends.
  void shutDown() override;

  // Reads a sprite file in either format and keeps the sprite under label.
  int loadSprite(std::string filename, std::string label);
  // The first sprite loaded under label, or null.
  Sprite *getSprite(std::string label) const;
  int loadSound(std::string filename, std::string label);
  Sound *getSound(std::string label);
  // The file is opened for streaming, not read; label must not be empty.
  int loadMusic(std::string filename, std::string label);
  Music *getMusic(std::string label);

  // The two readers, from the start of an open sprite file; a new sprite the
  // caller owns, or null after logging why.
  Sprite *loadSimpleSprite(std::ifstream &file);
  Sprite *loadRobustSprite(std::ifstream &file);

  int getSpriteCount() const;
  int getSoundCount() const;
  int getMusicCount() const;

 private:
  ResourceManager();
  ResourceManager(const ResourceManager &) = delete;
  ResourceManager &operator=(const ResourceManager &) = delete;

  std::array<std::unique_ptr<Sprite>, MAX_SPRITES> m_p_sprite;  // owned, load order
  int m_sprite_count;                                           // 0: slots used
  std::array<Sound, MAX_SOUNDS> m_sound;                        // load order
  int m_sound_count;                                            // 0: slots used
  std::array<Music, MAX_MUSICS> m_music;                        // load order
  int m_music_count;                                            // 0: slots used
};

// ---- sprite file reading -------------------------------------------------------
// The readers share one line counter, reset by loadSprite for each file and
// used only in messages (so they are not reentrant).

// The next line without its line end (LF or CR-LF); counts it if count is
// true. "" for an empty line and at the end of the file.
std::string getLine(std::ifstream &file, bool count);
// The lines between "<name>" and "</name>", or an empty list after logging
// why (wrong opening line, or an empty line or the file end before closing).
std::vector<std::string> readData(std::ifstream &file, std::string name);
// Removes every line starting with key and returns the value of the last
// one: the decimal number after key and one separator, or -1 without a match.
int matchLineInt(std::vector<std::string> &lines, const char *key);
// As matchLineInt for text values; "" without a match.
std::string matchLineStr(std::vector<std::string> &lines, const char *key);
// Takes height rows of width characters and an "end" line off the front of
// lines; an empty frame after logging why. line_number places the messages.
Frame readFrame(std::vector<std::string> &lines, int width, int height, int line_number);
// As readFrame, reading from lines[at] on without removing anything: at
// moves past the rows taken (and the "end" line of a complete frame).
Frame readFrameAt(const std::vector<std::string> &lines, std::size_t &at, int width, int height,
                  int line_number);

}  // namespace qv

#endif
