#ifndef QV_SPLASH_QUORVELLE_H
#define QV_SPLASH_QUORVELLE_H

#include <memory>

#include "world/Object.h"

namespace qv {

class Sprite;

// The emblem of the opening sequence: rises from below the view to sit beside
// the banner, later changes to a smaller picture, and finally ends the
// sequence by setting game over.
class SplashQuorvelle : public Object {
 public:
  // Starts six rows below the view at target's column; rises to target's
  // height in 30 steps.
  explicit SplashQuorvelle(Vector target);
  ~SplashQuorvelle() override;

  int eventHandler(const Event *p_e) override;

  Vector getTarget() const;

 private:
  std::unique_ptr<Sprite> m_p_sprite;  // "splash-quorvelle" (11 x 7, BLUE), later 9 x 6 GREEN
  Vector m_target;                     // where the rise ends
  int m_step_count;                    // 30: steps of the rise
};

}  // namespace qv

#endif
