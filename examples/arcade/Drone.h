#ifndef ARCADE_DRONE_H
#define ARCADE_DRONE_H

#include "Saucer.h"

// A faster enemy that weaves up and down; worth more than a saucer.
class Drone : public Saucer {
 public:
  Drone();

  int eventHandler(const qv::Event *p_e) override;

 protected:
  void replace() const override;

 private:
  int m_steps;  // frames since the last change of vertical direction
};

#endif
