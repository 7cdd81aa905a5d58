#ifndef QV_OBJECT_LIST_ITERATOR_H
#define QV_OBJECT_LIST_ITERATOR_H

#include "world/ObjectList.h"

namespace qv {

// Walks one ObjectList from the front. The iterator does not copy the list:
// it sees changes made to it, so code that changes a list while walking it
// walks a copy instead.
class ObjectListIterator {
 public:
  explicit ObjectListIterator(const ObjectList *p_list);

  void first();
  // Steps forward, but never beyond the end: a finished iterator stays finished.
  void next();
  bool isDone() const;
  // The current entry, or null when done.
  Object *currentObject() const;
  // Walks p_list from its first entry.
  void setList(const ObjectList *p_list);

 private:
  ObjectListIterator() = delete;

  int m_index;                 // position of the current entry
  const ObjectList *m_p_list;  // the list walked, not owned
};

}  // namespace qv

#endif
