// Window input turned into engine keyboard and mouse events: the key table,
// one window event at a time (built by hand), held keys and buttons, and the
// manager's start and stop.

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <SFML/Graphics/RenderWindow.hpp>
#include <SFML/System/Sleep.hpp>
#include <SFML/Window/Event.hpp>
#include <SFML/Window/Window.hpp>
#include <cstdlib>
#include <set>
#include <string>
#include <vector>

#include "DisplayFixture.h"
#include "EngineFixture.h"
#include "core/Config.h"
#include "core/GameManager.h"
#include "core/LogManager.h"
#include "input/EventKeyboard.h"
#include "input/EventMouse.h"
#include "input/InputManager.h"
#include "platform/platform.h"
#include "world/Object.h"

namespace {

using qv::InputManager;
namespace Key = qv::Keyboard;

// What one delivered event said, as text: "pressed A", "held 62",
// "clicked 0 (10,2)".
class Recorder : public qv::Object {
 public:
  Recorder() {
    registerInterest(qv::KEYBOARD_EVENT);
    registerInterest(qv::MOUSE_EVENT);
  }
  int eventHandler(const qv::Event *p_e) override {
    if (p_e->getType() == qv::KEYBOARD_EVENT) {
      const auto *k = static_cast<const qv::EventKeyboard *>(p_e);
      static const char *const ACTIONS[] = {"pressed", "released", "held"};
      seen.push_back(std::string(ACTIONS[k->getKeyboardAction()]) + " " +
                     std::to_string(k->getKey()));
    } else if (p_e->getType() == qv::MOUSE_EVENT) {
      const auto *m = static_cast<const qv::EventMouse *>(p_e);
      static const char *const ACTIONS[] = {"clicked", "held", "moved"};
      seen.push_back(std::string(ACTIONS[m->getMouseAction()]) + " " +
                     std::to_string(m->getMouseButton()) + " " + m->getMousePosition().toString());
    }
    return 1;
  }
  std::vector<std::string> seen;
};

std::string key(const char *action, Key::Key k) {
  return std::string(action) + " " + std::to_string(k);
}

sf::Event keyEvent(sf::Event::EventType type, sf::Keyboard::Key code) {
  sf::Event e;
  e.type = type;
  e.key = sf::Event::KeyEvent{code, false, false, false, false};
  return e;
}

sf::Event mouseButtonEvent(sf::Event::EventType type, sf::Mouse::Button button, int x, int y) {
  sf::Event e;
  e.type = type;
  e.mouseButton = sf::Event::MouseButtonEvent{button, x, y};
  return e;
}

// Keys or buttons reported down by the held-input polls.
std::set<int> g_down;
bool keyDown(sf::Keyboard::Key k) {
  return g_down.count(k) > 0;
}
bool buttonDown(sf::Mouse::Button b) {
  return g_down.count(b) > 0;
}
bool everyKeyDown(sf::Keyboard::Key) {
  return true;
}

TEST(KeyTable, EveryWindowKeyMapsToItsEngineKey) {
  struct Row {
    sf::Keyboard::Key sfml;
    Key::Key engine;
    int value;
    const char *text;
  };
  const Row rows[] = {
      {sf::Keyboard::Space, Key::SPACE, 0, " "},
      {sf::Keyboard::Enter, Key::ENTER, 1, ""},
      {sf::Keyboard::Escape, Key::ESCAPE, 2, ""},
      {sf::Keyboard::Tab, Key::TAB, 3, ""},
      {sf::Keyboard::Left, Key::LEFT_ARROW, 4, ""},
      {sf::Keyboard::Right, Key::RIGHT_ARROW, 5, ""},
      {sf::Keyboard::Up, Key::UP_ARROW, 6, ""},
      {sf::Keyboard::Down, Key::DOWN_ARROW, 7, ""},
      {sf::Keyboard::Pause, Key::PAUSE, 8, ""},
      {sf::Keyboard::Subtract, Key::MINUS, 9, "-"},
      {sf::Keyboard::Add, Key::PLUS, 10, "+"},
      {sf::Keyboard::Tilde, Key::TILDE, 11, "~"},  // the grave-accent key
      {sf::Keyboard::Period, Key::PERIOD, 12, "."},
      {sf::Keyboard::Comma, Key::COMMA, 13, ","},
      {sf::Keyboard::Slash, Key::SLASH, 14, "/"},
      {sf::Keyboard::Equal, Key::EQUAL, 15, "="},
      {sf::Keyboard::Backslash, Key::BACKSLASH, 16, "\\"},
      {sf::Keyboard::Multiply, Key::MULTIPLY, 17, "*"},
      {sf::Keyboard::Quote, Key::QUOTE, 18, "'"},  // the apostrophe key
      {sf::Keyboard::Semicolon, Key::SEMICOLON, 19, ";"},
      {sf::Keyboard::LControl, Key::LEFT_CONTROL, 20, ""},
      {sf::Keyboard::RControl, Key::RIGHT_CONTROL, 21, ""},
      {sf::Keyboard::LShift, Key::LEFT_SHIFT, 22, ""},
      {sf::Keyboard::RShift, Key::RIGHT_SHIFT, 23, ""},
      {sf::Keyboard::F1, Key::F1, 24, ""},
      {sf::Keyboard::F12, Key::F12, 35, ""},
      {sf::Keyboard::A, Key::A, 36, "A"},
      {sf::Keyboard::M, Key::M, 48, "M"},
      {sf::Keyboard::Z, Key::Z, 61, "Z"},
      {sf::Keyboard::Num1, Key::NUM_1, 62, "1"},
      {sf::Keyboard::Num9, Key::NUM_9, 70, "9"},
      {sf::Keyboard::Num0, Key::NUM_0, 71, "0"},
      {sf::Keyboard::Backspace, Key::BACKSPACE, 72, ""},
      {sf::Keyboard::LBracket, Key::LEFT_BRACKET, 74, "["},
      {sf::Keyboard::RBracket, Key::RIGHT_BRACKET, 75, "]"},
  };
  for (const Row &row : rows) {
    EXPECT_EQ(qv::toEngineKey(row.sfml), row.engine) << row.value;
    EXPECT_EQ(static_cast<int>(row.engine), row.value);
    EXPECT_EQ(qv::keyToString(row.engine), row.text) << row.value;
  }

  // Every other window key is undefined; the defined ones are all distinct
  // and cover 0..75 except the unused 73.
  const sf::Keyboard::Key unmapped[] = {
      sf::Keyboard::LAlt,   sf::Keyboard::RAlt,    sf::Keyboard::LSystem, sf::Keyboard::RSystem,
      sf::Keyboard::Menu,   sf::Keyboard::Hyphen,  sf::Keyboard::PageUp,  sf::Keyboard::PageDown,
      sf::Keyboard::End,    sf::Keyboard::Home,    sf::Keyboard::Insert,  sf::Keyboard::Delete,
      sf::Keyboard::Divide, sf::Keyboard::Numpad0, sf::Keyboard::Numpad9, sf::Keyboard::F13,
      sf::Keyboard::F15,    sf::Keyboard::Unknown, sf::Keyboard::KeyCount};
  for (sf::Keyboard::Key k : unmapped) EXPECT_EQ(qv::toEngineKey(k), Key::UNDEFINED_KEY) << k;
  std::set<int> produced;
  int defined = 0;
  for (int code = 0; code < sf::Keyboard::KeyCount; code++) {
    const Key::Key k = qv::toEngineKey(static_cast<sf::Keyboard::Key>(code));
    if (k == Key::UNDEFINED_KEY) continue;
    defined++;
    produced.insert(k);
  }
  EXPECT_EQ(defined, 75);
  EXPECT_EQ(produced.size(), 75u);
  EXPECT_EQ(*produced.begin(), 0);
  EXPECT_EQ(*produced.rbegin(), 75);
  EXPECT_EQ(produced.count(73), 0u);

  // Keys the table gives no character, and values outside it.
  EXPECT_EQ(qv::keyToString(Key::BACKTICK), "`");
  EXPECT_EQ(qv::keyToString(Key::UNDEFINED_KEY), "");
  EXPECT_EQ(qv::keyToString(static_cast<Key::Key>(73)), "");
  EXPECT_EQ(qv::keyToString(static_cast<Key::Key>(77)), "");
  EXPECT_EQ(qv::keyToString(static_cast<Key::Key>(-7)), "");

  EXPECT_EQ(qv::toEngineButton(sf::Mouse::Left), qv::Mouse::LEFT);
  EXPECT_EQ(qv::toEngineButton(sf::Mouse::Right), qv::Mouse::RIGHT);
  EXPECT_EQ(qv::toEngineButton(sf::Mouse::Middle), qv::Mouse::MIDDLE);
  EXPECT_EQ(qv::toEngineButton(sf::Mouse::XButton1), qv::Mouse::UNDEFINED_MOUSE_BUTTON);
}

TEST(InputEvents, StartUndefined) {
  const qv::EventKeyboard k;
  EXPECT_EQ(k.getType(), "qv-keyboard");
  EXPECT_EQ(k.getKey(), Key::UNDEFINED_KEY);
  EXPECT_EQ(k.getKeyboardAction(), qv::UNDEFINED_KEYBOARD_ACTION);
  const qv::EventMouse m;
  EXPECT_EQ(m.getType(), "qv-mouse");
  EXPECT_EQ(m.getMouseAction(), qv::UNDEFINED_MOUSE_ACTION);
  EXPECT_EQ(m.getMouseButton(), qv::Mouse::UNDEFINED_MOUSE_BUTTON);
  EXPECT_EQ(m.getMousePosition(), qv::Vector(0, 0));
}

// A headless engine: 1024 x 768 pixels in 80 x 24 cells, cells of 12.8 x 32.
class InputManagerTest : public qvtest::EngineFixture {
 protected:
  void SetUp() override {
    EngineFixture::SetUp();
    g_down.clear();
    recorder = new Recorder;
  }
  static InputManager &input() { return InputManager::getInstance(); }
  Recorder *recorder = nullptr;  // owned by the world
};

TEST_F(InputManagerTest, TurnsKeyEventsIntoKeyboardEvents) {
  EXPECT_TRUE(input().handleEvent(keyEvent(sf::Event::KeyPressed, sf::Keyboard::A)));
  EXPECT_TRUE(input().handleEvent(keyEvent(sf::Event::KeyReleased, sf::Keyboard::Quote)));
  EXPECT_TRUE(input().handleEvent(keyEvent(sf::Event::KeyPressed, sf::Keyboard::F11)));
  EXPECT_EQ(recorder->seen,
            (std::vector<std::string>{key("pressed", Key::A), key("released", Key::QUOTE),
                                      key("pressed", Key::F11)}));

  // Keys the engine lacks still arrive, as UNDEFINED_KEY, with a warning.
  qv::LogManager::getInstance().setLogLevel(1);
  recorder->seen.clear();
  input().handleEvent(keyEvent(sf::Event::KeyPressed, sf::Keyboard::Home));
  input().handleEvent(keyEvent(sf::Event::KeyReleased, sf::Keyboard::Unknown));
  EXPECT_EQ(recorder->seen, (std::vector<std::string>{key("pressed", Key::UNDEFINED_KEY),
                                                      key("released", Key::UNDEFINED_KEY)}));
  EXPECT_TRUE(log->contains("InputManager::toEventKeyboard(): Warning key 'Home' not handled."));
  EXPECT_TRUE(log->contains("InputManager::toEventKeyboard(): Warning key 'Unknown' not handled."));

  // Only key events translate.
  sf::Event resize;
  resize.type = sf::Event::Resized;
  resize.size = sf::Event::SizeEvent{10, 10};
  const qv::EventKeyboard none = input().toEventKeyboard(resize);
  EXPECT_EQ(none.getKey(), Key::UNDEFINED_KEY);
  EXPECT_EQ(none.getKeyboardAction(), qv::UNDEFINED_KEYBOARD_ACTION);
  EXPECT_TRUE(log->contains("toEventKeyboard(): Error! Called with non-keyboard event."));
  const qv::EventKeyboard z =
      input().toEventKeyboard(keyEvent(sf::Event::KeyPressed, sf::Keyboard::Z));
  EXPECT_EQ(z.getKey(), Key::Z);
  EXPECT_EQ(z.getKeyboardAction(), qv::UNDEFINED_KEYBOARD_ACTION);
}

TEST_F(InputManagerTest, TurnsMouseEventsIntoCellPositions) {
  sf::Event move;
  move.type = sf::Event::MouseMoved;
  move.mouseMove = sf::Event::MouseMoveEvent{128, 64};
  input().handleEvent(move);
  input().handleEvent(mouseButtonEvent(sf::Event::MouseButtonPressed, sf::Mouse::Left, 0, 0));
  input().handleEvent(mouseButtonEvent(sf::Event::MouseButtonPressed, sf::Mouse::Right, 1023, 767));
  input().handleEvent(mouseButtonEvent(sf::Event::MouseButtonPressed, sf::Mouse::Middle, 64, 16));
  input().handleEvent(mouseButtonEvent(sf::Event::MouseButtonPressed, sf::Mouse::XButton2, 0, 0));
  // Releases, the wheel and text mean nothing to the engine.
  input().handleEvent(mouseButtonEvent(sf::Event::MouseButtonReleased, sf::Mouse::Left, 0, 0));
  sf::Event wheel;
  wheel.type = sf::Event::MouseWheelScrolled;
  wheel.mouseWheelScroll = sf::Event::MouseWheelScrollEvent{sf::Mouse::VerticalWheel, 1, 5, 5};
  input().handleEvent(wheel);
  sf::Event text;
  text.type = sf::Event::TextEntered;
  text.text = sf::Event::TextEvent{'a'};
  input().handleEvent(text);

  EXPECT_EQ(recorder->seen, (std::vector<std::string>{"moved -1 (10,2)", "clicked 0 (0,0)",
                                                      "clicked 1 (79.9219,23.9688)",
                                                      "clicked 2 (5,0.5)", "clicked -1 (0,0)"}));
}

TEST_F(InputManagerTest, HeldKeysAndButtonsComeInTheirFixedOrder) {
  input().deliverHeldKeys(&everyKeyDown);
  std::vector<std::string> expected;
  for (Key::Key k : {Key::UP_ARROW,      Key::DOWN_ARROW, Key::LEFT_ARROW,   Key::RIGHT_ARROW,
                     Key::SPACE,         Key::ENTER,      Key::TAB,          Key::ESCAPE,
                     Key::PAUSE,         Key::MINUS,      Key::PLUS,         Key::TILDE,
                     Key::PERIOD,        Key::COMMA,      Key::SLASH,        Key::EQUAL,
                     Key::BACKSLASH,     Key::MULTIPLY,   Key::QUOTE,        Key::LEFT_BRACKET,
                     Key::RIGHT_BRACKET, Key::SEMICOLON,  Key::LEFT_CONTROL, Key::RIGHT_CONTROL,
                     Key::LEFT_SHIFT,    Key::RIGHT_SHIFT})
    expected.push_back(key("held", k));
  for (int k = Key::F1; k <= Key::F10; k++) expected.push_back(key("held", Key::Key(k)));
  for (int k = Key::A; k <= Key::Z; k++) expected.push_back(key("held", Key::Key(k)));
  for (int k = Key::NUM_1; k <= Key::NUM_0; k++) expected.push_back(key("held", Key::Key(k)));
  expected.push_back(key("held", Key::BACKSPACE));
  EXPECT_EQ(recorder->seen, expected);

  // F11 and F12 are never held.
  recorder->seen.clear();
  g_down = {sf::Keyboard::F11, sf::Keyboard::F12, sf::Keyboard::Hyphen};
  input().deliverHeldKeys(&keyDown);
  EXPECT_TRUE(recorder->seen.empty());

  // Holding A across frames: pressed (queue) then held (poll) in the first
  // frame, held alone after, released at the end.
  g_down = {sf::Keyboard::A};
  input().handleEvent(keyEvent(sf::Event::KeyPressed, sf::Keyboard::A));
  input().deliverHeldKeys(&keyDown);
  input().deliverHeldKeys(&keyDown);
  g_down.clear();
  input().handleEvent(keyEvent(sf::Event::KeyReleased, sf::Keyboard::A));
  input().deliverHeldKeys(&keyDown);
  EXPECT_EQ(recorder->seen,
            (std::vector<std::string>{key("pressed", Key::A), key("held", Key::A),
                                      key("held", Key::A), key("released", Key::A)}));

  recorder->seen.clear();
  g_down = {sf::Mouse::Left, sf::Mouse::Middle, sf::Mouse::XButton1};
  input().deliverHeldButtons(qv::Vector(3, 4), &buttonDown);
  EXPECT_EQ(recorder->seen, (std::vector<std::string>{"held 0 (3,4)", "held 2 (3,4)"}));
}

TEST_F(InputManagerTest, ScriptedKeysReachInterestedObjects) {
  EXPECT_EQ(input().deliverKeyboard(Key::P, qv::KEY_PRESSED), 1);
  EXPECT_EQ(
      input().deliverMouse(qv::MOUSE_MOVED, qv::Mouse::UNDEFINED_MOUSE_BUTTON, qv::Vector(1, 2)),
      1);
  EXPECT_EQ(recorder->seen, (std::vector<std::string>{key("pressed", Key::P), "moved -1 (1,2)"}));

  // The input manager delivers keyboard and mouse events only.
  EXPECT_TRUE(input().isValid("qv-keyboard"));
  EXPECT_TRUE(input().isValid("qv-mouse"));
  EXPECT_FALSE(input().isValid("qv-step"));
  EXPECT_EQ(input().registerInterest(recorder, "qv-step"), -1);
  EXPECT_TRUE(log->contains(
      "Manager(InputManager)::registerInterest(): Event 'qv-step' not valid for this Manager"));

  // Headless: nothing is ever read from a window.
  input().getInput();
  EXPECT_EQ(recorder->seen.size(), 2u);
}

TEST_F(InputManagerTest, ClosingTheWindowEndsTheGame) {
  qv::LogManager::getInstance().setLogLevel(1);
  sf::Event close;
  close.type = sf::Event::Closed;
  qv::GameManager::getInstance().setGameOver(false);
  EXPECT_FALSE(input().handleEvent(close));
  EXPECT_TRUE(qv::GameManager::getInstance().getGameOver());
  // The request outlives the loop that saw it, so a close during the splash
  // screen also skips the game's loop.
  EXPECT_TRUE(qv::platform::stopRequested());
  qv::platform::clearStopRequest();
  EXPECT_TRUE(log->contains("InputManager::getInput(): Window closed. Setting game over."));
  EXPECT_TRUE(recorder->seen.empty());

  EXPECT_EQ(input().startUp(), -1);
  EXPECT_TRUE(log->contains("InputManager::startup(): Warning! InputManager already started."));
  // Headless, the input manager starts without a display to read from.
  input().shutDown();
  qv::LogManager::getInstance().setLogLevel(5);
  EXPECT_EQ(input().startUp(), 0);
  EXPECT_TRUE(log->contains("InputManager::startUp(): no input in headless mode."));
  EXPECT_TRUE(log->contains("InputManager::startUp(): successfully started."));
}

// Start and stop around a real window, and without the display.
class InputWindowTest : public qvtest::DisplayFixture {};

TEST_F(InputWindowTest, SwitchesKeyRepeatOffWhileRunning) {
  ASSERT_EQ(started, 0);
  InputManager &input = InputManager::getInstance();
  qv::LogManager::getInstance().setLogLevel(5);
  ASSERT_EQ(input.startUp(), 0);
  input.getInput();  // drains whatever the new window queued
  input.shutDown();
  EXPECT_TRUE(log->contains("InputManager::startUp(): Keyboard repeated disabled."));
  EXPECT_TRUE(log->contains("InputManager::startUp(): successfully started."));
  EXPECT_TRUE(log->contains("InputManager::shutDown(): Keyboard repeat enabled."));
  EXPECT_TRUE(log->contains("InputManager::shutDown(): successfully stopped."));

  qv::DisplayManager::getInstance().shutDown();
  EXPECT_EQ(input.startUp(), -1);
  EXPECT_TRUE(
      log->contains("InputManager::startUp(): Error! DisplayManager must be started first."));
  EXPECT_FALSE(input.isStarted());
  // A window gone at run time is reported, once per frame.
  input.getInput();
  EXPECT_EQ(
      log->count("InputManager::getInput(): DisplayManager unexpectedly returned null window!"), 1);
}

// A whole engine around a real window of 24 x 8 cells of 20 x 30 pixels.
class InputEngineTest : public qvtest::EngineFixture {
 protected:
  std::string config() const override {
    return "headless:false,\nnetworking:false,\nframe_time:10,\nrandom_seed:1,\n"
           "window_horizontal_pixels:480,\nwindow_vertical_pixels:240,\n"
           "window_horizontal_chars:24,\nwindow_vertical_chars:8,\n"
           "font_file:" QV_SOURCE_DIR "/assets/qv-font.ttf,\n";
  }
  void SetUp() override {
    if (!std::getenv("DISPLAY")) GTEST_SKIP() << "no X display: run under xvfb-run";
    EngineFixture::SetUp();
  }
};

TEST_F(InputEngineTest, PointerMovesArriveInCells) {
  sf::RenderWindow *window = qv::DisplayManager::getInstance().getWindow();
  ASSERT_NE(window, nullptr);
  Recorder *recorder = new Recorder;
  // Let the window settle (map, focus), then move the pointer inside it.
  for (int i = 0; i < 20; i++) InputManager::getInstance().getInput();
  recorder->seen.clear();
  sf::Mouse::setPosition(sf::Vector2i(100, 90), *window);
  for (int i = 0; i < 200 && recorder->seen.empty(); i++) {
    InputManager::getInstance().getInput();
    sf::sleep(sf::milliseconds(5));
  }
  ASSERT_FALSE(recorder->seen.empty()) << "no pointer motion reached the window";
  EXPECT_EQ(recorder->seen.back(), "moved -1 (5,3)");
}

}  // namespace

namespace {

// The keyboard picture must agree with the window library key by key. Each
// key code of the X server is pressed for real (XTest) and both are asked
// about every held-capable key.
TEST(KeyboardState, AgreesWithTheWindowLibraryForEveryKeyCode) {
  if (!std::getenv("DISPLAY")) GTEST_SKIP() << "no X display: run under xvfb-run";
  void *xtst = dlopen("libXtst.so.6", RTLD_NOW);
  if (!xtst) GTEST_SKIP() << "no XTest library";
  auto open_display =
      reinterpret_cast<void *(*)(const char *)>(dlsym(RTLD_DEFAULT, "XOpenDisplay"));
  auto close_display = reinterpret_cast<int (*)(void *)>(dlsym(RTLD_DEFAULT, "XCloseDisplay"));
  auto sync = reinterpret_cast<int (*)(void *, int)>(dlsym(RTLD_DEFAULT, "XSync"));
  auto fake_key = reinterpret_cast<int (*)(void *, unsigned, int, unsigned long)>(
      dlsym(xtst, "XTestFakeKeyEvent"));
  ASSERT_TRUE(open_display && close_display && sync && fake_key);
  // A window keeps the window library's own connection open between polls.
  sf::Window window(sf::VideoMode(32, 32), "keys");
  void *display = open_display(nullptr);
  ASSERT_NE(display, nullptr);

  std::vector<sf::Keyboard::Key> keys;
  for (int code = 0; code < sf::Keyboard::KeyCount; code++) {
    const auto k = static_cast<sf::Keyboard::Key>(code);
    if (qv::toEngineKey(k) != Key::UNDEFINED_KEY && k != sf::Keyboard::F11 &&
        k != sf::Keyboard::F12)
      keys.push_back(k);
  }
  ASSERT_EQ(keys.size(), 73u);
  int seen = 0;
  for (unsigned keycode = 8; keycode < 256; keycode++) {
    fake_key(display, keycode, 1, 0);
    sync(display, 0);
    ASSERT_TRUE(qv::refreshKeyboardState());
    for (sf::Keyboard::Key k : keys) {
      const bool ours = qv::isKeyDown(k);
      EXPECT_EQ(ours, sf::Keyboard::isKeyPressed(k)) << "key " << k << ", key code " << keycode;
      seen += ours;
    }
    fake_key(display, keycode, 0, 0);
    sync(display, 0);
  }
  // Every held-capable key was found on some key code.
  EXPECT_GE(seen, 73);
  close_display(display);
  dlclose(xtst);
}

}  // namespace
