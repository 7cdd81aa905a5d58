#ifndef QV_PATH_MANAGER_H
#define QV_PATH_MANAGER_H

#include <vector>

#include "core/Manager.h"
#include "world/Vector.h"

namespace qv {

class Object;
class PathFind;

// Steps every running path search, round-robin, in the time left at the end
// of each frame, and delivers each result to its object as a PATH_EVENT.
// The manager lists searches but never owns them: their objects do.
class PathManager : public Manager {
 public:
  static PathManager &getInstance();
  ~PathManager() override;

  // Takes the minimum cycle time from the game manager's frame time.
  int startUp() override;
  // Leaves the listed searches alone: their objects own them and delist
  // them when they go.
  void shutDown() override;

  // Starts a search for p_o from its cell toward goal (optionally until it
  // touches p_target), attaches it to p_o (releasing one already attached)
  // and lists it. Null, with a log line, when the manager is not started or
  // p_o is null.
  PathFind *findPath(Object *p_o, Vector goal, Object *p_target = nullptr);
  // Lists a search built elsewhere; -1 for null or one already listed.
  int addPathFind(PathFind *p_path_find);
  // Removes every entry equal to p_path_find: -1 for null or when not
  // listed, else 0.
  int removePathFind(PathFind *p_path_find);

  // Steps the listed searches in rounds, one step each per round, until none
  // is left or the larger of budget_ms and the minimum cycle time has
  // passed. A finished search that its object does not release is delisted
  // with a warning instead of being reported again on every later step.
  void cycle(int budget_ms);

  int getMinCycleTime() const;
  int getSearchCount() const;
  bool isListed(const PathFind *p_path_find) const;

 private:
  PathManager();
  void deliver(PathFind *p_path_find, int status);

  std::vector<PathFind *> m_searches;  // the running searches, stepped in order
  int m_min_cycle_time;                // ms, frame time / 10
  PathFind *m_p_delivering;            // null, or the search whose result is out
  bool m_delivery_released;            // its object released it during delivery
};

}  // namespace qv

#endif
