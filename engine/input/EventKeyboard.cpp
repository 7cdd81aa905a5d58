#include "input/EventKeyboard.h"

namespace qv {

EventKeyboard::EventKeyboard()
    : m_key(Keyboard::UNDEFINED_KEY), m_keyboard_action(UNDEFINED_KEYBOARD_ACTION) {
  setType(KEYBOARD_EVENT);
}

void EventKeyboard::setKey(Keyboard::Key new_key) {
  m_key = new_key;
}

void EventKeyboard::setKeyboardAction(KeyboardAction new_action) {
  m_keyboard_action = new_action;
}

Keyboard::Key EventKeyboard::getKey() const {
  return static_cast<Keyboard::Key>(m_key);
}

KeyboardAction EventKeyboard::getKeyboardAction() const {
  return static_cast<KeyboardAction>(m_keyboard_action);
}

std::string keyToString(Keyboard::Key key) {
  using namespace Keyboard;
  if (key >= A && key <= Z) return std::string(1, static_cast<char>('A' + (key - A)));
  if (key >= NUM_1 && key <= NUM_9) return std::string(1, static_cast<char>('1' + (key - NUM_1)));
  switch (key) {
    case SPACE:
      return " ";
    case MINUS:
      return "-";
    case PLUS:
      return "+";
    case TILDE:
      return "~";
    case PERIOD:
      return ".";
    case COMMA:
      return ",";
    case SLASH:
      return "/";
    case EQUAL:
      return "=";
    case BACKSLASH:
      return "\\";
    case MULTIPLY:
      return "*";
    case QUOTE:
      return "'";
    case SEMICOLON:
      return ";";
    case NUM_0:
      return "0";
    case LEFT_BRACKET:
      return "[";
    case RIGHT_BRACKET:
      return "]";
    case BACKTICK:
      return "`";
    default:
      return "";
  }
}

}  // namespace qv
