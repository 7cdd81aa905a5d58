#include "world/ObjectListIterator.h"

namespace qv {

ObjectListIterator::ObjectListIterator(const ObjectList *p_list) : m_index(0), m_p_list(p_list) {
}

void ObjectListIterator::first() {
  m_index = 0;
}

void ObjectListIterator::next() {
  if (!isDone()) m_index++;
}

bool ObjectListIterator::isDone() const {
  return !m_p_list || m_index >= m_p_list->m_count;
}

Object *ObjectListIterator::currentObject() const {
  if (isDone()) return nullptr;
  return m_p_list->m_p_list[m_p_list->m_start + m_index];
}

void ObjectListIterator::setList(const ObjectList *p_list) {
  m_p_list = p_list;
  m_index = 0;
}

}  // namespace qv
