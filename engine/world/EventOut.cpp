#include "world/EventOut.h"

namespace qv {

EventOut::EventOut() {
  setType(OUT_EVENT);
}

}  // namespace qv
