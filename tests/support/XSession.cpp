#include "XSession.h"

#include <X11/Xutil.h>
#include <dlfcn.h>

#include <algorithm>
#include <chrono>
#include <thread>

namespace qvtest {

namespace {

// A window can go between listing it and asking about it (the program ends,
// another window closes); the default handler would then end the test.
int ignoreError(Display *, XErrorEvent *) {
  return 0;
}

}  // namespace

template <typename F>
F *XSession::x11(const char *name) const {
  return reinterpret_cast<F *>(dlsym(RTLD_DEFAULT, name));
}

XSession::XSession() {
  auto open_display = x11<decltype(XOpenDisplay)>("XOpenDisplay");
  if (!open_display) {
    m_problem = "no X library in the process";
    return;
  }
  m_p_display = open_display(nullptr);
  if (!m_p_display) {
    m_problem = "no X server at $DISPLAY";
    return;
  }
  m_p_xtst = dlopen("libXtst.so.6", RTLD_NOW);
  if (!m_p_xtst) {
    m_problem = "no XTest library (libXtst.so.6)";
    return;
  }
  m_fake_motion =
      reinterpret_cast<decltype(m_fake_motion)>(dlsym(m_p_xtst, "XTestFakeMotionEvent"));
  m_fake_button =
      reinterpret_cast<decltype(m_fake_button)>(dlsym(m_p_xtst, "XTestFakeButtonEvent"));
  m_fake_key = reinterpret_cast<decltype(m_fake_key)>(dlsym(m_p_xtst, "XTestFakeKeyEvent"));
  if (!m_fake_motion || !m_fake_button || !m_fake_key) {
    m_fake_key = nullptr;
    m_problem = "the XTest library lacks its functions";
    return;
  }
  m_previous_handler = reinterpret_cast<void (*)()>(
      x11<decltype(XSetErrorHandler)>("XSetErrorHandler")(ignoreError));
}

XSession::~XSession() {
  if (m_previous_handler)
    x11<decltype(XSetErrorHandler)>("XSetErrorHandler")(
        reinterpret_cast<XErrorHandler>(m_previous_handler));
  if (m_p_display) x11<decltype(XCloseDisplay)>("XCloseDisplay")(m_p_display);
  if (m_p_xtst) dlclose(m_p_xtst);
}

std::vector<XWindow> XSession::windows(const std::string &title) const {
  auto fetch_name = x11<decltype(XFetchName)>("XFetchName");
  auto attributes = x11<decltype(XGetWindowAttributes)>("XGetWindowAttributes");
  auto free = x11<decltype(XFree)>("XFree");
  const Window root = x11<decltype(XDefaultRootWindow)>("XDefaultRootWindow")(m_p_display);
  std::vector<XWindow> found;
  Window parent = 0, unused = 0, *p_children = nullptr;
  unsigned int count = 0;
  if (!x11<decltype(XQueryTree)>("XQueryTree")(m_p_display, root, &unused, &parent, &p_children,
                                               &count))
    return found;
  for (unsigned int i = 0; i < count; i++) {
    char *p_name = nullptr;
    XWindowAttributes attr;
    if (!fetch_name(m_p_display, p_children[i], &p_name) || !p_name) continue;
    if (title == p_name && attributes(m_p_display, p_children[i], &attr) &&
        attr.map_state == IsViewable)
      found.push_back(p_children[i]);
    free(p_name);
  }
  if (p_children) free(p_children);
  return found;
}

XWindow XSession::findNewWindow(const std::string &title, const std::vector<XWindow> &before,
                                int timeout_ms) const {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeout_ms);
  do {
    for (XWindow window : windows(title))
      if (std::find(before.begin(), before.end(), window) == before.end()) return window;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  } while (std::chrono::steady_clock::now() < deadline);
  return 0;
}

bool XSession::geometry(XWindow window, int *p_x, int *p_y, int *p_width, int *p_height) const {
  XWindowAttributes attr;
  if (!x11<decltype(XGetWindowAttributes)>("XGetWindowAttributes")(m_p_display, window, &attr))
    return false;
  Window child = 0;
  if (!x11<decltype(XTranslateCoordinates)>("XTranslateCoordinates")(m_p_display, window, attr.root,
                                                                     0, 0, p_x, p_y, &child))
    return false;
  *p_width = attr.width;
  *p_height = attr.height;
  return true;
}

Picture XSession::grab(XWindow window) const {
  Picture picture;
  int x = 0, y = 0, width = 0, height = 0;
  if (!geometry(window, &x, &y, &width, &height)) return picture;
  XImage *p_image = x11<decltype(XGetImage)>("XGetImage")(
      m_p_display, window, 0, 0, static_cast<unsigned int>(width),
      static_cast<unsigned int>(height), AllPlanes, ZPixmap);
  if (!p_image) return picture;
  // Each channel's mask says where its bits are; the top 8 of them are kept.
  struct Channel {
    unsigned long mask;
    int shift = 0, bits = 0;
    std::uint32_t of(unsigned long pixel) const {
      const unsigned long value = (pixel & mask) >> shift;
      return static_cast<std::uint32_t>(bits >= 8 ? value >> (bits - 8) : value << (8 - bits));
    }
  };
  Channel channels[3] = {{p_image->red_mask}, {p_image->green_mask}, {p_image->blue_mask}};
  for (Channel &c : channels) {
    while (c.mask && !((c.mask >> c.shift) & 1)) c.shift++;
    while ((c.mask >> (c.shift + c.bits)) & 1) c.bits++;
  }
  picture.width = width;
  picture.height = height;
  picture.pixels.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  for (int row = 0; row < height; row++)
    for (int col = 0; col < width; col++) {
      const unsigned long pixel = XGetPixel(p_image, col, row);
      picture.pixels.push_back(channels[0].of(pixel) << 16 | channels[1].of(pixel) << 8 |
                               channels[2].of(pixel));
    }
  XDestroyImage(p_image);
  return picture;
}

void XSession::focus(XWindow window) const {
  x11<decltype(XSetInputFocus)>("XSetInputFocus")(m_p_display, window, RevertToPointerRoot,
                                                  CurrentTime);
  x11<decltype(XSync)>("XSync")(m_p_display, False);
}

void XSession::movePointer(XWindow window, int x, int y) const {
  int left = 0, top = 0, width = 0, height = 0;
  if (!geometry(window, &left, &top, &width, &height)) return;
  m_fake_motion(m_p_display, -1, left + x, top + y, CurrentTime);
  x11<decltype(XSync)>("XSync")(m_p_display, False);
}

void XSession::button(unsigned int number, bool down) const {
  m_fake_button(m_p_display, number, down ? True : False, CurrentTime);
  x11<decltype(XSync)>("XSync")(m_p_display, False);
}

void XSession::click(unsigned int number) const {
  button(number, true);
  button(number, false);
}

void XSession::key(const char *name, bool down) const {
  const KeySym keysym = x11<decltype(XStringToKeysym)>("XStringToKeysym")(name);
  const KeyCode code = x11<decltype(XKeysymToKeycode)>("XKeysymToKeycode")(m_p_display, keysym);
  m_fake_key(m_p_display, code, down ? True : False, CurrentTime);
  x11<decltype(XSync)>("XSync")(m_p_display, False);
}

void XSession::tap(const char *name) const {
  key(name, true);
  key(name, false);
}

}  // namespace qvtest
