#ifndef QV_EVENT_MOUSE_H
#define QV_EVENT_MOUSE_H

#include <cstdint>
#include <string>

#include "core/Event.h"
#include "world/Vector.h"

namespace qv {

const std::string MOUSE_EVENT = "qv-mouse";

enum MouseAction : int {
  UNDEFINED_MOUSE_ACTION = -1,
  MOUSE_CLICKED = 0,  // a button went down
  MOUSE_HELD = 1,     // a button is down during this frame (sent every frame)
  MOUSE_MOVED = 2,
};

namespace Mouse {
enum Button : int {
  UNDEFINED_MOUSE_BUTTON = -1,
  LEFT = 0,
  RIGHT = 1,
  MIDDLE = 2,
};
}  // namespace Mouse

// The mouse moved, or a button was clicked or is being held. The position is
// in character cells of the window (view coordinates, not world ones).
class EventMouse : public Event {
 public:
  EventMouse();

  void setMouseAction(MouseAction new_mouse_action);
  void setMouseButton(Mouse::Button new_mouse_button);
  void setMousePosition(Vector new_mouse_xy);

  MouseAction getMouseAction() const;
  Mouse::Button getMouseButton() const;
  Vector getMousePosition() const;

 private:
  std::int32_t m_mouse_action;  // UNDEFINED_MOUSE_ACTION: a MouseAction
  std::int32_t m_mouse_button;  // UNDEFINED_MOUSE_BUTTON: a Mouse::Button
  Vector m_mouse_xy;            // (0, 0): pointer position in cells
};

}  // namespace qv

#endif
