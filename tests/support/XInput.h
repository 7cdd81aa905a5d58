#ifndef QV_TEST_X_INPUT_H
#define QV_TEST_X_INPUT_H

#include <dlfcn.h>

namespace qvtest {

// A person at the X server: pointer moves, clicks and keys sent through the
// XTest extension, so the window gets them like any other input. The X
// library is in the process already (the window library brought it); XTest
// is opened at run time, so the tests link no window-system library.
class XInput {
 public:
  XInput() : m_p_xtst(dlopen("libXtst.so.6", RTLD_NOW)) {
    auto open = reinterpret_cast<void *(*)(const char *)>(dlsym(RTLD_DEFAULT, "XOpenDisplay"));
    m_p_display = open ? open(nullptr) : nullptr;
  }
  ~XInput() {
    if (m_p_display)
      reinterpret_cast<int (*)(void *)>(dlsym(RTLD_DEFAULT, "XCloseDisplay"))(m_p_display);
    if (m_p_xtst) dlclose(m_p_xtst);
  }
  bool ok() const { return m_p_display && m_p_xtst; }

  // The keyboard to this window, as a window manager would arrange it.
  void focus(unsigned long window) const {
    call<unsigned long, int, unsigned long>(RTLD_DEFAULT, "XSetInputFocus", window, 1, 0);
  }
  // The root window's size in pixels.
  int width() const { return screenSize("XDisplayWidth"); }
  int height() const { return screenSize("XDisplayHeight"); }
  void pointer(int x, int y) const {
    call<int, int, int, unsigned long>(m_p_xtst, "XTestFakeMotionEvent", -1, x, y, 0);
  }
  void button(bool down) const {
    call<unsigned, int, unsigned long>(m_p_xtst, "XTestFakeButtonEvent", 1, down, 0);
  }
  // Keys by their X name: "p", "space", "Return".
  void key(const char *name, bool down) const {
    const auto sym = reinterpret_cast<unsigned long (*)(const char *)>(
        dlsym(RTLD_DEFAULT, "XStringToKeysym"))(name);
    keyCode(reinterpret_cast<unsigned char (*)(void *, unsigned long)>(
                dlsym(RTLD_DEFAULT, "XKeysymToKeycode"))(m_p_display, sym),
            down);
  }
  // Keys by the server's own code, 8 to 255.
  void keyCode(unsigned code, bool down) const {
    call<unsigned, int, unsigned long>(m_p_xtst, "XTestFakeKeyEvent", code, down, 0);
  }

 private:
  int screenSize(const char *name) const {
    return reinterpret_cast<int (*)(void *, int)>(dlsym(RTLD_DEFAULT, name))(m_p_display, 0);
  }
  // A request on the display, done by the server before the play goes on.
  template <typename... A>
  void call(void *p_library, const char *name, A... args) const {
    reinterpret_cast<int (*)(void *, A...)>(dlsym(p_library, name))(m_p_display, args...);
    reinterpret_cast<int (*)(void *, int)>(dlsym(RTLD_DEFAULT, "XSync"))(m_p_display, 0);
  }

  void *m_p_xtst;
  void *m_p_display;
};

}  // namespace qvtest

#endif
