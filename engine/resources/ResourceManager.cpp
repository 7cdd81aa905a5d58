#include "resources/ResourceManager.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <tuple>

#include "core/LogManager.h"
#include "core/bounds.h"
#include "core/utility.h"
#include "platform/audio.h"

namespace qv {

namespace {

// The readers' shared line counter: where in the current file the messages
// point. Reset by loadSprite for each file.
int s_line_number = 0;

// A number as sprite files write it: leading blanks, an optional sign, then
// digits; reading stops at the first other character and a text without
// leading digits reads as 0. Out-of-range values are clamped to int.
int readNumber(const std::string &text) {
  const long value = std::strtol(text.c_str(), nullptr, 10);
  return static_cast<int>(std::clamp<long>(value, INT_MIN, INT_MAX));
}

bool startsWith(const std::string &line, const std::string &key) {
  return line.compare(0, key.size(), key) == 0;
}

// What matchLineInt and matchLineStr share: every line starting with key is
// removed and gives parse(the text after key and one separator). A key with
// nothing after it has nothing to parse and gives none, as no match would.
// A later match wins, with a warning when an earlier one gave a value.
template <typename T, typename Parse>
T matchLine(std::vector<std::string> &lines, const char *key, T none, const char *caller,
            Parse parse) {
  const std::string k(key);
  T value = none;
  // The unmatched lines are moved down in one pass: a header of many
  // matching lines costs no more than its length.
  std::size_t kept = 0;
  for (std::string &line : lines) {
    if (!startsWith(line, k)) {
      if (&lines[kept] != &line) lines[kept] = std::move(line);
      kept++;
      continue;
    }
    if (value != none)
      LogManager::getInstance().writeLog(1, "%s: Warning! '%s' matches multiple lines.", caller,
                                         line.c_str());
    value = line.size() > k.size() ? T(parse(line.substr(k.size() + 1))) : none;
  }
  lines.resize(kept);
  return value;
}

std::string labelOf(const std::unique_ptr<Sprite> &p_sprite) {
  return p_sprite->getLabel();
}
std::string labelOf(const Sound &sound) {
  return sound.getLabel();
}
std::string labelOf(const Music &music) {
  return music.getLabel();
}

// The first of the count loaded items whose label is label, in load order;
// null, after the warning, when there is none.
template <typename T>
T *findByLabel(T *items, int count, const std::string &label, const char *looking,
               const char *missing) {
  LogManager &log = LogManager::getInstance();
  log.writeLog(5, looking, label.c_str());
  for (int i = 0; i < count; i++)
    if (labelOf(items[i]) == label) return &items[i];
  log.writeLog(missing, label.c_str());
  return nullptr;
}

void logFrames(const Sprite &sprite) {
  LogManager &log = LogManager::getInstance();
  if (log.getLogLevel() < 15) return;
  log.writeLog(15, "RM::loadSprite(): Sprite '%s' frames:", sprite.getLabel().c_str());
  const std::size_t width = static_cast<std::size_t>(std::max(sprite.getWidth(), 1));
  for (int i = 0; i < sprite.getFrameCount(); i++) {
    log.writeLog(15, "\tFrame %d:", i + 1);
    const std::string picture = sprite.getFrame(i).getString();
    for (std::size_t at = 0; at < picture.size(); at += width)
      log.writeLog(15, "\t%s", picture.substr(at, width).c_str());
  }
}

}  // namespace

// ---- lifecycle -------------------------------------------------------------------

ResourceManager::ResourceManager() : m_sprite_count(0), m_sound_count(0), m_music_count(0) {
  setType("ResourceManager");
}

ResourceManager::~ResourceManager() {
}

ResourceManager &ResourceManager::getInstance() {
  static ResourceManager resource_manager;
  return resource_manager;
}

int ResourceManager::startUp() {
  if (refuseSecondStart()) return -1;
  m_sprite_count = 0;
  m_sound_count = 0;
  m_music_count = 0;
  // Asked here, before anything that plays is made, so that without a device
  // the log says so once instead of the audio library at every load.
  if (!platform::audioOutputAvailable())
    LogManager::getInstance().writeLog("RM::startUp(): Note! No audio device: sound is off.");
  Manager::startUp();
  LogManager::getInstance().writeLog(5, "RM::startUp(): successfully started.");
  return 0;
}

void ResourceManager::shutDown() {
  for (int i = 0; i < m_sprite_count; i++) m_p_sprite[i].reset();
  m_sprite_count = 0;
  for (int i = 0; i < m_sound_count; i++) m_sound[i].stop();
  for (int i = 0; i < m_music_count; i++) m_music[i].stop();
  Manager::shutDown();
  LogManager::getInstance().writeLog(5, "RM::shutDown(): successfully stopped.");
}

int ResourceManager::getSpriteCount() const {
  return m_sprite_count;
}
int ResourceManager::getSoundCount() const {
  return m_sound_count;
}
int ResourceManager::getMusicCount() const {
  return m_music_count;
}

// ---- sprites ---------------------------------------------------------------------

int ResourceManager::loadSprite(std::string filename, std::string label) {
  LogManager &log = LogManager::getInstance();
  if (!isStarted()) {
    log.writeLog("%s not started!", getType().c_str());
    return -1;
  }
  if (m_sprite_count == MAX_SPRITES) {
    log.writeLog("RM::loadRobustSprite(): Error! Cannot add more Sprites (max is %d).",
                 MAX_SPRITES);
    log.writeLog("RM::loadRobustSprite(): Sprite '%s' not loaded.", label.c_str());
    return -1;
  }
  log.writeLog(1, "RM::loadSprite(): Loading sprite '%s'.", filename.c_str());

  std::ifstream file(filename);
  if (!file.is_open()) {
    log.writeLog("RM::loadSprite(): Error! Cannot open file '%s'.", filename.c_str());
    log.writeLog("RM::loadSprite(): Sprite '%s' not loaded.", label.c_str());
    return -1;
  }

  // The first line tells the format; each reader starts again from the top.
  s_line_number = 0;
  const std::string first = getLine(file, false);
  file.clear();
  file.seekg(0);

  Sprite *p_sprite = nullptr;
  if (first == "<HEADER>") {
    log.writeLog(5, "RM::loadSprite(): assuming robust sprite file format.");
    p_sprite = loadRobustSprite(file);
  } else if (readNumber(first) >= 1) {
    log.writeLog(5, "RM::loadSprite(): assuming simple sprite file format.");
    p_sprite = loadSimpleSprite(file);
  } else {
    log.writeLog("RM::loadSprite(): Error! Unknown sprite file format.");
    log.writeLog("RM::loadSprite(): First line is '%s'.", first.c_str());
  }
  if (!p_sprite) {
    log.writeLog("RM::loadSprite(): Sprite '%s' NOT loaded.", label.c_str());
    return -1;
  }

  p_sprite->setLabel(label);
  m_p_sprite[m_sprite_count].reset(p_sprite);
  m_sprite_count++;
  logFrames(*p_sprite);
  log.writeLog(5, "RM::loadSprite(): Sprite '%s' loaded.", label.c_str());
  return 0;
}

Sprite *ResourceManager::loadSimpleSprite(std::ifstream &file) {
  LogManager &log = LogManager::getInstance();
  if (!isStarted()) {
    log.writeLog("%s not started!", getType().c_str());
    return nullptr;
  }

  // ---- the five header lines, each checked as soon as it is read ----
  static const char *const MISSING[] = {
      "\tMissing frames (an integer).", "\tMissing width (an integer).",
      "\tMissing height (an integer).", "\tMissing slowdown (an integer).",
      "\tMissing color (a string)."};
  int number[4] = {0, 0, 0, 0};  // frames, width, height, slowdown
  Color color = WHITE;
  for (int i = 0; i < 5; i++) {
    const std::string line = getLine(file, true);
    log.writeLog(20, "\tLine %2d: '%s'", s_line_number, line.c_str());
    if (line.empty()) {
      log.writeLog("RM::loadSimpleSprite(): Error! Unexpected end of file.");
      log.writeLog("%s", MISSING[i]);
      return nullptr;
    }
    if (i == 4) {
      if (!colorFromName(line, color)) {
        log.writeLog("RM::loadSimpleSprite(): Error line %d! Unrecognized color '%s'.",
                     s_line_number, line.c_str());
        log.writeLog("  Valid colors are: black, red, green, yellow,");
        log.writeLog("                    blue, magenta, cyan or white.");
        return nullptr;
      }
      break;
    }
    number[i] = readNumber(line);
    if (i == 0 && number[i] < 1) {
      log.writeLog("RM::loadSimpleSprite(): Error line %d! Number of frames is %d.", s_line_number,
                   number[i]);
      return nullptr;
    }
    static const char *const INVALID[] = {
        nullptr, "RM::loadSimpleSprite(): Error line %d! Width is '%s'.",
        "RM::loadSimpleSprite(): Error line %d! Height is '%s'.",
        "RM::loadSimpleSprite(): Error line %d! Slowdown is '%s'."};
    if (i > 0 && number[i] < (i == 3 ? 0 : 1)) {
      log.writeLog(INVALID[i], s_line_number, line.c_str());
      return nullptr;
    }
    static const int MOST[] = {SPRITE_FRAMES_MAX, SPRITE_SIDE_MAX, SPRITE_SIDE_MAX,
                               SPRITE_SLOWDOWN_MAX};
    if (number[i] > MOST[i]) {
      if (i == 0)
        log.writeLog("RM::loadSimpleSprite(): Error line %d! Number of frames is %d.",
                     s_line_number, number[i]);
      else
        log.writeLog(INVALID[i], s_line_number, line.c_str());
      log.writeLog("\tAt most %d.", MOST[i]);
      return nullptr;
    }
  }
  const int frames = number[0], width = number[1], height = number[2], slowdown = number[3];
  log.writeLog(5, "\t      Frames: %d", frames);
  log.writeLog(5, "\t       Width: %d", width);
  log.writeLog(5, "\t      Height: %d", height);
  log.writeLog(5, "\t    Slowdown: %d", slowdown);
  log.writeLog(5, "\t       Color: %s", colorToString(color).c_str());

  // ---- the frames ----
  // Collected before the sprite is made, so its size follows what the file
  // really holds: a frame count far beyond the file's content fails on the
  // missing rows instead of asking for memory first.
  std::vector<Frame> read_frames;
  for (int f = 1; f <= frames; f++) {
    log.writeLog(15, "RM::loadSimpleSprite(): Reading frame %d of %d.", f, frames);
    std::string picture;
    for (int row = 1; row <= height; row++) {
      const std::string line = getLine(file, true);
      if (line.empty()) {
        log.writeLog("RM::loadSimpleSprite(): Error! Unexpected end of file.");
        log.writeLog("\tReading frame %d of %d, row %d of %d.", f, frames, row, height);
        return nullptr;
      }
      if (line.size() != static_cast<std::size_t>(width)) {
        log.writeLog("RM::loadSimpleSprite(): Error line %d!", s_line_number);
        log.writeLog("\tLine %2d: '%s'", s_line_number, line.c_str());
        log.writeLog("\tWidth is %d, expected %d.", static_cast<int>(line.size()), width);
        return nullptr;
      }
      log.writeLog(20, "\tLine %2d: '%s'", s_line_number, line.c_str());
      picture += line;
    }
    read_frames.emplace_back(width, height, std::move(picture));
  }

  // ---- nothing may follow but one line end ----
  if (!file.eof()) {
    const std::string extra = getLine(file, true);
    if (!(file.eof() && extra.empty())) {
      log.writeLog("RM::loadSimpleSprite(): Error line %d!", s_line_number);
      log.writeLog("\tExtra file data: '%s'", extra.c_str());
      return nullptr;
    }
  }

  std::unique_ptr<Sprite> p_sprite(new Sprite(frames));
  if (p_sprite->getMaxFrameCount() != frames) {
    log.writeLog("RM::loadSimpleSprite(): Error! Unable to create Sprite.");
    return nullptr;
  }
  p_sprite->setWidth(width);
  p_sprite->setHeight(height);
  p_sprite->setSlowdown(slowdown);
  p_sprite->setColor(color);
  p_sprite->setTransparency(0);
  for (Frame &frame : read_frames) {
    if (p_sprite->addFrame(std::move(frame)) != 0) {
      log.writeLog("RM::loadSimpleSprite(): Error! Cannot add Frame.");
      log.writeLog("\tFramecount is %d, max is %d.", p_sprite->getFrameCount() + 1, frames);
      return nullptr;
    }
  }
  return p_sprite.release();
}

Sprite *ResourceManager::loadRobustSprite(std::ifstream &file) {
  LogManager &log = LogManager::getInstance();
  if (!isStarted()) {
    log.writeLog("%s not started!", getType().c_str());
    return nullptr;
  }

  // ---- header ----
  std::vector<std::string> header = readData(file, "HEADER");
  if (header.empty()) return nullptr;
  log.writeLog(20, "ResourceManager::loadRobustSprite(): After header, line number: '%d'",
               s_line_number);

  const int frames = matchLineInt(header, "frames");
  const int width = matchLineInt(header, "width");
  const int height = matchLineInt(header, "height");
  const std::pair<const char *, int> required[] = {
      {"frames", frames}, {"width", width}, {"height", height}};
  for (const auto &key : required) {
    if (key.second == -1) {
      log.writeLog("RM::loadRobustSprite(): Error! Missing '%s' in header.", key.first);
      return nullptr;
    }
  }

  std::string color_name = matchLineStr(header, "color");
  if (color_name.empty()) {
    log.writeLog(5, "RM::loadRobustSprite(): Warning! No '%s' in header.", "color");
    color_name = "default";
  }

  char transparency = 0;
  const std::string transparency_text = matchLineStr(header, "transparency");
  if (transparency_text.empty()) {
    log.writeLog(5, "RM::loadRobustSprite(): Note! No '%s' in header.", "transparency");
  } else if (transparency_text == "\" \"") {
    // A bare blank would be invisible in the file, so it is written quoted.
    transparency = ' ';
    log.writeLog(5, "RM::loadRobustSprite(): transparency is 'space'");
  } else {
    transparency = transparency_text[0];
  }

  int slowdown = matchLineInt(header, "slowdown");
  if (slowdown == -1) {
    log.writeLog(5, "RM::loadRobustSprite(): Note! No '%s' in header.", "slowdown");
    slowdown = 0;
  }
  const std::tuple<const char *, int, int> bounded[] = {
      {"frames", frames, SPRITE_FRAMES_MAX},
      {"width", width, SPRITE_SIDE_MAX},
      {"height", height, SPRITE_SIDE_MAX},
      {"slowdown", slowdown, SPRITE_SLOWDOWN_MAX}};
  for (const auto &[key, value, most] : bounded) {
    if (value > most) {
      log.writeLog("RM::loadRobustSprite(): Error! '%s' is %d, at most %d.", key, value, most);
      return nullptr;
    }
  }

  if (!header.empty()) {
    log.writeLog(1, "RM::loadRobustSprite(): Warning! Unused HEADER lines:");
    for (const std::string &line : header) log.writeLog(1, "\t'%s'", line.c_str());
  }

  log.writeLog(5, "\t      Frames: %d", frames);
  log.writeLog(5, "\t       Width: %d", width);
  log.writeLog(5, "\t      Height: %d", height);
  log.writeLog(5, "\t    Slowdown: %d", slowdown);
  if (transparency)
    log.writeLog(5, "\tTransparency: '%c'", transparency);
  else
    log.writeLog(5, "\tTransparency: (none)");

  // ---- body ----
  const int body_base = s_line_number;
  std::vector<std::string> body = readData(file, "BODY");
  if (body.empty()) return nullptr;
  log.writeLog(20, "ResourceManager::loadRobustSprite(): After reading body: line number is '%d'",
               s_line_number);

  // Every frame takes at least its "end" line, so no more frames than body
  // lines can ever be read: the sprite is never sized beyond what the file
  // holds, however large the declared count.
  const int capacity = frames >= 0 ? std::min(frames, static_cast<int>(body.size())) : frames;
  std::unique_ptr<Sprite> p_sprite(new Sprite(capacity));
  if (p_sprite->getMaxFrameCount() != capacity) {
    log.writeLog("RM::loadRobustSprite(): Error! Unable to create Sprite.");
    return nullptr;
  }
  p_sprite->setWidth(width);
  p_sprite->setHeight(height);
  p_sprite->setSlowdown(slowdown);
  p_sprite->setTransparency(transparency);

  Color color = WHITE;
  if (color_name != "default" && !colorFromName(color_name, color)) {
    log.writeLog("RM::loadRobustSprite(): Error! Unrecognized color '%s'.", color_name.c_str());
    log.writeLog("  Valid colors are: black, red, green, yellow,");
    log.writeLog("                    blue, magenta, cyan and white.");
    return nullptr;
  }
  p_sprite->setColor(color);
  log.writeLog(5, "\t       Color: %s", colorToString(color).c_str());

  std::size_t at = 0;  // the body's first line not yet read
  for (int i = 0; i < frames; i++) {
    Frame frame = readFrameAt(body, at, width, height, body_base + 2 + i * height);
    if (frame.isEmpty()) {
      log.writeLog("RM::loadRobustSprite(): Error! No frame data to add.");
      return nullptr;
    }
    if (p_sprite->addFrame(std::move(frame)) != 0) {
      log.writeLog("RM::loadRobustSprite(): Error! Cannot add Frame.");
      log.writeLog("\tFramecount is %d, max is %d", p_sprite->getFrameCount() + 1, frames);
      return nullptr;
    }
  }
  if (at < body.size()) {
    log.writeLog("RM::loadRobustSprite(): Error! Extra BODY:");
    for (; at < body.size(); at++) {
      log.writeLog("\tLine %d: %s", s_line_number, body[at].c_str());
      s_line_number++;
    }
    return nullptr;
  }

  // ---- footer ----
  std::vector<std::string> footer = readData(file, "FOOTER");
  if (footer.empty()) return nullptr;
  if (matchLineStr(footer, "version").empty()) {
    log.writeLog("RM::loadRobustSprite(): Error! Missing '%s' in FOOTER (line %d).", "version",
                 s_line_number);
    return nullptr;
  }
  if (!footer.empty()) {
    log.writeLog(1, "RM::loadRobustSprite(): Warning! Unused FOOTER lines:");
    for (const std::string &line : footer) log.writeLog(1, "\t'%s'", line.c_str());
  }
  return p_sprite.release();
}

Sprite *ResourceManager::getSprite(std::string label) const {
  const std::unique_ptr<Sprite> *p_found = findByLabel(
      m_p_sprite.data(), m_sprite_count, label, "RM::getSprite(): Looking for sprite '%s'.",
      "RM::getSprite(): Warning! Sprite '%s' not found.");
  return p_found ? p_found->get() : nullptr;
}

// ---- sounds and music ------------------------------------------------------------

int ResourceManager::loadSound(std::string filename, std::string label) {
  LogManager &log = LogManager::getInstance();
  if (!isStarted()) {
    log.writeLog("%s not started!", getType().c_str());
    return -1;
  }
  if (m_sound_count == MAX_SOUNDS) {
    log.writeLog("RM::loadSound(): Error! Unable to add more sounds (max is %d).", MAX_SOUNDS);
    return -1;
  }
  // A failed load leaves the count alone, so the next load reuses the slot.
  Sound &slot = m_sound[m_sound_count];
  if (slot.loadSound(filename) != 0) {
    log.writeLog("RM::loadSound(): Error! Cannot load sound from file '%s'.", filename.c_str());
    return -1;
  }
  slot.setLabel(label);
  log.writeLog(1, "RM::loadSound(): Sound '%s' successfully loaded.", label.c_str());
  m_sound_count++;
  return 0;
}

Sound *ResourceManager::getSound(std::string label) {
  return findByLabel(m_sound.data(), m_sound_count, label,
                     "RM::getSound(): Looking for sound '%s'.",
                     "RM::getSound(): Warning! Sound '%s' not found.");
}

int ResourceManager::loadMusic(std::string filename, std::string label) {
  LogManager &log = LogManager::getInstance();
  if (!isStarted()) {
    log.writeLog("%s not started!", getType().c_str());
    return -1;
  }
  if (m_music_count == MAX_MUSICS) {
    log.writeLog("RM::loadMusic(): Error! Unable to add more musics (max is %d).", MAX_MUSICS);
    return -1;
  }
  if (label.empty()) {
    log.writeLog("RM::loadMusic(): Error! Must provide label for music.");
    return -1;
  }
  Music &slot = m_music[m_music_count];
  if (slot.loadMusic(filename) != 0) {
    log.writeLog("RM::loadmusic(): Error! Cannot load music from file '%s'.", filename.c_str());
    return -1;
  }
  slot.setLabel(label);
  log.writeLog(1, "RM::loadMusic(): Music '%s' successfully loaded.", label.c_str());
  m_music_count++;
  return 0;
}

Music *ResourceManager::getMusic(std::string label) {
  return findByLabel(m_music.data(), m_music_count, label,
                     "RM::getMusic(): Looking for music '%s'.",
                     "RM::getMusic(): Warning! Music '%s' not found.");
}

// ---- sprite file reading ---------------------------------------------------------

std::string getLine(std::ifstream &file, bool count) {
  if (!file.good()) {
    LogManager::getInstance().writeLog("getLine(): Error! Unexpected end of file.");
    return "";
  }
  std::string line;
  std::getline(file, line);
  if (!line.empty() && line.back() == '\r') line.pop_back();
  if (count) s_line_number++;
  return line;
}

std::vector<std::string> readData(std::ifstream &file, std::string name) {
  LogManager &log = LogManager::getInstance();
  const std::string begin_tag = "<" + name + ">";
  const std::string end_tag = "</" + name + ">";

  std::string line = getLine(file, true);
  if (line != begin_tag) {
    log.writeLog("readData(): Error line %d! Expected '%s', have '%s'.", s_line_number,
                 begin_tag.c_str(), line.c_str());
    return {};
  }
  std::vector<std::string> data;
  line = getLine(file, false);
  while (line != end_tag) {
    if (line.empty()) {
      log.writeLog("readData(): Error! Stop at line %d, never encountered '%s'.", s_line_number,
                   end_tag.c_str());
      return {};
    }
    data.push_back(line);
    line = getLine(file, true);
  }
  s_line_number++;
  return data;
}

int matchLineInt(std::vector<std::string> &lines, const char *key) {
  return matchLine(lines, key, -1, "matchLineInt()", readNumber);
}

std::string matchLineStr(std::vector<std::string> &lines, const char *key) {
  return matchLine(lines, key, std::string(), "matchLineStr()",
                   [](const std::string &text) { return text; });
}

Frame readFrame(std::vector<std::string> &lines, int width, int height, int line_number) {
  std::size_t at = 0;
  Frame frame = readFrameAt(lines, at, width, height, line_number);
  lines.erase(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(at));
  return frame;
}

Frame readFrameAt(const std::vector<std::string> &lines, std::size_t &at, int width, int height,
                  int line_number) {
  LogManager &log = LogManager::getInstance();
  int n = line_number;
  std::string picture;
  // Rows read count as taken whether or not the frame completes.
  for (int row = 0; row < height; row++) {
    if (at == lines.size()) {
      log.writeLog("\tError! Line %d: No more frame data before 'end'.", n + 1);
      return Frame();
    }
    const std::string &line = lines[at];
    n++;
    log.writeLog(20, "\tLine %2d: '%s'", n, line.c_str());
    if (line.size() != static_cast<std::size_t>(width)) {
      log.writeLog("\tError! Line %d: Line length is %d (frame width is %d).", n,
                   static_cast<int>(line.size()), width);
      log.writeLog("\tLine %d: '%s'", n, line.c_str());
      return Frame();
    }
    picture += line;
    at++;
  }
  if (at == lines.size()) {
    log.writeLog("\tError! Line %d: No more frame data before 'end'.", n + 1);
    return Frame();
  }
  if (lines[at] != "end") {
    log.writeLog("\tError! Line %d: Expected '%s'.", n + 1, "end");
    log.writeLog("\tLine %d: '%s'", n + 1, lines[at].c_str());
    return Frame();
  }
  at++;
  return Frame(width, height, std::move(picture));
}

}  // namespace qv
