#include "core/Config.h"

#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <new>
#include <utility>
#include <vector>

#include "core/LogManager.h"
#include "core/bounds.h"
#include "core/utility.h"

namespace qv {

namespace {

const float DEFAULT_FONT_SCALE = 2.0f;

// The items of the last parse; an empty text searches them again.
std::vector<std::pair<std::string, std::string>> g_items;

// Runs of characters other than ':' in piece, at most two (key and value).
std::vector<std::string> colonTokens(const std::string &piece) {
  std::vector<std::string> tokens;
  size_t pos = 0;
  while (tokens.size() < 2) {
    size_t start = piece.find_first_not_of(':', pos);
    if (start == std::string::npos) break;
    size_t end = piece.find(':', start);
    if (end == std::string::npos) end = piece.size();
    tokens.push_back(piece.substr(start, end - start));
    pos = end;
  }
  return tokens;
}

void parseItems(const std::string &text) {
  const LogManager &log = LogManager::getInstance();
  g_items.clear();
  std::string clean;
  for (char c : text)
    if (!std::isspace(static_cast<unsigned char>(c))) clean += c;
  size_t capacity = 1;
  for (char c : clean)
    if (c == ',') capacity++;
  log.writeLog(25, "match(): number of elements allocated is %d", static_cast<int>(capacity));
  try {
    g_items.reserve(capacity);
  } catch (const std::bad_alloc &) {
    log.writeLog("match(): unable to allocate key array!");
    return;
  }
  int count = 0;
  size_t pos = 0;
  while (pos <= clean.size()) {
    size_t comma = clean.find(',', pos);
    if (comma == std::string::npos) comma = clean.size();
    const char *p_element = clean.c_str() + pos;
    std::string piece = clean.substr(pos, comma - pos);
    pos = comma + 1;
    if (piece.empty()) continue;
    log.writeLog(25, "\titem number %d", count);
    log.writeLog(28, "\tp_element is '%s' (%p)", piece.c_str(),
                 static_cast<const void *>(p_element));
    std::vector<std::string> tokens = colonTokens(piece);
    log.writeLog(28, "\ttoken is '%s' (%p)", tokens.empty() ? "(null)" : tokens[0].c_str(),
                 static_cast<const void *>(tokens.empty() ? nullptr : tokens[0].c_str()));
    if (tokens.empty()) break;
    log.writeLog(25, "\tkey %s", tokens[0].c_str());
    std::string value = tokens.size() > 1 ? tokens[1] : "";
    log.writeLog(25, "\tval %s", value.c_str());
    g_items.emplace_back(tokens[0], value);
    count++;
  }
  log.writeLog(25, "match(): parsed.");
  for (size_t i = 0; i < g_items.size(); i++)
    log.writeLog(28, "\t%d  %s : %s", static_cast<int>(i), g_items[i].first.c_str(),
                 g_items[i].second.c_str());
}

// A setting over its bound takes the bound, after a line saying so.
void limitSetting(const char *key, int &field, int most) {
  if (field <= most) return;
  LogManager::getInstance().writeLog("loadConfig(): Warning! %s %d is over %d; using %d.", key,
                                     field, most, most);
  field = most;
}

// The font scale is kept to glyphs that fit a window; no number at all
// gives the default.
void limitFontScale(float &scale) {
  const float limited = std::isnan(scale)
                            ? DEFAULT_FONT_SCALE
                            : std::fmin(std::fmax(scale, FONT_SCALE_MIN), FONT_SCALE_MAX);
  if (limited == scale) return;
  LogManager::getInstance().writeLog(
      "loadConfig(): Warning! font_scale %g out of range [%g, %g]; using %g.",
      static_cast<double>(scale), static_cast<double>(FONT_SCALE_MIN),
      static_cast<double>(FONT_SCALE_MAX), static_cast<double>(limited));
  scale = limited;
}

}  // namespace

std::string match(std::string str, std::string find) {
  const LogManager &log = LogManager::getInstance();
  log.writeLog(25, "match(\"%s\", \"%s\")", str.c_str(), find.c_str());
  if (!str.empty()) parseItems(str);
  log.writeLog(25, "match(): Looking for match '%s' among %d items.", find.c_str(),
               static_cast<int>(g_items.size()));
  for (size_t i = 0; i < g_items.size(); i++) {
    log.writeLog(28, "match(): %d: %s == %s?", static_cast<int>(i), g_items[i].first.c_str(),
                 find.c_str());
    if (g_items[i].first == find) return g_items[i].second;
  }
  return "";
}

Config::Config() {
  setDefaults();
}

Config &Config::getInstance() {
  static Config config;
  return config;
}

void Config::setDefaults() {
  m_config_text.clear();
  m_window_horizontal_pixels = 1024;
  m_window_vertical_pixels = 768;
  m_window_horizontal_chars = 80;
  m_window_vertical_chars = 24;
  m_window_style = 5;
  m_window_state = 0;
  m_window_background_color = BLACK;
  m_frame_time = 33;
  m_font_scale = DEFAULT_FONT_SCALE;
  m_window_title = "Quorvelle";
  m_show_mouse = false;
  m_headless = false;
  m_font_file = "qv-font.ttf";
  m_logfile = "quorvelle.log";
  m_random_seed = 0;
  m_networking = true;
  m_quadtree_threshold = 1;
  m_quadtree_depth = 10;
  m_grid_width = 20;
  m_grid_height = 8;
  m_signals = true;
  m_log_level = 0;
}

std::string Config::readConfig() const {
  const char *env_name = std::getenv("QUORVELLE_CONFIG");
  std::string file_name = env_name ? env_name : "qv-config.txt";
  std::ifstream file(file_name);
  if (!file) {
    LogManager::getInstance().writeLog(
        1, "Config::readConfig(): Cannot open Quorvelle configuration file '%s'.",
        file_name.c_str());
    return "";
  }
  std::string text, line;
  while (std::getline(file, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (line.empty() || line[0] == '#') continue;
    text += line;
  }
  return text;
}

std::string Config::match(std::string key) const {
  return qv::match(m_config_text, key);
}

void Config::loadConfig(std::string config_text) {
  // Every load starts from the defaults, so the result depends only on the
  // text and never on what an earlier load left behind.
  setDefaults();
  m_config_text = config_text.empty() ? readConfig() : config_text;
  // An empty text would make match() search a previous parse: apply nothing.
  if (m_config_text.empty()) return;
  const LogManager &log = LogManager::getInstance();
  auto setInt = [this](const char *key, int &field) {
    std::string value = match(key);
    if (!value.empty()) field = std::atoi(value.c_str());
  };
  auto setBool = [this](const char *key, bool &field) {
    std::string value = match(key);
    if (!value.empty()) field = (value == "true");
  };
  auto setString = [this](const char *key, std::string &field) {
    std::string value = match(key);
    if (!value.empty()) field = value;
  };

  setInt("frame_time", m_frame_time);
  std::string value = match("font_scale");
  if (!value.empty()) m_font_scale = static_cast<float>(std::atof(value.c_str()));
  setInt("window_horizontal_pixels", m_window_horizontal_pixels);
  setInt("window_vertical_pixels", m_window_vertical_pixels);
  setInt("window_horizontal_chars", m_window_horizontal_chars);
  setInt("window_vertical_chars", m_window_vertical_chars);

  value = match("window_background_color");
  if (!value.empty()) {
    Color color = BLACK;
    if (colorFromName(value, color))
      m_window_background_color = color;
    else
      log.writeLog("loadConfig(): Unsupported window color '%s'", value.c_str());
  }

  value = match("window_style");
  if (value == "none") {
    m_window_style = 0;
  } else if (!value.empty()) {
    int style = std::atoi(value.c_str());
    if (style != 0)
      m_window_style = style;
    else
      log.writeLog("loadConfig(): Unsupported window style '%s'", value.c_str());
  }

  value = match("window_state");
  if (value == "fullscreen")
    m_window_state = 1;
  else if (value == "default")
    m_window_state = 0;
  else if (!value.empty())
    log.writeLog("loadConfig(): Unsupported window state '%s'", value.c_str());

  setString("window_title", m_window_title);
  setBool("show_mouse", m_show_mouse);
  setBool("headless", m_headless);
  setString("font_file", m_font_file);
  setString("logfile", m_logfile);
  setInt("random_seed", m_random_seed);
  setBool("networking", m_networking);
  setInt("grid_width", m_grid_width);
  setInt("grid_height", m_grid_height);
  setInt("quadtree_depth", m_quadtree_depth);
  setInt("quadtree_threshold", m_quadtree_threshold);
  setBool("signals", m_signals);
  setInt("log_level", m_log_level);
  limitSettings();
}

void Config::limitSettings() {
  limitSetting("frame_time", m_frame_time, FRAME_TIME_MAX);
  limitFontScale(m_font_scale);
  limitSetting("window_horizontal_pixels", m_window_horizontal_pixels, WINDOW_PIXELS_MAX);
  limitSetting("window_vertical_pixels", m_window_vertical_pixels, WINDOW_PIXELS_MAX);
  limitSetting("window_horizontal_chars", m_window_horizontal_chars, CELLS_MAX);
  limitSetting("window_vertical_chars", m_window_vertical_chars, CELLS_MAX);
}

void Config::writeConfigToLog() const {
  const LogManager &log = LogManager::getInstance();
  const char *rule = "-----------------------------------";
  log.writeLog(1, "%s", rule);
  log.writeLog(1, "Quorvelle configuration:");
  log.writeLog(1, "  Window horizontal pixels: %d", m_window_horizontal_pixels);
  log.writeLog(1, "  Window vertical pixels: %d", m_window_vertical_pixels);
  log.writeLog(1, "  Window horizontal characters: %d", m_window_horizontal_chars);
  log.writeLog(1, "  Window vertical characters: %d", m_window_vertical_chars);
  log.writeLog(1, "  Window background color: %d", m_window_background_color);
  log.writeLog(1, "  Frame time: %d", m_frame_time);
  log.writeLog(1, "  Window style: %d", m_window_style);
  log.writeLog(1, "  Window state: %s", m_window_state ? "fullscreen" : "default");
  log.writeLog(1, "  Window title: %s", m_window_title.c_str());
  log.writeLog(1, "  Show mouse: %s", boolToString(m_show_mouse).c_str());
  log.writeLog(1, "  Headless: %s", boolToString(m_headless).c_str());
  log.writeLog(1, "  Font file: %s", m_font_file.c_str());
  log.writeLog(1, "  Log file: %s", m_logfile.c_str());
  log.writeLog(1, "  Random seed: %d", m_random_seed);
  log.writeLog(1, "  Networking: %s", boolToString(m_networking).c_str());
  log.writeLog(1, "  Scene graph: grid");
  log.writeLog(1, "  Grid width: %d", m_grid_width);
  log.writeLog(1, "  Grid height: %d", m_grid_height);
  log.writeLog(1, "%s", rule);
}

std::string Config::getConfigText() const {
  return m_config_text;
}
int Config::getWindowHorizontalPixels() const {
  return m_window_horizontal_pixels;
}
int Config::getWindowVerticalPixels() const {
  return m_window_vertical_pixels;
}
int Config::getWindowHorizontalChars() const {
  return m_window_horizontal_chars;
}
int Config::getWindowVerticalChars() const {
  return m_window_vertical_chars;
}
int Config::getWindowStyle() const {
  return m_window_style;
}
int Config::getWindowState() const {
  return m_window_state;
}
int Config::getWindowBackgroundColor() const {
  return m_window_background_color;
}
int Config::getFrameTime() const {
  return m_frame_time;
}
float Config::getFontScale() const {
  return m_font_scale;
}
std::string Config::getWindowTitle() const {
  return m_window_title;
}
bool Config::getShowMouse() const {
  return m_show_mouse;
}
bool Config::getHeadless() const {
  return m_headless;
}
std::string Config::getFontFile() const {
  return m_font_file;
}
std::string Config::getLogfile() const {
  return m_logfile;
}
int Config::getRandomSeed() const {
  return m_random_seed;
}
bool Config::getNetworking() const {
  return m_networking;
}
int Config::getQuadtreeThreshold() const {
  return m_quadtree_threshold;
}
int Config::getQuadtreeDepth() const {
  return m_quadtree_depth;
}
int Config::getGridWidth() const {
  return m_grid_width;
}
int Config::getGridHeight() const {
  return m_grid_height;
}
bool Config::getSignals() const {
  return m_signals;
}
int Config::getLogLevel() const {
  return m_log_level;
}

}  // namespace qv
