#include "graphics/EventView.h"

namespace qv {

EventView::EventView() : EventView("", 0, false) {
}

EventView::EventView(std::string new_tag, int new_value, bool new_delta)
    : m_tag(std::move(new_tag)), m_value(new_value), m_delta(new_delta) {
  setType(VIEW_EVENT);
}

void EventView::setTag(std::string new_tag) {
  m_tag = std::move(new_tag);
}
void EventView::setValue(int new_value) {
  m_value = new_value;
}
void EventView::setDelta(bool new_delta) {
  m_delta = new_delta;
}
std::string EventView::getTag() const {
  return m_tag;
}
int EventView::getValue() const {
  return m_value;
}
bool EventView::getDelta() const {
  return m_delta;
}

}  // namespace qv
