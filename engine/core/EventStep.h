#ifndef QV_EVENT_STEP_H
#define QV_EVENT_STEP_H

#include "core/Event.h"

namespace qv {

const std::string STEP_EVENT = "qv-step";

// Sent by the game manager once per frame, carrying the frame number.
class EventStep : public Event {
 public:
  EventStep();
  explicit EventStep(int init_step_count);

  void setStepCount(int new_step_count);
  int getStepCount() const;

 private:
  int m_step_count;  // the frame this event belongs to, 0 for the first
};

}  // namespace qv

#endif
