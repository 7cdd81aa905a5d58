#ifndef QV_MANAGER_H
#define QV_MANAGER_H

#include <string>

namespace qv {

// Base of every engine manager: a type name and a started flag with the
// start/stop rules every manager shares. Managers are singletons started and
// stopped only by the GameManager.
class Manager {
 public:
  Manager();

  // May this manager hold interest in, and deliver, this event type?
  virtual bool isValid(std::string event_type) const;
  virtual ~Manager();

  // Marks the manager started; derived managers call this last on success.
  virtual int startUp();
  // Clears the started flag; derived managers call this from their own.
  virtual void shutDown();

  std::string getType() const;
  void setType(std::string type);
  bool isStarted() const;

 private:
  Manager(const Manager &) = delete;
  Manager &operator=(const Manager &) = delete;

  std::string m_type;    // "Manager" until a derived constructor names it
  bool m_is_started;     // false until startUp succeeds
};

}  // namespace qv

#endif
