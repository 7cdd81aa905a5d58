#ifndef ARCADE_EXPLOSION_H
#define ARCADE_EXPLOSION_H

#include "world/Object.h"

// Plays the explosion sprite once where something blew up, then goes.
class Explosion : public qv::Object {
 public:
  explicit Explosion(qv::Vector position);

  int eventHandler(const qv::Event *p_e) override;

 private:
  int m_steps_left;  // frames until the animation has run once
};

#endif
