// Window input turned into engine keyboard and mouse events: key names,
// one window event at a time (built by hand), held keys and buttons, and the
// manager's start and stop.

#include <SFML/System/Sleep.hpp>
#include <SFML/Window/Event.hpp>
#include <SFML/Window/Window.hpp>

#include "DisplayFixture.h"
#include "EngineFixture.h"
#include "XInput.h"
#include "core/GameManager.h"
#include "core/LogManager.h"
#include "input/InputManager.h"
#include "platform/platform.h"
#include "world/Object.h"

namespace {

using qv::InputManager;
using K = sf::Keyboard;
using E = sf::Event;

// Every keyboard and mouse event that reaches it, described, comma separated:
// "pressed 36", "clicked 0 (10,2)".
class Recorder : public qv::Object {
 public:
  Recorder() {
    registerInterest(qv::KEYBOARD_EVENT);
    registerInterest(qv::MOUSE_EVENT);
  }
  int eventHandler(const qv::Event *p_e) override {
    seen += (seen.empty() ? "" : ", ") + describe(p_e);
    return 1;
  }
  static std::string describe(const qv::Event *p_e) {
    static const char *const KEY_ACTIONS[] = {"undefined", "pressed", "released", "held"};
    static const char *const MOUSE_ACTIONS[] = {"undefined", "clicked", "held", "moved"};
    if (const auto *k = dynamic_cast<const qv::EventKeyboard *>(p_e))
      return KEY_ACTIONS[k->getKeyboardAction() + 1] + (" " + std::to_string(k->getKey()));
    const auto *m = static_cast<const qv::EventMouse *>(p_e);
    return MOUSE_ACTIONS[m->getMouseAction() + 1] + (" " + std::to_string(m->getMouseButton())) +
           " " + m->getMousePosition().toString();
  }
  std::string seen;
};

sf::Event windowEvent(E::EventType type, int code = 0, int x = 0, int y = 0) {
  sf::Event e;
  e.type = type;
  if (type == E::KeyPressed || type == E::KeyReleased)
    e.key = E::KeyEvent{K::Key(code), false, false, false, false};
  else if (type == E::MouseMoved)
    e.mouseMove = E::MouseMoveEvent{x, y};
  else
    e.mouseButton = E::MouseButtonEvent{sf::Mouse::Button(code), x, y};
  return e;
}

// A headless engine: 1024 x 768 pixels in 80 x 24 cells, cells of 12.8 x 32.
class InputManagerTest : public qvtest::EngineFixture {};

TEST_F(InputManagerTest, KeyNamesWindowEventsAndHeldKeysInTheirOrder) {
  // Key names: a letter or a digit, a few signs, and nothing outside the table.
  std::string names;
  for (int v : {-1, 0, 9, 18, 19, 36, 61, 62, 71, 72, 74, 76, 77})
    names += "[" + qv::keyToString(qv::Keyboard::Key(v)) + "]";
  EXPECT_EQ(names, "[][ ][-]['][;][A][Z][1][0][][[][`][]");

  InputManager &input = InputManager::getInstance();
  auto *recorder = new Recorder;
  qv::LogManager::getInstance().setLogLevel(1);
  // Keys the engine lacks still arrive, as undefined keys; button releases,
  // the wheel and text mean nothing to the engine.
  for (const sf::Event &e :
       {windowEvent(E::KeyPressed, K::A), windowEvent(E::KeyReleased, K::Quote),
        windowEvent(E::KeyPressed, K::F11), windowEvent(E::KeyPressed, K::Home),
        windowEvent(E::KeyReleased, K::Unknown), windowEvent(E::MouseMoved, 0, 128, 64),
        windowEvent(E::MouseButtonPressed, sf::Mouse::Left),
        windowEvent(E::MouseButtonPressed, sf::Mouse::Right, 1023, 767),
        windowEvent(E::MouseButtonPressed, sf::Mouse::Middle, 64, 16),
        windowEvent(E::MouseButtonPressed, sf::Mouse::XButton2),
        windowEvent(E::MouseButtonReleased, sf::Mouse::Left), windowEvent(E::MouseWheelScrolled),
        windowEvent(E::TextEntered)})
    EXPECT_TRUE(input.handleEvent(e));
  // Only key events translate, and the action is left undefined.
  const qv::EventKeyboard none = input.toEventKeyboard(windowEvent(E::Resized));
  const qv::EventKeyboard z = input.toEventKeyboard(windowEvent(E::KeyPressed, K::Z));
  EXPECT_EQ(recorder->seen + ", " + Recorder::describe(&none) + ", " + Recorder::describe(&z),
            "pressed 36, released 18, pressed 34, pressed -1, released -1, moved -1 (10,2), "
            "clicked 0 (0,0), clicked 1 (79.9219,23.9688), clicked 2 (5,0.5), clicked -1 (0,0), "
            "undefined -1, undefined 61");

  // Held keys: arrows, Space, Enter, Tab, Escape, then by value with the
  // brackets before the semicolon, F1 to F10 (not F11, F12), A to Z, digits
  // and Backspace; then held buttons. Scripted input reaches the same
  // objects and counts who answered.
  recorder->seen.clear();
  input.deliverHeldKeys([](K::Key) { return true; });
  std::vector<int> order = {6,  7,  4,  5,  0,  1,  3,  2,  8,  9, 10,
                            11, 12, 13, 14, 15, 16, 17, 18, 74, 75};
  for (int k = 19; k <= 72; k++)
    if (k != qv::Keyboard::F11 && k != qv::Keyboard::F12) order.push_back(k);
  std::string expected;
  for (int k : order) expected += "held " + std::to_string(k) + ", ";
  input.deliverHeldButtons(qv::Vector(3, 4),
                           [](sf::Mouse::Button b) { return b != sf::Mouse::Right; });
  EXPECT_EQ(input.deliverKeyboard(qv::Keyboard::P, qv::KEY_PRESSED), 1);
  EXPECT_EQ(recorder->seen, expected + "held 0 (3,4), held 2 (3,4), pressed 51");

  // Closing the window ends the game, the rest of the frame's input and, as
  // a request that outlives the loop, a splash screen's loop and the game's.
  recorder->seen.clear();
  qv::GameManager::getInstance().setGameOver(false);
  EXPECT_FALSE(input.handleEvent(windowEvent(E::Closed)));
  EXPECT_TRUE(qv::GameManager::getInstance().getGameOver() && qv::platform::stopRequested());
  EXPECT_EQ(input.startUp(), -1);
  // Headless, the input manager starts without a display and reads nothing.
  input.shutDown();
  qv::LogManager::getInstance().setLogLevel(5);
  EXPECT_EQ(input.startUp(), 0);
  input.getInput();
  EXPECT_EQ(recorder->seen, "");
  EXPECT_FALSE(
      log->contains("InputManager::getInput(): DisplayManager unexpectedly returned null window!"));
  for (const char *line : {"InputManager::toEventKeyboard(): Warning key 'Home' not handled.",
                           "InputManager::toEventKeyboard(): Warning key 'Unknown' not handled.",
                           "toEventKeyboard(): Error! Called with non-keyboard event.",
                           "InputManager::getInput(): Window closed. Setting game over.",
                           "InputManager::startup(): Warning! InputManager already started.",
                           "InputManager::startUp(): no input in headless mode."})
    EXPECT_TRUE(log->contains(line)) << line;
}

// Only the log and a real window of 24 x 8 cells of 20 x 30 pixels.
class InputWindowTest : public qvtest::DisplayFixture {};

// Key repeat is off while running, and the pointer arrives in cells.
TEST_F(InputWindowTest, KeyRepeatIsOffWhileRunningAndPointerMovesArriveInCells) {
  InputManager &input = InputManager::getInstance();
  qv::LogManager::getInstance().setLogLevel(5);
  ASSERT_EQ(input.startUp(), 0);
  ASSERT_EQ(qv::WorldManager::getInstance().startUp(), 0);
  Recorder *recorder = new Recorder;
  // Let the window settle (map, focus), then move the pointer inside it.
  for (int i = 0; i < 20; i++) input.getInput();
  recorder->seen.clear();
  sf::Mouse::setPosition(sf::Vector2i(100, 90), *qv::DisplayManager::getInstance().getWindow());
  for (int i = 0; i < 200 && recorder->seen.empty(); i++) {
    input.getInput();
    sf::sleep(sf::milliseconds(5));
  }
  ASSERT_FALSE(recorder->seen.empty()) << "no pointer motion reached the window";
  EXPECT_EQ(recorder->seen.substr(recorder->seen.rfind("moved")), "moved -1 (5,3)");
  input.shutDown();
  for (const char *line : {"InputManager::startUp(): Keyboard repeated disabled.",
                           "InputManager::startUp(): successfully started.",
                           "InputManager::shutDown(): Keyboard repeat enabled.",
                           "InputManager::shutDown(): successfully stopped."})
    EXPECT_TRUE(log->contains(line)) << line;

  // Without a display the manager does not start; a window gone at run time
  // is reported, once per frame.
  qv::DisplayManager::getInstance().shutDown();
  EXPECT_EQ(input.startUp(), -1);
  EXPECT_FALSE(input.isStarted());
  input.getInput();
  EXPECT_EQ(
      log->count("InputManager::getInput(): DisplayManager unexpectedly returned null window!"), 1);
  EXPECT_TRUE(
      log->contains("InputManager::startUp(): Error! DisplayManager must be started first."));
  qv::WorldManager::getInstance().shutDown();  // deletes the recorder
}

// The keyboard picture must agree with the window library key by key: each
// key code of the X server is pressed for real and both are asked about every
// key the engine can report held.
TEST(KeyboardState, AgreesWithTheWindowLibraryForEveryKeyCode) {
  const qvtest::XInput x;
  if (!std::getenv("DISPLAY") || !x.ok()) GTEST_SKIP() << "no X display or no XTest library";
  sf::Window window(sf::VideoMode(32, 32), "keys");  // keeps the library's connection open
  int seen = 0;
  for (unsigned code = 8; code < 256; code++) {
    x.keyCode(code, true);
    ASSERT_TRUE(qv::refreshKeyboardState());
    for (int k = 0; k < K::KeyCount; k++) {
      if (qv::toEngineKey(K::Key(k)) == qv::Keyboard::UNDEFINED_KEY || k == K::F11 || k == K::F12)
        continue;
      seen += qv::isKeyDown(K::Key(k));
      EXPECT_EQ(qv::isKeyDown(K::Key(k)), K::isKeyPressed(K::Key(k))) << k << " at " << code;
    }
    x.keyCode(code, false);
  }
  EXPECT_GE(seen, 73);  // every held-capable key was found on some key code
}

}  // namespace
