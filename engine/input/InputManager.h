#ifndef QV_INPUT_MANAGER_H
#define QV_INPUT_MANAGER_H

#include <SFML/Window/Keyboard.hpp>
#include <SFML/Window/Mouse.hpp>
#include <string>

#include "core/Manager.h"
#include "input/EventKeyboard.h"
#include "input/EventMouse.h"
#include "world/Vector.h"

namespace sf {
class Event;
}

namespace qv {

// Once a frame turns the window's input into keyboard and mouse events for
// the objects interested in KEYBOARD_EVENT and MOUSE_EVENT; closing the window
// ends the game. Key repeat is off while it runs, so a held key gives one
// KEY_PRESSED and then KEY_HELD every frame instead of repeated presses.
class InputManager : public Manager {
 public:
  static InputManager &getInstance();

  // Needs the display manager started first (unless headless).
  int startUp() override;
  void shutDown() override;

  // Only KEYBOARD_EVENT and MOUSE_EVENT are delivered by the input manager.
  bool isValid(std::string event_type) const override;

  // Reads and delivers this frame's input: the window's queued events in
  // arrival order, then held mouse buttons, then held keys.
  void getInput();

  // Turns one window event into the engine event it stands for and delivers
  // it. Returns false for the window's close button (game over is set then
  // and the rest of the frame's input is to be skipped), true otherwise.
  bool handleEvent(const sf::Event &event);
  // A keyboard event for a window key event: key set, action undefined.
  EventKeyboard toEventKeyboard(const sf::Event &event) const;

  // Delivers a MOUSE_HELD event at position (cells) for each of left, right
  // and middle that is_down reports down, in that order.
  void deliverHeldButtons(Vector position, bool (*is_down)(sf::Mouse::Button));
  // Delivers a KEY_HELD event for every held-capable key that is_down reports
  // down. F11 and F12 are not held-capable: they give presses and releases only.
  void deliverHeldKeys(bool (*is_down)(sf::Keyboard::Key));

  // Delivers one keyboard event as if it came from the window (scripted
  // input, demos, tests). Returns how many handlers answered non-zero.
  int deliverKeyboard(Keyboard::Key key, KeyboardAction action);
  int deliverMouse(MouseAction action, Mouse::Button button, Vector position);

 private:
  InputManager();
  InputManager(const InputManager &) = delete;
  InputManager &operator=(const InputManager &) = delete;
};

// The engine key for a window key, UNDEFINED_KEY for keys the engine lacks.
Keyboard::Key toEngineKey(sf::Keyboard::Key sfml_key);
// The engine button for a window button, UNDEFINED_MOUSE_BUTTON for others.
Mouse::Button toEngineButton(sf::Mouse::Button sfml_button);

// Held keys are read from one picture of the whole keyboard per frame rather
// than one question to the window system per key. refreshKeyboardState takes
// the picture (false where none can be taken: no X server); isKeyDown answers
// from the last picture, or asks the window library when there is none.
bool refreshKeyboardState();
bool isKeyDown(sf::Keyboard::Key key);

}  // namespace qv

#endif
