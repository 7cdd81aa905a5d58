#ifndef QV_GAME_MANAGER_H
#define QV_GAME_MANAGER_H

#include <string>

#include "core/Manager.h"

namespace qv {

// The engine version the banner shows.
const double QV_VERSION = 4.25;

// Starts and stops every other manager in a fixed order and runs the
// fixed-rate frame loop, one step per frame.
class GameManager : public Manager {
 public:
  static GameManager &getInstance();

  // Loads the configuration, starts the log and the other managers. 0 or -1;
  // on -1 the managers already started stay started for shutDown to stop.
  int startUp() override;
  // Stops the started managers in reverse order, the log last.
  void shutDown() override;
  // The frame loop; returns after the frame in which game over was asked
  // for. Each call starts again at step 0 with game over cleared. Refused,
  // with a log line and nothing changed, unless startUp() succeeded.
  void run();

  // Only STEP_EVENT is delivered by the game manager.
  bool isValid(std::string event_type) const override;

  void setGameOver(bool game_over = true);
  // True once game over is set or a stop signal (Ctrl-C) has arrived.
  bool getGameOver() const;
  int getFrameTime() const;
  int getStepCount() const;

 private:
  GameManager();

  bool m_game_over;  // true asks the loop to stop after this frame
  int m_frame_time;  // target frame length, ms (configured, default 33)
  int m_step_count;  // frame number, 0 in the first frame of run()
};

}  // namespace qv

#endif
