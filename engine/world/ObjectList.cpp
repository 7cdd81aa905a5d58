#include "world/ObjectList.h"

#include <cstring>
#include <new>
#include <stdexcept>

#include "core/LogManager.h"

namespace qv {

namespace {

// Slots come from new (nothrow) so that a failed allocation is a result the
// list reports instead of an exception.
Object **allocateSlots(int capacity) {
  if (capacity <= 0) return nullptr;
  return new (std::nothrow) Object *[capacity];
}

}  // namespace

ObjectList::ObjectList() : m_count(0), m_capacity(1), m_start(0), m_p_list(allocateSlots(1)) {
  if (!m_p_list) m_capacity = 0;
}

ObjectList::ObjectList(const ObjectList &other)
    : m_count(0), m_capacity(0), m_start(0), m_p_list(nullptr) {
  copyFrom(other);
}

ObjectList::ObjectList(ObjectList &&other) noexcept
    : m_count(other.m_count),
      m_capacity(other.m_capacity),
      m_start(other.m_start),
      m_p_list(other.m_p_list) {
  other.m_p_list = nullptr;
  other.release();
}

ObjectList &ObjectList::operator=(const ObjectList &rhs) {
  if (this == &rhs) return *this;
  release();
  copyFrom(rhs);
  return *this;
}

ObjectList &ObjectList::operator=(ObjectList &&rhs) noexcept {
  if (this == &rhs) return *this;
  release();
  m_count = rhs.m_count;
  m_capacity = rhs.m_capacity;
  m_start = rhs.m_start;
  m_p_list = rhs.m_p_list;
  rhs.m_p_list = nullptr;
  rhs.release();
  return *this;
}

ObjectList::~ObjectList() {
  delete[] m_p_list;
}

void ObjectList::release() {
  delete[] m_p_list;
  m_p_list = nullptr;
  m_count = 0;
  m_capacity = 0;
  m_start = 0;
}

void ObjectList::copyFrom(const ObjectList &other) {
  m_p_list = allocateSlots(other.m_capacity);
  if (!m_p_list) return;  // the copy stays empty with capacity 0
  m_capacity = other.m_capacity;
  m_count = other.m_count;
  m_start = 0;
  if (m_count > 0)
    std::memcpy(m_p_list, other.m_p_list + other.m_start, sizeof(Object *) * m_count);
}

bool ObjectList::grow() {
  // A list whose first allocation failed starts again from one slot.
  const int new_capacity = m_capacity > 0 ? m_capacity * 2 : 1;
  Object **p_new = allocateSlots(new_capacity);
  if (!p_new) return false;
  if (m_count > 0) std::memcpy(p_new, m_p_list + m_start, sizeof(Object *) * m_count);
  delete[] m_p_list;
  m_p_list = p_new;
  m_capacity = new_capacity;
  m_start = 0;
  return true;
}

int ObjectList::insert(Object *p_o) {
  if (!p_o) return -1;
  if (m_count == m_capacity) {
    if (!grow()) return -1;
  } else if (m_start + m_count == m_capacity) {
    // Free slots sit before the entries: slide them back to the front.
    std::memmove(m_p_list, m_p_list + m_start, sizeof(Object *) * m_count);
    m_start = 0;
  }
  m_p_list[m_start + m_count++] = p_o;
  return 0;
}

int ObjectList::remove(Object *p_o) {
  Object **p_first = m_p_list + m_start;
  for (int i = 0; i < m_count; i++) {
    if (p_first[i] != p_o) continue;
    if (i < m_count / 2) {
      std::memmove(p_first + 1, p_first, sizeof(Object *) * i);
      m_start++;
    } else {
      std::memmove(p_first + i, p_first + i + 1, sizeof(Object *) * (m_count - i - 1));
    }
    if (--m_count == 0) m_start = 0;
    return 0;
  }
  return -1;
}

void ObjectList::clear() {
  m_count = 0;
  m_start = 0;
}

int ObjectList::getCount() const {
  return m_count;
}

int ObjectList::getCapacity() const {
  return m_capacity;
}

bool ObjectList::isEmpty() const {
  return m_count == 0;
}

bool ObjectList::contains(const Object *p_o) const {
  const Object *const *p_first = m_p_list + m_start;
  for (int i = 0; i < m_count; i++)
    if (p_first[i] == p_o) return true;
  return false;
}

Object *ObjectList::operator[](int index) const {
  if (index < 0 || index >= m_count) {
    LogManager::getInstance().writeLog(
        "ObjectList::operator[](): Error! Index %d out of range [0, %d]", index, m_count - 1);
    throw std::out_of_range("ObjectList::operator[](): Invalid index!");
  }
  return m_p_list[m_start + index];
}

ObjectList ObjectList::operator+(ObjectList other) const {
  ObjectList sum(*this);
  for (int i = 0; i < other.m_count; i++) sum.insert(other.m_p_list[other.m_start + i]);
  return sum;
}

}  // namespace qv
