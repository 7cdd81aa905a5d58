#ifndef ARCADE_SAUCER_H
#define ARCADE_SAUCER_H

#include "world/Object.h"

// Flies in from the right at a random height; one that gets past the ship
// comes round again. A bullet or the nuke blows it up, and a new one of the
// same kind takes its place.
class Saucer : public qv::Object {
 public:
  Saucer();

  int eventHandler(const qv::Event *p_e) override;

 protected:
  Saucer(const char *sprite_label, const char *type, int points, float speed);
  // A new enemy of the same kind, to replace this one.
  virtual void replace() const;

 private:
  // Somewhere beyond the right edge of the world, at a random height.
  void moveToStart();
  void blowUp();

  int m_points;  // what destroying it is worth
};

#endif
