#include "Manager.h"

#include "LogManager.h"

namespace qv {

Manager::Manager() : m_type("Manager"), m_is_started(false) {}

Manager::~Manager() {}

bool Manager::isValid(std::string) const { return false; }

int Manager::startUp() {
  if (m_is_started)
    LogManager::getInstance().writeLog(
        1, "Manager::startUp(): Warning! %s already started.", m_type.c_str());
  m_is_started = true;
  return 0;
}

void Manager::shutDown() {
  if (!m_is_started)
    LogManager::getInstance().writeLog(
        1, "Manager::shutDown(): Warning! %s not started.", m_type.c_str());
  m_is_started = false;
}

std::string Manager::getType() const { return m_type; }

void Manager::setType(std::string type) { m_type = std::move(type); }

bool Manager::isStarted() const { return m_is_started; }

}  // namespace qv
