#ifndef TACTICS_ASSETS_H
#define TACTICS_ASSETS_H

#include <string>

// Loads the game's sprites, sounds and music by label, in manifest order.
// A file that fails to load is reported in the log; the game goes on without it.
void loadAssets();

// Plays a sound effect once, if its label was loaded.
void playSound(const std::string &label);
// Stops one piece of music and loops another (either may be missing).
void switchMusic(const std::string &stop_label, const std::string &play_label);

#endif
