#include "platform/x11.h"

#include <X11/keysym.h>
#include <dlfcn.h>

#include <cstdlib>

#include "platform/platform.h"

namespace qv {
namespace platform {

namespace {

// The Xlib functions used here, or null where Xlib is not loaded.
struct Xlib {
  void *(*open_display)(const char *);
  int (*close_display)(void *);
  int (*query_keymap)(void *, char *);
  unsigned char (*keysym_to_keycode)(void *, unsigned long);
};

const Xlib &xlib() {
  static const Xlib functions = {
      reinterpret_cast<void *(*)(const char *)>(dlsym(RTLD_DEFAULT, "XOpenDisplay")),
      reinterpret_cast<int (*)(void *)>(dlsym(RTLD_DEFAULT, "XCloseDisplay")),
      reinterpret_cast<int (*)(void *, char *)>(dlsym(RTLD_DEFAULT, "XQueryKeymap")),
      reinterpret_cast<unsigned char (*)(void *, unsigned long)>(
          dlsym(RTLD_DEFAULT, "XKeysymToKeycode")),
  };
  return functions;
}

// The X server's name (keysym) for each key the engine polls while held.
unsigned long keysymOf(sf::Keyboard::Key key) {
  if (key >= sf::Keyboard::A && key <= sf::Keyboard::Z) return XK_a + (key - sf::Keyboard::A);
  if (key >= sf::Keyboard::Num0 && key <= sf::Keyboard::Num9)
    return XK_0 + (key - sf::Keyboard::Num0);
  if (key >= sf::Keyboard::F1 && key <= sf::Keyboard::F15) return XK_F1 + (key - sf::Keyboard::F1);
  switch (key) {
    case sf::Keyboard::Up:
      return XK_Up;
    case sf::Keyboard::Down:
      return XK_Down;
    case sf::Keyboard::Left:
      return XK_Left;
    case sf::Keyboard::Right:
      return XK_Right;
    case sf::Keyboard::Space:
      return XK_space;
    case sf::Keyboard::Enter:
      return XK_Return;
    case sf::Keyboard::Tab:
      return XK_Tab;
    case sf::Keyboard::Escape:
      return XK_Escape;
    case sf::Keyboard::Pause:
      return XK_Pause;
    case sf::Keyboard::Subtract:
      return XK_KP_Subtract;
    case sf::Keyboard::Add:
      return XK_KP_Add;
    case sf::Keyboard::Tilde:
      return XK_grave;
    case sf::Keyboard::Period:
      return XK_period;
    case sf::Keyboard::Comma:
      return XK_comma;
    case sf::Keyboard::Slash:
      return XK_slash;
    case sf::Keyboard::Equal:
      return XK_equal;
    case sf::Keyboard::Backslash:
      return XK_backslash;
    case sf::Keyboard::Multiply:
      return XK_KP_Multiply;
    case sf::Keyboard::Quote:
      return XK_apostrophe;
    case sf::Keyboard::LBracket:
      return XK_bracketleft;
    case sf::Keyboard::RBracket:
      return XK_bracketright;
    case sf::Keyboard::Semicolon:
      return XK_semicolon;
    case sf::Keyboard::LControl:
      return XK_Control_L;
    case sf::Keyboard::RControl:
      return XK_Control_R;
    case sf::Keyboard::LShift:
      return XK_Shift_L;
    case sf::Keyboard::RShift:
      return XK_Shift_R;
    case sf::Keyboard::Backspace:
      return XK_BackSpace;
    default:
      return 0;
  }
}

}  // namespace

// ---- display connection ------------------------------------------------------

DisplayConnection::DisplayConnection() : m_p_display(nullptr), m_reachable(false), m_reason("") {
  const char *display = std::getenv("DISPLAY");
  if (display == nullptr || display[0] == '\0') {
    m_reason = "DISPLAY is not set";
    return;
  }
  const Xlib &x = xlib();
  if (x.open_display == nullptr || x.close_display == nullptr) {
    m_reachable = true;
    return;
  }
  for (int attempt = 0; attempt < 10 && m_p_display == nullptr; attempt++) {
    if (attempt > 0) sleepMilliseconds(20);
    m_p_display = x.open_display(display);
  }
  m_reachable = m_p_display != nullptr;
  if (!m_reachable) m_reason = "the X display cannot be reached";
}

DisplayConnection::~DisplayConnection() {
  if (m_p_display != nullptr) xlib().close_display(m_p_display);
}

bool DisplayConnection::reachable() const {
  return m_reachable;
}

const char *DisplayConnection::reason() const {
  return m_reason;
}

// ---- keyboard picture --------------------------------------------------------

KeyboardPicture::KeyboardPicture()
    : m_p_display(nullptr), m_keys{}, m_valid(false), m_unavailable(false) {
}

KeyboardPicture::~KeyboardPicture() {
  close();
}

bool KeyboardPicture::open() {
  if (m_p_display) return true;
  if (m_unavailable) return false;
  const Xlib &x = xlib();
  if (x.open_display && x.close_display && x.query_keymap && x.keysym_to_keycode)
    m_p_display = x.open_display(nullptr);
  m_unavailable = m_p_display == nullptr;
  return !m_unavailable;
}

bool KeyboardPicture::refresh() {
  m_valid = open() && xlib().query_keymap(m_p_display, m_keys.data()) != 0;
  return m_valid;
}

bool KeyboardPicture::isValid() const {
  return m_valid;
}

bool KeyboardPicture::isDown(sf::Keyboard::Key key) const {
  const unsigned long keysym = keysymOf(key);
  if (!m_valid || !keysym) return false;
  const unsigned char keycode = xlib().keysym_to_keycode(m_p_display, keysym);
  return keycode != 0 && (m_keys[keycode / 8] & (1 << (keycode % 8))) != 0;
}

void KeyboardPicture::close() {
  if (m_p_display) xlib().close_display(m_p_display);
  m_p_display = nullptr;
  m_valid = false;
}

}  // namespace platform
}  // namespace qv
