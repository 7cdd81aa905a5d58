#ifndef QV_EVENT_PATH_H
#define QV_EVENT_PATH_H

#include "core/Event.h"
#include "path/Path.h"

namespace qv {

const std::string PATH_EVENT = "qv-path";

// Results a search reports; PATH_SEARCHING is never delivered.
const int PATH_FAILED = 0;
const int PATH_SEARCHING = 1;
const int PATH_FOUND = 2;

// Delivered by the path manager to the object a search served, once the
// search has ended: the path found, or status PATH_FAILED and an empty path.
class EventPath : public Event {
 public:
  // Status PATH_FAILED, empty path.
  EventPath();
  EventPath(int status, const Path &path);

  void setStatus(int new_status);
  void setPath(const Path &new_path);
  int getStatus() const;
  Path getPath() const;

 private:
  int m_status;  // PATH_FAILED or PATH_FOUND
  Path m_path;   // the path found, index 0; empty on failure
};

}  // namespace qv

#endif
