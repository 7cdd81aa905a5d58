#ifndef QV_PATH_H
#define QV_PATH_H

#include <iosfwd>
#include <string>
#include <vector>

#include "world/Vector.h"

namespace qv {

// A list of waypoints an object steers toward one after the other, with the
// index of the waypoint it is heading for. Kept light: every Object holds one.
class Path {
 public:
  // No waypoints, index 0 (so the path is done).
  Path();

  // Replaces the waypoints; the index is kept.
  void setNodes(const std::vector<Vector> &nodes);
  const std::vector<Vector> &getNodes() const;
  int getNodeCount() const;
  int getIndex() const;

  // The waypoint at the index, or (0,0) once the path is done.
  Vector getCurrent() const;
  // Moves to the next waypoint, never beyond the end.
  void advance();
  // True when every waypoint has been passed (an empty path is done).
  bool isDone() const;

  bool operator==(const Path &other) const;
  bool operator!=(const Path &other) const;

  // Each waypoint's text followed by "|", e.g. "(1,2)|(2,2)|"; "" when empty.
  std::string toString() const;

  // The waypoints only: a path read back starts at its first waypoint.
  // 0, or -1 for a bad stream.
  int serialize(std::stringstream *p_ss) const;
  int deserialize(std::stringstream *p_ss);

 private:
  std::vector<Vector> m_nodes;  // empty, first waypoint first
  int m_index;                  // 0, the waypoint heading for; count when done
};

}  // namespace qv

#endif
