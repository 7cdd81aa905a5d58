#include "input/EventMouse.h"

namespace qv {

EventMouse::EventMouse()
    : m_mouse_action(UNDEFINED_MOUSE_ACTION), m_mouse_button(Mouse::UNDEFINED_MOUSE_BUTTON) {
  setType(MOUSE_EVENT);
}

void EventMouse::setMouseAction(MouseAction new_mouse_action) {
  m_mouse_action = new_mouse_action;
}

void EventMouse::setMouseButton(Mouse::Button new_mouse_button) {
  m_mouse_button = new_mouse_button;
}

void EventMouse::setMousePosition(Vector new_mouse_xy) {
  m_mouse_xy = new_mouse_xy;
}

MouseAction EventMouse::getMouseAction() const {
  return static_cast<MouseAction>(m_mouse_action);
}

Mouse::Button EventMouse::getMouseButton() const {
  return static_cast<Mouse::Button>(m_mouse_button);
}

Vector EventMouse::getMousePosition() const {
  return m_mouse_xy;
}

}  // namespace qv
