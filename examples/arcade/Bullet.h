#ifndef ARCADE_BULLET_H
#define ARCADE_BULLET_H

#include "world/Object.h"

// Flies right from the ship until it hits a saucer (the saucer sees to
// that) or leaves the world.
class Bullet : public qv::Object {
 public:
  explicit Bullet(qv::Vector ship_position);

  int eventHandler(const qv::Event *p_e) override;
};

#endif
