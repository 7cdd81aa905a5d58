#include "Path.h"

namespace qv {

Path::Path() : m_index(0) {}

void Path::setNodes(const std::vector<Vector> &nodes) { m_nodes = nodes; }

const std::vector<Vector> &Path::getNodes() const { return m_nodes; }

int Path::getNodeCount() const { return static_cast<int>(m_nodes.size()); }

int Path::getIndex() const { return m_index; }

Vector Path::getCurrent() const {
  if (isDone()) return Vector(0, 0);
  return m_nodes[static_cast<size_t>(m_index)];
}

void Path::advance() {
  if (m_index < getNodeCount()) m_index++;
}

bool Path::isDone() const { return m_index >= getNodeCount(); }

bool Path::operator==(const Path &other) const {
  return m_index == other.m_index && m_nodes == other.m_nodes;
}

bool Path::operator!=(const Path &other) const { return !(*this == other); }

std::string Path::toString() const {
  std::string text;
  for (const Vector &v : m_nodes) {
    text += v.toString();
    text += '|';
  }
  return text;
}

}  // namespace qv
