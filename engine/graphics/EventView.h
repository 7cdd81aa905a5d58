#ifndef QV_EVENT_VIEW_H
#define QV_EVENT_VIEW_H

#include <string>

#include "core/Event.h"

namespace qv {

const std::string VIEW_EVENT = "qv-view";

// Changes the value of every view object whose view string equals the tag:
// by adding to it (delta) or by replacing it.
class EventView : public Event {
 public:
  // Tag "", value 0, delta false.
  EventView();
  EventView(std::string new_tag, int new_value, bool new_delta);

  void setTag(std::string new_tag);
  void setValue(int new_value);
  void setDelta(bool new_delta);
  std::string getTag() const;
  int getValue() const;
  bool getDelta() const;

 private:
  std::string m_tag;  // "": the view string of the view objects it is meant for
  int m_value;        // 0: added, or the new value
  bool m_delta;       // false: replace the value; true: add to it
};

}  // namespace qv

#endif
