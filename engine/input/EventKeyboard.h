#ifndef QV_EVENT_KEYBOARD_H
#define QV_EVENT_KEYBOARD_H

#include <cstdint>
#include <string>

#include "core/Event.h"

namespace qv {

const std::string KEYBOARD_EVENT = "qv-keyboard";

enum KeyboardAction : int {
  UNDEFINED_KEYBOARD_ACTION = -1,
  KEY_PRESSED = 0,   // the key went down
  KEY_RELEASED = 1,  // the key went up
  KEY_HELD = 2,      // the key is down during this frame (sent every frame)
};

// The engine's own key codes, independent of the window library, so game
// code never sees its types. The numbering is fixed: games may store it.
namespace Keyboard {
enum Key : int {
  UNDEFINED_KEY = -1,
  SPACE = 0,
  ENTER,
  ESCAPE,
  TAB,
  LEFT_ARROW,
  RIGHT_ARROW,
  UP_ARROW,
  DOWN_ARROW,
  PAUSE,
  MINUS,
  PLUS,
  TILDE,
  PERIOD,
  COMMA,
  SLASH,
  EQUAL,
  BACKSLASH,
  MULTIPLY,
  QUOTE,
  SEMICOLON,
  LEFT_CONTROL,
  RIGHT_CONTROL,
  LEFT_SHIFT,
  RIGHT_SHIFT,
  F1,
  F2,
  F3,
  F4,
  F5,
  F6,
  F7,
  F8,
  F9,
  F10,
  F11,
  F12,
  A,
  B,
  C,
  D,
  E,
  F,
  G,
  H,
  I,
  J,
  K,
  L,
  M,
  N,
  O,
  P,
  Q,
  R,
  S,
  T,
  U,
  V,
  W,
  X,
  Y,
  Z,
  NUM_1,
  NUM_2,
  NUM_3,
  NUM_4,
  NUM_5,
  NUM_6,
  NUM_7,
  NUM_8,
  NUM_9,
  NUM_0,
  BACKSPACE,
  // 73 belongs to no key.
  LEFT_BRACKET = 74,
  RIGHT_BRACKET = 75,
  BACKTICK = 76,  // numbered, but never produced from window input
};
}  // namespace Keyboard

// A key was pressed, released or is being held.
class EventKeyboard : public Event {
 public:
  EventKeyboard();

  void setKey(Keyboard::Key new_key);
  void setKeyboardAction(KeyboardAction new_action);

  Keyboard::Key getKey() const;
  KeyboardAction getKeyboardAction() const;

 private:
  std::int32_t m_key;              // UNDEFINED_KEY: a Keyboard::Key
  std::int32_t m_keyboard_action;  // UNDEFINED_KEYBOARD_ACTION: a KeyboardAction
};

// The character a key types ("A", "7", " ", "[" ...), or "" for keys that
// type none, UNDEFINED_KEY and values outside the table.
std::string keyToString(Keyboard::Key key);

}  // namespace qv

#endif
