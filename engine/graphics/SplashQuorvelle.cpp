#include "graphics/SplashQuorvelle.h"

#include "core/EventStep.h"
#include "core/GameManager.h"
#include "graphics/Splash.h"
#include "graphics/Sprite.h"
#include "world/WorldManager.h"

namespace qv {

namespace {

const int RISE_STEPS = 30;
// Step counts (after the rise) at which the emblem shrinks and the sequence ends.
const int SHRINK_AT = -15;
const int END_AT = -45;
// Float steps of the rise may land a hair below the target; that still counts
// as arrived, so the emblem stops on its row instead of one step later.
const float ARRIVAL_TOLERANCE = 0.001f;

}  // namespace

SplashQuorvelle::SplashQuorvelle(Vector target)
    : m_p_sprite(
          makeSprite("splash-quorvelle", 11, 7, BLUE, 2, {splashEmblem(0), splashEmblem(1)})),
      m_target(target),
      m_step_count(RISE_STEPS) {
  setUpSplashObject(this, "SplashQuorvelle", m_p_sprite.get());

  const Box view = WorldManager::getInstance().getView();
  const Vector start(target.getX(), view.getCorner().getY() + view.getVertical() + 6);
  setPosition(start);
  setVelocity(Vector(0, -(start.getY() - target.getY()) / RISE_STEPS));
}

SplashQuorvelle::~SplashQuorvelle() {
  withdrawSplashInterests(this);
}

int SplashQuorvelle::eventHandler(const Event *p_e) {
  const int ending = leaveAtSplashEnd(this, p_e);
  if (ending != 0) return ending > 0 ? 1 : 0;
  if (p_e->getType() != STEP_EVENT) return 0;

  m_step_count--;
  if (m_step_count < 1 && m_target.getY() + ARRIVAL_TOLERANCE >= getPosition().getY())
    setVelocity(Vector(0, 0));
  if (m_step_count == SHRINK_AT) {
    std::unique_ptr<Sprite> p_small = makeSprite("", 9, 6, GREEN, 1, {splashSmallEmblem()});
    Animation animation = getAnimation();
    animation.setSprite(p_small.get());
    setAnimation(animation, true);
    m_p_sprite = std::move(p_small);
    const Vector pos = getPosition();
    setPosition(Vector(pos.getX() - 1, pos.getY()));
  }
  if (m_step_count == END_AT) {
    GameManager::getInstance().setGameOver();
    WorldManager::getInstance().markForDelete(this);
  }
  return 1;
}

Vector SplashQuorvelle::getTarget() const {
  return m_target;
}

}  // namespace qv
