#ifndef QV_ANIMATION_H
#define QV_ANIMATION_H

#include <iosfwd>
#include <string>

#include "world/Box.h"
#include "world/Vector.h"

namespace qv {

class Sprite;

// Mirroring applied when a frame is drawn; other values draw as stored.
enum Transform : int {
  NONE = 0,        // as stored
  VERTICAL = 1,    // rows reversed: upside down
  HORIZONTAL = 2,  // columns reversed: mirror image
  BOTH = 3,        // rows and columns reversed
};

// One object's running position inside a sprite. Objects hold it by value;
// the sprite belongs to the resource manager and must outlive it.
class Animation {
 public:
  Animation();

  // Starts the sprite (null for none) at frame 0; a non-null sprite's label
  // becomes the name.
  void setSprite(Sprite *p_new_sprite);
  void setIndex(int new_index);
  // -1 freezes the animation on its frame; 0 restarts the stepping.
  void setSlowdownCount(int new_slowdown_count);
  void setTransform(int new_transform);

  Sprite *getSprite() const;
  // The label of the last sprite set, kept so the sprite can be found again.
  std::string getName() const;
  int getIndex() const;
  int getSlowdownCount() const;
  int getTransform() const;

  // Draws the current frame centred on position, then steps on: each frame
  // stays for the sprite's slowdown calls. The step happens whatever the
  // draw returned. Returns the draw's result (0 without a sprite).
  int draw(Vector position);

  // The extent the sprite gives an object, relative to its position; a
  // 0.99 cell square around the position without a sprite.
  Box getBox() const;

  // "sprite <name>, frame_idx <i>, slowdown_count <n>, transform <NAME>"
  std::string toString() const;

  // Name, index, slowdown count and transform; the sprite itself never
  // travels, the reader finds it again by name. 0, or -1 for a bad stream.
  int serialize(std::stringstream *p_ss) const;
  int deserialize(std::stringstream *p_ss);

 private:
  Sprite *m_p_sprite;    // null: nothing to draw; not owned
  std::string m_name;    // empty: label of the sprite
  int m_index;           // 0: current frame index
  int m_slowdown_count;  // 0: calls the frame has been shown; -1 frozen
  int m_transform;       // NONE: a Transform
};

}  // namespace qv

#endif
