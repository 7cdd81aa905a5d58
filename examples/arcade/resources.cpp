#include "resources.h"

#include "resources/ResourceManager.h"

void loadResources() {
  qv::ResourceManager &rm = qv::ResourceManager::getInstance();
  rm.loadSprite("sprites/ship-spr.txt", "ship");
  rm.loadSprite("sprites/bullet-spr.txt", "bullet");
  rm.loadSprite("sprites/saucer-spr.txt", "saucer");
  rm.loadSprite("sprites/drone-spr.txt", "drone");
  rm.loadSprite("sprites/explosion-spr.txt", "explosion");
  rm.loadSprite("sprites/gamestart-spr.txt", "gamestart");
  rm.loadSprite("sprites/gameover-spr.txt", "gameover");
  rm.loadSound("sounds/fire.wav", "fire");
  rm.loadSound("sounds/explode.wav", "explode");
  rm.loadSound("sounds/nuke.wav", "nuke");
  rm.loadSound("sounds/game-over.wav", "game over");
  rm.loadMusic("sounds/start-music.wav", "start music");
}

void playSound(const char *label) {
  qv::Sound *p_sound = qv::ResourceManager::getInstance().getSound(label);
  if (p_sound) p_sound->play();
}
