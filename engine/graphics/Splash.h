#ifndef QV_SPLASH_H
#define QV_SPLASH_H

#include <memory>
#include <string>
#include <vector>

#include "core/utility.h"
#include "world/Object.h"

namespace qv {

class Sprite;

// Runs the engine's opening sequence inside the frame loop: the banner slides
// in, the emblem rises beside it, and the whole thing ends after 90 steps or
// at once on any key. Needs the game manager started; 0, or -1 without it.
int splash();

// A sprite drawn in code: each frame is given as its rows, top to bottom.
// Rows shorter than width are padded with blanks, longer ones cut, so every
// frame holds exactly width x height characters. An empty label leaves the
// sprite unlabelled.
std::unique_ptr<Sprite> makeSprite(const std::string &label, int width, int height, Color color,
                                   int slowdown,
                                   const std::vector<std::vector<std::string>> &frames);

// What the two splash objects share. Setting up: type name, SPECTRAL, the
// sprite shown from frame 0 with its box, interest in steps and keys.
void setUpSplashObject(Object *p_o, const std::string &type, Sprite *p_sprite);
void withdrawSplashInterests(Object *p_o);
// The end of the sequence: when game over is already set, p_o is marked for
// deletion and -1 returned; for a key, game over is set, p_o is marked and 1
// returned; otherwise 0.
int leaveAtSplashEnd(Object *p_o, const Event *p_e);

// The banner with the engine's name: slides in from the right, stops, switches
// to its second lettering and brings up the emblem.
class Splash : public Object {
 public:
  // Just beyond the right edge of the view, vertically centred, moving left.
  Splash();
  ~Splash() override;

  // Steps drive the sequence; any key ends it (game over).
  int eventHandler(const Event *p_e) override;

 private:
  std::unique_ptr<Sprite> m_p_sprite;  // "splash": two 47 x 8 letterings, GREEN
  int m_step_count;                    // 15: steps until the banner stops
};

// The five pictures of the opening sequence, each as its rows.
const std::vector<std::string> &splashBanner(int lettering);  // 0 or 1: 47 x 8
const std::vector<std::string> &splashEmblem(int variant);    // 0 or 1: 11 x 7
const std::vector<std::string> &splashSmallEmblem();          // 9 x 6

}  // namespace qv

#endif
