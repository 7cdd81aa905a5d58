#ifndef TACTICS_CAMERA_H
#define TACTICS_CAMERA_H

#include "world/Object.h"

// The invisible object the view follows. While W, A, S or D is held it
// drifts 1 cell a frame up or down, 2 sideways, scrolling the world.
class Camera : public qv::Object {
 public:
  Camera();
  ~Camera() override;  // the view goes back to the title screen

  int eventHandler(const qv::Event *p_e) override;

 private:
  int m_dx = 0;  // cells per step
  int m_dy = 0;
};

#endif
