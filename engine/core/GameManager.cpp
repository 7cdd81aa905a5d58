#include "core/GameManager.h"

#include <cstdint>
#include <cstdlib>
#include <ctime>

#include "core/Clock.h"
#include "core/Config.h"
#include "core/EventStep.h"
#include "core/FramePacing.h"
#include "core/LogManager.h"
#include "graphics/DisplayManager.h"
#include "input/InputManager.h"
#include "network/NetworkManager.h"
#include "path/PathManager.h"
#include "platform/platform.h"
#include "resources/ResourceManager.h"
#include "world/WorldManager.h"

namespace qv {

namespace {
const char *const STARS = "****************************************************";

// Starts one manager and logs the outcome; false when it failed.
bool startManager(Manager &manager, const char *error_line, const char *started_line) {
  const LogManager &log = LogManager::getInstance();
  if (manager.startUp() != 0) {
    log.writeLog("%s", error_line);
    return false;
  }
  log.writeLog(1, "%s", started_line);
  return true;
}

// Stops a manager that is running and logs it; a manager that never
// started is left alone.
void stopManager(Manager &manager, const char *stopped_line) {
  if (!manager.isStarted()) return;
  manager.shutDown();
  LogManager::getInstance().writeLog(1, "%s", stopped_line);
}
}  // namespace

GameManager::GameManager() : m_game_over(false), m_frame_time(0), m_step_count(0) {
  setType("GameManager");
}

GameManager &GameManager::getInstance() {
  static GameManager game_manager;
  return game_manager;
}

int GameManager::startUp() {
  LogManager &log = LogManager::getInstance();
  if (refuseSecondStart()) return -1;
  Config &config = Config::getInstance();
  config.loadConfig("");

  if (log.startUp() != 0) {
    log.writeLog("GameManager::startUp(): Error! Starting log manager.");
    return -1;
  }
  log.writeLog("%s", STARS);
  log.writeLog("** Quorvelle version %.2f **", QV_VERSION);
  log.writeLog("** Game engine started **");
  log.writeLog("%s", STARS);
  config.writeConfigToLog();

  log.writeLog(1, "Working directory:");
  std::string cwd = platform::currentDirectory(256);
  log.writeLog(1, "  %s", cwd.empty() ? "(full path too long)" : cwd.c_str());
  log.writeLog(1, "Log Manager started.");

  m_frame_time = config.getFrameTime();
  log.writeLog(5, "GameManager::startUp(): frame time is %d milliseconds", m_frame_time);

  // Ctrl-C and SIGTERM end the game through the frame loop, so shut-down
  // runs and the log is complete. A request from an earlier run is void.
  platform::clearStopRequest();
  if (config.getSignals() && platform::installStopSignals() != 0)
    log.writeLog(
        "GameManager::startUp(): Warning! Unable to catch stop signals, "
        "Ctrl-C ends the program without shut-down.");

  // ---- managers, in start-up order ----------------------------------------
  if (!startManager(DisplayManager::getInstance(),
                    "GameManager::startUp(): Error! Starting display manager.",
                    "Display manager started.") ||
      !startManager(InputManager::getInstance(),
                    "GameManager::startUp(): Error! Starting input manager.",
                    "Input manager started.") ||
      (config.getNetworking() &&
       !startManager(NetworkManager::getInstance(),
                     "GameManager::startUp(): Error! Starting network manager.",
                     "Network manager started.")) ||
      !startManager(ResourceManager::getInstance(),
                    "GameManager::startUp(): Error! Starting resource manager.",
                    "Resource manager started.") ||
      !startManager(WorldManager::getInstance(),
                    "GameManager::startUp(): Error starting world manager.",
                    "World manager started.") ||
      !startManager(PathManager::getInstance(),
                    "GameManager::startUp(): Error starting path manager.",
                    "Path manager started."))
    return -1;
  WorldManager &world_manager = WorldManager::getInstance();
  const DisplayManager &display_manager = DisplayManager::getInstance();
  const Box screen(Vector(0, 0), static_cast<float>(display_manager.getHorizontalChars()),
                   static_cast<float>(display_manager.getVerticalChars()));
  world_manager.setBoundary(screen);
  world_manager.setView(screen);
  world_manager.setViewSlack(Vector(1.0f / 3, 1.0f / 3));

  int seed = config.getRandomSeed();
  if (seed == 0) seed = static_cast<int>(static_cast<std::uint32_t>(std::time(nullptr)));
  if (seed != -1) {
    log.writeLog(10, "GameManager()::startUp(): srand() seed with %d", seed);
    std::srand(static_cast<unsigned int>(seed));
  }
  // The 1 ms timer resolution request has no counterpart here: nanosleep
  // already sleeps with a far finer resolution.

  m_game_over = false;
  Manager::startUp();
  log.writeLog(1, "GameManager successfully started.");
  return 0;
}

void GameManager::shutDown() {
  LogManager &log = LogManager::getInstance();
  m_game_over = true;

  // ---- managers, in shut-down order ---------------------------------------
  stopManager(PathManager::getInstance(), "Path manager stopped");
  stopManager(WorldManager::getInstance(), "World manager stopped");
  stopManager(ResourceManager::getInstance(), "Resource manager stopped");
  if (Config::getInstance().getNetworking())
    stopManager(NetworkManager::getInstance(), "Network manager stopped");
  stopManager(InputManager::getInstance(), "Input manager stopped");
  stopManager(DisplayManager::getInstance(), "Display manager stopped");

  log.writeLog("%s", STARS);
  log.writeLog("** Game engine stopped **");
  if (log.isStarted()) log.shutDown();
  if (Config::getInstance().getSignals()) platform::restoreStopSignals();
  Manager::shutDown();
}

void GameManager::run() {
  LogManager &log = LogManager::getInstance();
  // Without the managers a frame does nothing useful, and the loop would
  // spin unpaced, reporting a missing manager in every frame.
  if (!isStarted()) {
    log.writeLog(
        "GameManager::run(): Error! GameManager not started (startUp() failed or was never "
        "called): no game loop, returning at once.");
    return;
  }
  Clock clock;
  log.writeLog(1, "GameManager::run(): starting game loop");
  m_game_over = false;
  m_step_count = 0;
  std::int64_t adjust = 0;
  while (true) {
    clock.delta();
    // ---- one frame, in this order ---------------------------------------
    EventStep step(m_step_count);
    onEvent(&step);
    DisplayManager::getInstance().swapBuffers();
    InputManager::getInstance().getInput();
    WorldManager::getInstance().update();
    WorldManager::getInstance().draw();
    if (Config::getInstance().getNetworking()) {
      NetworkManager &network_manager = NetworkManager::getInstance();
      if (network_manager.isServer()) network_manager.accept();
      if (network_manager.isConnected()) network_manager.sendDue();
    }
    std::int64_t split = clock.split();
    PathManager::getInstance().cycle(pathBudget(m_frame_time, split, adjust));
    adjust = finishFrame(clock, m_frame_time, m_step_count, adjust);
    m_step_count++;
    if (getGameOver()) break;
  }
  log.writeLog(1, "GameManager::run(): end of game loop");
}

bool GameManager::isValid(std::string event_type) const {
  return event_type == STEP_EVENT;
}

void GameManager::setGameOver(bool game_over) {
  m_game_over = game_over;
}

bool GameManager::getGameOver() const {
  return m_game_over || platform::stopRequested();
}

int GameManager::getFrameTime() const {
  return m_frame_time;
}

int GameManager::getStepCount() const {
  return m_step_count;
}

}  // namespace qv
