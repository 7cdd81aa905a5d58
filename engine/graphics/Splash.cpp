#include "graphics/Splash.h"

#include "core/EventStep.h"
#include "core/GameManager.h"
#include "core/LogManager.h"
#include "graphics/SplashQuorvelle.h"
#include "graphics/Sprite.h"
#include "input/EventKeyboard.h"
#include "world/WorldManager.h"

namespace qv {

namespace {

const int BANNER_WIDTH = 47;
const int BANNER_HEIGHT = 8;

// Rounded outline lettering while the banner slides in, boxed lettering once
// it stops. Strokes are '|', '_' and '-' because cells are much taller than
// wide: '|' joins across rows into a solid line. The boxed word keeps clear
// of the right six columns, where the emblem comes to rest.
const std::vector<std::string> BANNER[2] = {
    {
        "                                               ",
        ".--.  .  . .--. .--. .   . .--- .    .    .--- ",
        "|  |  |  | |  | |  | |   | |    |    |    |    ",
        "|  |  |  | |  | |  | |   | |--  |    |    |--  ",
        "|  |  |  | |  | |--' \\   / |    |    |    |    ",
        "| \\|  |  | |  | | \\   \\ /  |    |    |    |    ",
        "'--\\\\ '--' '--' |  \\   V   '--- '--- '--- '--- ",
        "----------- g a m e   e n g i n e ------------ ",
    },
    {
        "                                               ",
        " __        __   __         __          __      ",
        "|  | |  | |  | |  | |   | |   |   |   |        ",
        "|  | |  | |  | |__/ \\   / |__ |   |   |__      ",
        "|  | |  | |  | | \\   \\ /  |   |   |   |        ",
        "|_\\| |__| |__| |  \\   V   |__ |__ |__ |__      ",
        "   \\                                           ",
        "========= g a m e   e n g i n e =========      ",
    },
};

// A cut gem; the second variant adds glints at its corners, so alternating
// the two makes it sparkle.
const std::vector<std::string> EMBLEM[2] = {
    {
        "   _____   ",
        "  /\\   /\\  ",
        " /  \\ /  \\ ",
        " \\   V   / ",
        "  \\  |  /  ",
        "   \\ | /   ",
        "    \\|/    ",
    },
    {
        "*  _____   ",
        "  /\\   /\\ *",
        " /  \\ /  \\ ",
        " \\   V   / ",
        "  \\  |  /  ",
        "+  \\ | /   ",
        "    \\|/  . ",
    },
};

const std::vector<std::string> SMALL_EMBLEM = {
    "  _____  ", " / \\ / \\ ", " \\  V  / ", "  \\ | /  ", "   \\|/   ", "    V    ",
};

// Steps the banner spends sliding in before it stops.
const int SLIDE_STEPS = 15;
// The step count at which the banner has outlived the emblem's rise and rest.
const int BANNER_END = -75;

// Splash objects that a cut-short run left behind (window closed, stop
// signal) must not wake up in the next loop and resume the sequence there.
void retireLeftovers() {
  WorldManager &world = WorldManager::getInstance();
  const ObjectList objects = world.getAllObjects(true);
  for (int i = 0; i < objects.getCount(); i++) {
    Object *p_o = objects[i];
    if (p_o->getType() == "Splash" || p_o->getType() == "SplashQuorvelle") {
      p_o->setActive(false);
      world.markForDelete(p_o);
    }
  }
}

}  // namespace

const std::vector<std::string> &splashBanner(int lettering) {
  return BANNER[lettering != 0];
}
const std::vector<std::string> &splashEmblem(int variant) {
  return EMBLEM[variant != 0];
}
const std::vector<std::string> &splashSmallEmblem() {
  return SMALL_EMBLEM;
}

std::unique_ptr<Sprite> makeSprite(const std::string &label, int width, int height, Color color,
                                   int slowdown,
                                   const std::vector<std::vector<std::string>> &frames) {
  auto p_sprite = std::make_unique<Sprite>(static_cast<int>(frames.size()));
  if (!label.empty()) p_sprite->setLabel(label);
  p_sprite->setWidth(width);
  p_sprite->setHeight(height);
  p_sprite->setColor(color);
  p_sprite->setSlowdown(slowdown);
  for (const std::vector<std::string> &rows : frames) {
    std::string picture;
    picture.reserve(static_cast<std::size_t>(width * height));
    for (int r = 0; r < height; r++) {
      std::string row = r < static_cast<int>(rows.size()) ? rows[r] : std::string();
      row.resize(static_cast<std::size_t>(width), ' ');
      picture += row;
    }
    p_sprite->addFrame(Frame(width, height, picture));
  }
  return p_sprite;
}

void setUpSplashObject(Object *p_o, const std::string &type, Sprite *p_sprite) {
  p_o->setType(type);
  p_o->setSolidness(SPECTRAL);
  Animation animation = p_o->getAnimation();
  animation.setSprite(p_sprite);
  p_o->setAnimation(animation, true);
  p_o->registerInterest(STEP_EVENT);
  p_o->registerInterest(KEYBOARD_EVENT);
}

void withdrawSplashInterests(Object *p_o) {
  p_o->unregisterInterest(KEYBOARD_EVENT);
  p_o->unregisterInterest(STEP_EVENT);
}

int leaveAtSplashEnd(Object *p_o, const Event *p_e) {
  GameManager &game_manager = GameManager::getInstance();
  if (game_manager.getGameOver()) {
    WorldManager::getInstance().markForDelete(p_o);
    return -1;
  }
  if (p_e->getType() != KEYBOARD_EVENT) return 0;
  game_manager.setGameOver();
  WorldManager::getInstance().markForDelete(p_o);
  return 1;
}

int splash() {
  LogManager &log = LogManager::getInstance();
  GameManager &game_manager = GameManager::getInstance();
  log.writeLog(10, "splash(): Started.");
  if (!game_manager.isStarted()) {
    log.writeLog("splash(): Error! Cannot run splash screen until game manger is started.");
    return -1;
  }
  new Splash;
  game_manager.run();
  retireLeftovers();
  log.writeLog(10, "splash(): Finished.");
  return 0;
}

Splash::Splash()
    : m_p_sprite(
          makeSprite("splash", BANNER_WIDTH, BANNER_HEIGHT, GREEN, 1, {BANNER[0], BANNER[1]})),
      m_step_count(SLIDE_STEPS) {
  setUpSplashObject(this, "Splash", m_p_sprite.get());
  Animation animation = getAnimation();
  animation.setSlowdownCount(-1);  // each lettering stays until switched
  setAnimation(animation, false);

  const Box view = WorldManager::getInstance().getView();
  const float view_w = view.getHorizontal();
  const float view_h = view.getVertical();
  const float w = getBox().getHorizontal();
  setPosition(
      Vector(view.getCorner().getX() + view_w + w * 0.5f, view.getCorner().getY() + view_h * 0.5f));

  // The slide takes half the frame time in steps; below 2 ms that would be
  // no steps at all, so it is taken as one.
  int slide_steps = GameManager::getInstance().getFrameTime() / 2;
  if (slide_steps < 1) slide_steps = 1;
  setVelocity(Vector(-(w * 0.5f + view_w * 0.5f + 11) / static_cast<float>(slide_steps), 0));
}

Splash::~Splash() {
  withdrawSplashInterests(this);
}

int Splash::eventHandler(const Event *p_e) {
  // A key is taken (the sequence ends) but not counted as handled.
  if (leaveAtSplashEnd(this, p_e) != 0 || p_e->getType() != STEP_EVENT) return 0;

  m_step_count--;
  if (m_step_count == 0) {
    Animation animation = getAnimation();
    animation.setIndex(1);
    setAnimation(animation, false);
    setVelocity(Vector(0, 0));
    const Vector pos = getPosition();
    new SplashQuorvelle(Vector(pos.getX() + 24, pos.getY() + 1));
  }
  if (m_step_count == BANNER_END) WorldManager::getInstance().markForDelete(this);
  return 1;
}

}  // namespace qv
