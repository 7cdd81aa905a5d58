#include "path/Path.h"

#include <sstream>

#include "core/utility.h"

namespace qv {

Path::Path() : m_index(0) {
}

void Path::setNodes(const std::vector<Vector> &nodes) {
  m_nodes = nodes;
}

const std::vector<Vector> &Path::getNodes() const {
  return m_nodes;
}

int Path::getNodeCount() const {
  return static_cast<int>(m_nodes.size());
}

int Path::getIndex() const {
  return m_index;
}

Vector Path::getCurrent() const {
  if (isDone()) return Vector(0, 0);
  return m_nodes[static_cast<size_t>(m_index)];
}

void Path::advance() {
  if (m_index < getNodeCount()) m_index++;
}

bool Path::isDone() const {
  return m_index >= getNodeCount();
}

bool Path::operator==(const Path &other) const {
  return m_index == other.m_index && m_nodes == other.m_nodes;
}

bool Path::operator!=(const Path &other) const {
  return !(*this == other);
}

std::string Path::toString() const {
  std::string text;
  for (const Vector &v : m_nodes) {
    text += v.toString();
    text += '|';
  }
  return text;
}

int Path::serialize(std::stringstream *p_ss) const {
  writeCount(*p_ss, m_nodes.size());
  for (const Vector &node : m_nodes) {
    writeFloat(*p_ss, node.getX());
    writeFloat(*p_ss, node.getY());
  }
  return checkStream("Path::serialize()", *p_ss);
}

int Path::deserialize(std::stringstream *p_ss) {
  const std::uint64_t NODE_BYTES = 8;
  std::uint64_t count = 0;
  std::vector<Vector> nodes;
  if (readCount(*p_ss, count, NODE_BYTES)) {
    nodes.reserve(count);  // the input holds them all, readCount checked
    for (std::uint64_t i = 0; i < count; i++) {
      float x = 0, y = 0;
      readFloat(*p_ss, x);
      readFloat(*p_ss, y);
      nodes.emplace_back(x, y);
    }
  }
  if (checkStream("Path::deserialize()", *p_ss) != 0) return -1;
  m_nodes = std::move(nodes);
  m_index = 0;
  return 0;
}

}  // namespace qv
