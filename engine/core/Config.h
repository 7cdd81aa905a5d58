#ifndef QV_CONFIG_H
#define QV_CONFIG_H

#include <string>

namespace qv {

// The program's settings: built-in defaults, loaded once at start-up from a
// file of comma-separated "key:value" items, read-only afterwards.
class Config {
 public:
  static Config &getInstance();

  // Applies every known key of config_text, or of the configuration file
  // ("QUORVELLE_CONFIG", else "qv-config.txt") when config_text is empty.
  // Settings the text does not give keep their defaults.
  void loadConfig(std::string config_text = "");
  // The file's non-comment lines joined without separators; "" if unreadable.
  std::string readConfig() const;
  // The value of key in the loaded text, or "".
  std::string match(std::string key) const;
  // The settings summary, at log level 1.
  void writeConfigToLog() const;

  std::string getConfigText() const;
  int getWindowHorizontalPixels() const;
  int getWindowVerticalPixels() const;
  int getWindowHorizontalChars() const;
  int getWindowVerticalChars() const;
  int getWindowStyle() const;
  int getWindowState() const;
  int getWindowBackgroundColor() const;
  int getFrameTime() const;
  float getFontScale() const;
  std::string getWindowTitle() const;
  bool getShowMouse() const;
  bool getHeadless() const;
  std::string getFontFile() const;
  std::string getLogfile() const;
  int getRandomSeed() const;
  bool getNetworking() const;
  int getQuadtreeThreshold() const;
  int getQuadtreeDepth() const;
  int getGridWidth() const;
  int getGridHeight() const;
  bool getSignals() const;
  int getLogLevel() const;

 private:
  Config();
  Config(const Config &) = delete;
  Config &operator=(const Config &) = delete;
  void setDefaults();
  // Brings the settings the program cannot run with back within bounds.
  void limitSettings();

  std::string m_config_text;       // the text last loaded
  int m_window_horizontal_pixels;  // 1024; 0 means the desktop's width
  int m_window_vertical_pixels;    // 768; 0 means the desktop's height
  int m_window_horizontal_chars;   // 80 cells across
  int m_window_vertical_chars;     // 24 cells down
  int m_window_style;              // 5: title bar and close button
  int m_window_state;              // 0 normal, 1 full screen
  int m_window_background_color;   // a Color, 0 (black)
  int m_frame_time;                // 33 ms per frame
  float m_font_scale;              // 2.0 cells per character size
  std::string m_window_title;      // "Quorvelle"
  bool m_show_mouse;               // false: pointer hidden over the window
  bool m_headless;                 // false: no window, drawing nor input when true
  std::string m_font_file;         // "qv-font.ttf"
  std::string m_logfile;           // "quorvelle.log"
  int m_random_seed;               // 0 seeds from the clock, -1 not at all
  bool m_networking;               // true: run the network manager
  int m_quadtree_threshold;        // 1, stored only
  int m_quadtree_depth;            // 10, stored only
  int m_grid_width;                // 20 collision grid columns
  int m_grid_height;               // 8 collision grid rows
  bool m_signals;                  // true: SIGINT/SIGTERM end the game
  int m_log_level;                 // 0: levelled log lines filtered out
};

// The value of the first item of str whose key equals find, or "". An empty
// str searches the items of the previous non-empty str again.
std::string match(std::string str, std::string find);

}  // namespace qv

#endif
