#include "input/InputManager.h"

#include <SFML/Graphics/RenderWindow.hpp>
#include <SFML/Window/Event.hpp>
#include <array>

#include "core/Config.h"
#include "core/GameManager.h"
#include "core/LogManager.h"
#include "graphics/DisplayManager.h"
#include "platform/platform.h"
#include "platform/x11.h"

namespace qv {

namespace {

struct KeyPair {
  sf::Keyboard::Key sfml;
  Keyboard::Key engine;
};

// Every window key the engine knows. The window library's spelling differs
// from the engine's in places (Tilde is the grave-accent key, Quote the
// apostrophe, Subtract and Add the keypad minus and plus).
const KeyPair KEY_TABLE[] = {
    {sf::Keyboard::Space, Keyboard::SPACE},
    {sf::Keyboard::Enter, Keyboard::ENTER},
    {sf::Keyboard::Escape, Keyboard::ESCAPE},
    {sf::Keyboard::Tab, Keyboard::TAB},
    {sf::Keyboard::Left, Keyboard::LEFT_ARROW},
    {sf::Keyboard::Right, Keyboard::RIGHT_ARROW},
    {sf::Keyboard::Up, Keyboard::UP_ARROW},
    {sf::Keyboard::Down, Keyboard::DOWN_ARROW},
    {sf::Keyboard::Pause, Keyboard::PAUSE},
    {sf::Keyboard::Subtract, Keyboard::MINUS},
    {sf::Keyboard::Add, Keyboard::PLUS},
    {sf::Keyboard::Tilde, Keyboard::TILDE},
    {sf::Keyboard::Period, Keyboard::PERIOD},
    {sf::Keyboard::Comma, Keyboard::COMMA},
    {sf::Keyboard::Slash, Keyboard::SLASH},
    {sf::Keyboard::Equal, Keyboard::EQUAL},
    {sf::Keyboard::Backslash, Keyboard::BACKSLASH},
    {sf::Keyboard::Multiply, Keyboard::MULTIPLY},
    {sf::Keyboard::Quote, Keyboard::QUOTE},
    {sf::Keyboard::Semicolon, Keyboard::SEMICOLON},
    {sf::Keyboard::LControl, Keyboard::LEFT_CONTROL},
    {sf::Keyboard::RControl, Keyboard::RIGHT_CONTROL},
    {sf::Keyboard::LShift, Keyboard::LEFT_SHIFT},
    {sf::Keyboard::RShift, Keyboard::RIGHT_SHIFT},
    {sf::Keyboard::F1, Keyboard::F1},
    {sf::Keyboard::F2, Keyboard::F2},
    {sf::Keyboard::F3, Keyboard::F3},
    {sf::Keyboard::F4, Keyboard::F4},
    {sf::Keyboard::F5, Keyboard::F5},
    {sf::Keyboard::F6, Keyboard::F6},
    {sf::Keyboard::F7, Keyboard::F7},
    {sf::Keyboard::F8, Keyboard::F8},
    {sf::Keyboard::F9, Keyboard::F9},
    {sf::Keyboard::F10, Keyboard::F10},
    {sf::Keyboard::F11, Keyboard::F11},
    {sf::Keyboard::F12, Keyboard::F12},
    {sf::Keyboard::Num1, Keyboard::NUM_1},
    {sf::Keyboard::Num2, Keyboard::NUM_2},
    {sf::Keyboard::Num3, Keyboard::NUM_3},
    {sf::Keyboard::Num4, Keyboard::NUM_4},
    {sf::Keyboard::Num5, Keyboard::NUM_5},
    {sf::Keyboard::Num6, Keyboard::NUM_6},
    {sf::Keyboard::Num7, Keyboard::NUM_7},
    {sf::Keyboard::Num8, Keyboard::NUM_8},
    {sf::Keyboard::Num9, Keyboard::NUM_9},
    {sf::Keyboard::Num0, Keyboard::NUM_0},
    {sf::Keyboard::Backspace, Keyboard::BACKSPACE},
    {sf::Keyboard::LBracket, Keyboard::LEFT_BRACKET},
    {sf::Keyboard::RBracket, Keyboard::RIGHT_BRACKET},
};

// The keys polled for KEY_HELD, in delivery order. F11 and F12 are left out
// on purpose: they toggle things (full screen, screenshots) where a held
// event every frame would repeat the toggle.
const sf::Keyboard::Key HELD_KEYS[] = {
    sf::Keyboard::Up,        sf::Keyboard::Down,      sf::Keyboard::Left,
    sf::Keyboard::Right,     sf::Keyboard::Space,     sf::Keyboard::Enter,
    sf::Keyboard::Tab,       sf::Keyboard::Escape,    sf::Keyboard::Pause,
    sf::Keyboard::Subtract,  sf::Keyboard::Add,       sf::Keyboard::Tilde,
    sf::Keyboard::Period,    sf::Keyboard::Comma,     sf::Keyboard::Slash,
    sf::Keyboard::Equal,     sf::Keyboard::Backslash, sf::Keyboard::Multiply,
    sf::Keyboard::Quote,     sf::Keyboard::LBracket,  sf::Keyboard::RBracket,
    sf::Keyboard::Semicolon, sf::Keyboard::LControl,  sf::Keyboard::RControl,
    sf::Keyboard::LShift,    sf::Keyboard::RShift,    sf::Keyboard::F1,
    sf::Keyboard::F2,        sf::Keyboard::F3,        sf::Keyboard::F4,
    sf::Keyboard::F5,        sf::Keyboard::F6,        sf::Keyboard::F7,
    sf::Keyboard::F8,        sf::Keyboard::F9,        sf::Keyboard::F10,
    sf::Keyboard::A,         sf::Keyboard::B,         sf::Keyboard::C,
    sf::Keyboard::D,         sf::Keyboard::E,         sf::Keyboard::F,
    sf::Keyboard::G,         sf::Keyboard::H,         sf::Keyboard::I,
    sf::Keyboard::J,         sf::Keyboard::K,         sf::Keyboard::L,
    sf::Keyboard::M,         sf::Keyboard::N,         sf::Keyboard::O,
    sf::Keyboard::P,         sf::Keyboard::Q,         sf::Keyboard::R,
    sf::Keyboard::S,         sf::Keyboard::T,         sf::Keyboard::U,
    sf::Keyboard::V,         sf::Keyboard::W,         sf::Keyboard::X,
    sf::Keyboard::Y,         sf::Keyboard::Z,         sf::Keyboard::Num1,
    sf::Keyboard::Num2,      sf::Keyboard::Num3,      sf::Keyboard::Num4,
    sf::Keyboard::Num5,      sf::Keyboard::Num6,      sf::Keyboard::Num7,
    sf::Keyboard::Num8,      sf::Keyboard::Num9,      sf::Keyboard::Num0,
    sf::Keyboard::Backspace,
};

// Names of the window library's keys by code, for log text.
const char *const SFML_KEY_NAMES[] = {
    "A",        "B",        "C",        "D",         "E",        "F",        "G",
    "H",        "I",        "J",        "K",         "L",        "M",        "N",
    "O",        "P",        "Q",        "R",         "S",        "T",        "U",
    "V",        "W",        "X",        "Y",         "Z",        "0",        "1",
    "2",        "3",        "4",        "5",         "6",        "7",        "8",
    "9",        "Escape",   "LControl", "LShift",    "LAlt",     "LSystem",  "RControl",
    "RShift",   "RAlt",     "RSystem",  "Menu",      "[",        "]",        ";",
    ",",        ".",        "'",        "/",         "\\",       "`",        "=",
    "-",        "Space",    "Enter",    "Backspace", "Tab",      "Page Up",  "Page Down",
    "End",      "Home",     "Insert",   "Delete",    "Add",      "Subtract", "Multiply",
    "Divide",   "Left",     "Right",    "Up",        "Down",     "Numpad 0", "Numpad 1",
    "Numpad 2", "Numpad 3", "Numpad 4", "Numpad 5",  "Numpad 6", "Numpad 7", "Numpad 8",
    "Numpad 9", "F1",       "F2",       "F3",        "F4",       "F5",       "F6",
    "F7",       "F8",       "F9",       "F10",       "F11",      "F12",      "F13",
    "F14",      "F15",      "Pause",
};
static_assert(sizeof(SFML_KEY_NAMES) / sizeof(SFML_KEY_NAMES[0]) == sf::Keyboard::KeyCount,
              "one name per window key code");

const char *sfmlKeyName(int code) {
  return code >= 0 && code < sf::Keyboard::KeyCount ? SFML_KEY_NAMES[code] : "Unknown";
}

// Engine keys indexed by window key code, built once from KEY_TABLE.
const std::array<Keyboard::Key, sf::Keyboard::KeyCount> &engineKeys() {
  static const std::array<Keyboard::Key, sf::Keyboard::KeyCount> keys = [] {
    std::array<Keyboard::Key, sf::Keyboard::KeyCount> table;
    table.fill(Keyboard::UNDEFINED_KEY);
    for (int c = sf::Keyboard::A; c <= sf::Keyboard::Z; c++)
      table[c] = static_cast<Keyboard::Key>(Keyboard::A + (c - sf::Keyboard::A));
    for (const KeyPair &pair : KEY_TABLE) table[pair.sfml] = pair.engine;
    return table;
  }();
  return keys;
}

// Held keys come from one picture of the keyboard per frame.
platform::KeyboardPicture &keyboardPicture() {
  static platform::KeyboardPicture picture;
  return picture;
}

}  // namespace

bool refreshKeyboardState() {
  return keyboardPicture().refresh();
}

bool isKeyDown(sf::Keyboard::Key key) {
  const platform::KeyboardPicture &picture = keyboardPicture();
  return picture.isValid() ? picture.isDown(key) : sf::Keyboard::isKeyPressed(key);
}

Keyboard::Key toEngineKey(sf::Keyboard::Key sfml_key) {
  const int code = static_cast<int>(sfml_key);
  return code >= 0 && code < sf::Keyboard::KeyCount ? engineKeys()[code] : Keyboard::UNDEFINED_KEY;
}

Mouse::Button toEngineButton(sf::Mouse::Button sfml_button) {
  switch (sfml_button) {
    case sf::Mouse::Left:
      return Mouse::LEFT;
    case sf::Mouse::Right:
      return Mouse::RIGHT;
    case sf::Mouse::Middle:
      return Mouse::MIDDLE;
    default:
      return Mouse::UNDEFINED_MOUSE_BUTTON;
  }
}

// ---- lifecycle -------------------------------------------------------------------

InputManager::InputManager() {
  setType("InputManager");
}

InputManager &InputManager::getInstance() {
  static InputManager input_manager;
  return input_manager;
}

int InputManager::startUp() {
  LogManager &log = LogManager::getInstance();
  if (refuseSecondStart()) return -1;
  if (Config::getInstance().getHeadless()) {
    log.writeLog(1, "InputManager::startUp(): no input in headless mode.");
  } else {
    DisplayManager &display = DisplayManager::getInstance();
    if (!display.isStarted()) {
      log.writeLog("InputManager::startUp(): Error! DisplayManager must be started first.");
      return -1;
    }
    if (sf::RenderWindow *p_window = display.getWindow()) {
      p_window->setKeyRepeatEnabled(false);
      log.writeLog(2, "InputManager::startUp(): Keyboard repeated disabled.");
    } else {
      log.writeLog(
          "InputManager::startUp(): Warning! DisplayManager null. Cannot disable "
          "keyboard repeat.");
    }
  }
  Manager::startUp();
  log.writeLog(5, "InputManager::startUp(): successfully started.");
  return 0;
}

void InputManager::shutDown() {
  LogManager &log = LogManager::getInstance();
  if (sf::RenderWindow *p_window = DisplayManager::getInstance().getWindow()) {
    p_window->setKeyRepeatEnabled(true);
    log.writeLog(2, "InputManager::shutDown(): Keyboard repeat enabled.");
  }
  keyboardPicture().close();
  Manager::shutDown();
  log.writeLog(5, "InputManager::shutDown(): successfully stopped.");
}

bool InputManager::isValid(std::string event_type) const {
  return event_type == KEYBOARD_EVENT || event_type == MOUSE_EVENT;
}

// ---- per frame -------------------------------------------------------------------

void InputManager::getInput() {
  if (Config::getInstance().getHeadless()) return;
  sf::RenderWindow *p_window = DisplayManager::getInstance().getWindow();
  if (!p_window) {
    LogManager::getInstance().writeLog(
        "InputManager::getInput(): DisplayManager unexpectedly returned null window!");
    return;
  }
  sf::Event event;
  while (p_window->pollEvent(event))
    if (!handleEvent(event)) return;

  const sf::Vector2i pointer = sf::Mouse::getPosition(*p_window);
  deliverHeldButtons(
      pixelsToSpaces(Vector(static_cast<float>(pointer.x), static_cast<float>(pointer.y))),
      &sf::Mouse::isButtonPressed);
  refreshKeyboardState();
  deliverHeldKeys(&isKeyDown);
}

bool InputManager::handleEvent(const sf::Event &event) {
  switch (event.type) {
    case sf::Event::Closed:
      LogManager::getInstance().writeLog(
          1, "InputManager::getInput(): Window closed. Setting game over.");
      GameManager::getInstance().setGameOver(true);
      // Closing the window ends the program, not just the loop that is running
      // (the splash screen runs a loop of its own before the game's).
      platform::requestStop();
      return false;
    case sf::Event::KeyPressed:
    case sf::Event::KeyReleased: {
      EventKeyboard keyboard = toEventKeyboard(event);
      keyboard.setKeyboardAction(event.type == sf::Event::KeyPressed ? KEY_PRESSED : KEY_RELEASED);
      onEvent(&keyboard);
      break;
    }
    case sf::Event::MouseMoved:
      deliverMouse(MOUSE_MOVED, Mouse::UNDEFINED_MOUSE_BUTTON,
                   pixelsToSpaces(Vector(static_cast<float>(event.mouseMove.x),
                                         static_cast<float>(event.mouseMove.y))));
      break;
    case sf::Event::MouseButtonPressed:
      deliverMouse(MOUSE_CLICKED, toEngineButton(event.mouseButton.button),
                   pixelsToSpaces(Vector(static_cast<float>(event.mouseButton.x),
                                         static_cast<float>(event.mouseButton.y))));
      break;
    default:
      // Releases of mouse buttons, the wheel, text, resizing and focus mean
      // nothing to the engine.
      break;
  }
  return true;
}

EventKeyboard InputManager::toEventKeyboard(const sf::Event &event) const {
  LogManager &log = LogManager::getInstance();
  EventKeyboard keyboard;
  if (event.type != sf::Event::KeyPressed && event.type != sf::Event::KeyReleased) {
    log.writeLog("toEventKeyboard(): Error! Called with non-keyboard event.");
    return keyboard;
  }
  const Keyboard::Key key = toEngineKey(event.key.code);
  const char *name = sfmlKeyName(event.key.code);
  if (key == Keyboard::UNDEFINED_KEY)
    log.writeLog(1, "InputManager::toEventKeyboard(): Warning key '%s' not handled.", name);
  keyboard.setKey(key);
  log.writeLog(15, "InputManager::toEventKeyboard(): Keyboard event '%s' (%s)",
               keyToString(key).c_str(), name);
  return keyboard;
}

void InputManager::deliverHeldButtons(Vector position, bool (*is_down)(sf::Mouse::Button)) {
  static const sf::Mouse::Button BUTTONS[] = {sf::Mouse::Left, sf::Mouse::Right, sf::Mouse::Middle};
  EventMouse held;
  held.setMouseAction(MOUSE_HELD);
  held.setMousePosition(position);
  for (sf::Mouse::Button button : BUTTONS) {
    if (!is_down(button)) continue;
    held.setMouseButton(toEngineButton(button));
    onEvent(&held);
  }
}

void InputManager::deliverHeldKeys(bool (*is_down)(sf::Keyboard::Key)) {
  for (sf::Keyboard::Key key : HELD_KEYS)
    if (is_down(key)) deliverKeyboard(toEngineKey(key), KEY_HELD);
}

int InputManager::deliverKeyboard(Keyboard::Key key, KeyboardAction action) {
  EventKeyboard keyboard;
  keyboard.setKey(key);
  keyboard.setKeyboardAction(action);
  return onEvent(&keyboard);
}

int InputManager::deliverMouse(MouseAction action, Mouse::Button button, Vector position) {
  EventMouse mouse;
  mouse.setMouseAction(action);
  mouse.setMouseButton(button);
  mouse.setMousePosition(position);
  return onEvent(&mouse);
}

}  // namespace qv
