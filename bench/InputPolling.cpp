// What reading held input costs per frame: every held-capable key and the
// three buttons polled from the window system (run under an X server, e.g.
// xvfb-run), with nobody interested in the events. A window is open, as in
// the game: it keeps the connection to the X server that the polls use.

#include <benchmark/benchmark.h>

#include <SFML/Window/Keyboard.hpp>
#include <SFML/Window/Mouse.hpp>
#include <SFML/Window/Window.hpp>
#include <cstdlib>

#include "input/InputManager.h"

// Each key asked of the window library in turn.
static void BM_HeldKeysPolled(benchmark::State &state) {
  if (!std::getenv("DISPLAY")) {
    state.SkipWithError("no X display: run under xvfb-run");
    return;
  }
  sf::Window window(sf::VideoMode(64, 64), "held keys");
  qv::InputManager &input = qv::InputManager::getInstance();
  for (auto _ : state) input.deliverHeldKeys(&sf::Keyboard::isKeyPressed);
}
BENCHMARK(BM_HeldKeysPolled)->Unit(benchmark::kMicrosecond);

// The frame's way: one picture of the keyboard, then every key read from it.
static void BM_HeldKeysFromSnapshot(benchmark::State &state) {
  if (!std::getenv("DISPLAY")) {
    state.SkipWithError("no X display: run under xvfb-run");
    return;
  }
  sf::Window window(sf::VideoMode(64, 64), "held keys");
  qv::InputManager &input = qv::InputManager::getInstance();
  for (auto _ : state) {
    qv::refreshKeyboardState();
    input.deliverHeldKeys(&qv::isKeyDown);
  }
}
BENCHMARK(BM_HeldKeysFromSnapshot)->Unit(benchmark::kMicrosecond);

static void BM_HeldButtonsPolled(benchmark::State &state) {
  if (!std::getenv("DISPLAY")) {
    state.SkipWithError("no X display: run under xvfb-run");
    return;
  }
  sf::Window window(sf::VideoMode(64, 64), "held buttons");
  qv::InputManager &input = qv::InputManager::getInstance();
  for (auto _ : state) input.deliverHeldButtons(qv::Vector(1, 1), &sf::Mouse::isButtonPressed);
}
BENCHMARK(BM_HeldButtonsPolled)->Unit(benchmark::kMicrosecond);
