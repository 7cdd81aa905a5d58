#ifndef QV_X11_H
#define QV_X11_H

#include <SFML/Window/Keyboard.hpp>
#include <array>

// The X window system, for what the window library does not offer. Xlib is
// already loaded with the window library, so it is looked up at run time
// rather than linked: the engine names no window-system library of its own,
// and where Xlib is missing nothing here fails, it only has no answer.
namespace qv {
namespace platform {

// A connection to the X display named by DISPLAY, held while this lives.
// The window library aborts the process when it cannot reach the X server,
// so the server is reached first and an unreachable one reported instead.
// Hold it until the window exists: the window library opens and closes its
// own connections while starting, and a server that sees its last client
// leave resets and turns the next one away (Xvfb does).
class DisplayConnection {
 public:
  // Tries a few times over some 200 ms: a resetting server answers again
  // within milliseconds.
  DisplayConnection();
  ~DisplayConnection();

  // True also when there is no Xlib to ask: the window library may try.
  bool reachable() const;
  // Why the display cannot be reached, "" when it can.
  const char *reason() const;

 private:
  DisplayConnection(const DisplayConnection &) = delete;
  DisplayConnection &operator=(const DisplayConnection &) = delete;

  void *m_p_display;     // null, or the open connection
  bool m_reachable;      // false until shown otherwise
  const char *m_reason;  // "", or why not reachable
};

// One picture of the whole keyboard, taken from the X server once a frame.
// Asking the window library key by key costs one round trip to the server
// per key, some 70 a frame; one picture answers them all. It keeps a
// connection of its own from the first picture until close().
class KeyboardPicture {
 public:
  KeyboardPicture();
  ~KeyboardPicture();

  // Takes a new picture; false when none can be taken (no Xlib, no X
  // server), and then the server is not asked again.
  bool refresh();
  // Is there a picture to answer from?
  bool isValid() const;
  // Was this key down in the last picture? False without one.
  bool isDown(sf::Keyboard::Key key) const;
  // Drops the picture and the connection.
  void close();

 private:
  KeyboardPicture(const KeyboardPicture &) = delete;
  KeyboardPicture &operator=(const KeyboardPicture &) = delete;
  bool open();

  void *m_p_display;            // null, or the picture's own connection
  std::array<char, 32> m_keys;  // one bit per key code
  bool m_valid;                 // false: m_keys holds no picture
  bool m_unavailable;           // no Xlib or no server: not asked again
};

}  // namespace platform
}  // namespace qv

#endif
