#ifndef QV_TEST_X_SESSION_H
#define QV_TEST_X_SESSION_H

#include <cstdint>
#include <string>
#include <vector>

struct _XDisplay;  // the X library's Display

namespace qvtest {

// An X window's id, the X library's Window.
using XWindow = unsigned long;

// What a window shows: 0xRRGGBB per pixel, row by row.
struct Picture {
  int width = 0;
  int height = 0;
  std::vector<std::uint32_t> pixels;
};

// A client of the X server the tests run under ($DISPLAY), acting as the
// person in front of it: it finds a program's window, looks at it, and moves
// the pointer, clicks and presses keys for real through the XTest extension,
// so the program gets its input from the server like any other. While the
// session lasts, X errors (a window that went away) are ignored.
//
// The X library is already in the process (the window library brought it);
// its functions are looked up, and the XTest library is opened, at run time,
// so the tests link no window-system library of their own, and the X
// library's macros stay out of everything that includes this.
class XSession {
 public:
  XSession();
  ~XSession();
  XSession(const XSession &) = delete;
  XSession &operator=(const XSession &) = delete;

  // Whether the server and XTest were reached; if not, why.
  bool ok() const { return m_p_display != nullptr && m_fake_key != nullptr; }
  const std::string &problem() const { return m_problem; }

  // The viewable top-level windows with this title.
  std::vector<XWindow> windows(const std::string &title) const;
  // A viewable top-level window with this title that is not among those
  // seen before, waited for; 0 if none comes within the time.
  XWindow findNewWindow(const std::string &title, const std::vector<XWindow> &before,
                        int timeout_ms = 10000) const;
  // The window's size and its top-left corner on the screen.
  bool geometry(XWindow window, int *p_x, int *p_y, int *p_width, int *p_height) const;
  // What the window shows now; an empty picture if it cannot be read.
  Picture grab(XWindow window) const;

  // The keyboard goes to this window, as a window manager would arrange.
  void focus(XWindow window) const;
  // Moves the pointer to a pixel of the window.
  void movePointer(XWindow window, int x, int y) const;
  // Button 1 is the left one, 3 the right one.
  void button(unsigned int number, bool down) const;
  void click(unsigned int number = 1) const;
  // Keys by their X name: "p", "space", "Return", "Escape".
  void key(const char *name, bool down) const;
  void tap(const char *name) const;

 private:
  template <typename F>
  F *x11(const char *name) const;

  _XDisplay *m_p_display = nullptr;
  void *m_p_xtst = nullptr;  // the XTest library
  int (*m_fake_motion)(_XDisplay *, int, int, int, unsigned long) = nullptr;
  int (*m_fake_button)(_XDisplay *, unsigned int, int, unsigned long) = nullptr;
  int (*m_fake_key)(_XDisplay *, unsigned int, int, unsigned long) = nullptr;
  void (*m_previous_handler)() = nullptr;  // X's error handler, put back when the session ends
  std::string m_problem;
};

}  // namespace qvtest

#endif
