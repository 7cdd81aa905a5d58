#include "assets.h"

#include "resources/ResourceManager.h"

namespace {

enum AssetKind { SPRITE, SOUND, MUSIC };

struct Asset {
  AssetKind kind;
  const char *label;
  const char *file;
};

const Asset MANIFEST[] = {
    {SPRITE, "saucer", "sprites/saucer-spr.txt"},
    {SPRITE, "ship", "sprites/ship-spr.txt"},
    {SPRITE, "bullet", "sprites/bullet-spr.txt"},
    {SPRITE, "explosion", "sprites/explosion-spr.txt"},
    {SPRITE, "gameover", "sprites/gameover-spr.txt"},
    {SPRITE, "gamestart", "sprites/gamestart-spr.txt"},
    {SPRITE, "drone", "sprites/drone-spr.txt"},
    {SPRITE, "mainmenu", "sprites/mainmenu-spr.txt"},
    {SPRITE, "tile-white", "sprites/tile-white-spr.txt"},
    {SPRITE, "tile-yellow", "sprites/tile-yellow-spr.txt"},
    {SPRITE, "tile-cyan", "sprites/tile-cyan-spr.txt"},
    {SPRITE, "tile-green", "sprites/tile-green-spr.txt"},
    {SPRITE, "tile-red", "sprites/tile-red-spr.txt"},
    {SPRITE, "entity-default", "sprites/entity-default-spr.txt"},
    {SPRITE, "hero-active", "sprites/hero-active-spr.txt"},
    {SPRITE, "hero-inactive", "sprites/hero-inactive-spr.txt"},
    {SPRITE, "enemy", "sprites/enemy-spr.txt"},
    {SPRITE, "obstacle", "sprites/obstacle-spr.txt"},
    {SPRITE, "warrior-active", "sprites/warrior-active-spr.txt"},
    {SPRITE, "warrior-inactive", "sprites/warrior-inactive-spr.txt"},
    {SPRITE, "hunter-active", "sprites/hunter-active-spr.txt"},
    {SPRITE, "hunter-inactive", "sprites/hunter-inactive-spr.txt"},
    {SPRITE, "magician-active", "sprites/magician-active-spr.txt"},
    {SPRITE, "magician-inactive", "sprites/magician-inactive-spr.txt"},
    {SPRITE, "goblin", "sprites/goblin-spr.txt"},
    {SPRITE, "imp", "sprites/imp-spr.txt"},
    {SPRITE, "deathwing", "sprites/deathwing-spr.txt"},
    {SPRITE, "ogre", "sprites/ogre-spr.txt"},
    {SPRITE, "wall", "sprites/wall-spr.txt"},
    {SOUND, "fire", "sounds/fire.wav"},
    {SOUND, "explode", "sounds/explode.wav"},
    {SOUND, "nuke", "sounds/nuke.wav"},
    {SOUND, "game over", "sounds/game-over.wav"},
    {MUSIC, "start music", "sounds/start-music.wav"},
    {MUSIC, "menu music", "sounds/BrittleBulwarkMenu.wav"},
    {MUSIC, "level music", "sounds/BrittleBulwark.wav"},
    {SOUND, "move1", "sounds/bb_sfx_move1.wav"},
    {SOUND, "move2", "sounds/bb_sfx_move2.wav"},
    {SOUND, "move3", "sounds/bb_sfx_move3.wav"},
    {SOUND, "attack1", "sounds/bb_sfx_attack1.wav"},
    {SOUND, "attack2", "sounds/bb_sfx_attack2.wav"},
    {SOUND, "attack3", "sounds/bb_sfx_attack3.wav"},
    {SOUND, "ability", "sounds/bb_sfx_ability.wav"},
};

}  // namespace

void loadAssets() {
  qv::ResourceManager &rm = qv::ResourceManager::getInstance();
  for (const Asset &asset : MANIFEST) {
    switch (asset.kind) {
      case SPRITE:
        rm.loadSprite(asset.file, asset.label);
        break;
      case SOUND:
        rm.loadSound(asset.file, asset.label);
        break;
      case MUSIC:
        rm.loadMusic(asset.file, asset.label);
        break;
    }
  }
}

void playSound(const std::string &label) {
  if (qv::Sound *p_sound = qv::ResourceManager::getInstance().getSound(label)) p_sound->play(false);
}

void switchMusic(const std::string &stop_label, const std::string &play_label) {
  qv::ResourceManager &rm = qv::ResourceManager::getInstance();
  if (qv::Music *p_music = rm.getMusic(stop_label)) p_music->stop();
  if (qv::Music *p_music = rm.getMusic(play_label)) p_music->play(true);
}
