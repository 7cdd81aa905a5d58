#ifndef QV_OBJECT_LIST_H
#define QV_OBJECT_LIST_H

namespace qv {

class Object;
class ObjectListIterator;

// An ordered, growable array of object pointers that never owns the objects
// (the world manager does). Lists are passed and returned by value; growth
// doubles from one slot and a copy allocates exactly the source's capacity.
class ObjectList {
 public:
  ObjectList();
  ObjectList(const ObjectList &other);
  ObjectList(ObjectList &&other) noexcept;
  ObjectList &operator=(const ObjectList &rhs);
  ObjectList &operator=(ObjectList &&rhs) noexcept;
  ~ObjectList();

  // Appends p_o (duplicates allowed). -1 for a null object or when the
  // array cannot grow; the list is then unchanged.
  int insert(Object *p_o);
  // Removes the first entry equal to p_o, keeping the order of the rest.
  // -1 when p_o is not in the list.
  int remove(Object *p_o);
  // Forgets every entry; the allocated slots are kept for reuse.
  void clear();

  int getCount() const;
  int getCapacity() const;
  bool isEmpty() const;
  // True when p_o is held at least once.
  bool contains(const Object *p_o) const;

  // The entry at index. Any index outside [0, count) is logged and throws
  // std::out_of_range: a bad index is a programming error, not a result.
  Object *operator[](int index) const;

  // This list followed by every entry of other, in order.
  ObjectList operator+(ObjectList other) const;

 private:
  friend class ObjectListIterator;
  bool grow();
  void copyFrom(const ObjectList &other);
  void release();

  // Entries live in m_p_list[m_start .. m_start + m_count): removing near the
  // front shifts the shorter side, so emptying a long list in order (as the
  // world does when it deletes objects) stays linear.
  int m_count;        // entries held
  int m_capacity;     // slots allocated; 0 only if an allocation failed
  int m_start;        // slot of the first entry
  Object **m_p_list;  // the slots, null when m_capacity is 0
};

}  // namespace qv

#endif
