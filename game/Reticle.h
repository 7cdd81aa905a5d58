#ifndef TACTICS_RETICLE_H
#define TACTICS_RETICLE_H

#include "world/Object.h"

// The mouse cursor: a red "+" that stays under the mouse while the view scrolls.
class Reticle : public qv::Object {
 public:
  Reticle();

  int eventHandler(const qv::Event *p_e) override;
  int draw() override;

 private:
  qv::Vector m_mouse_view;  // the last mouse position on the screen (view cells)
};

#endif
