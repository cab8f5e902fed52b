#pragma once

// Where the tests play: the game with window and media; and the keys they press.

#include <gtest/gtest.h>

#include "core/context.h"
#include "core/state_machine.h"
#include "fight/fighter.h"
#include "fight/game_state.h"
#include "tests/support/keyboard.h"
#include "tests/support/world.h"

// In a fresh world, the game as it is before its first screen; shut down at the end of the scope.
struct open_game {
  open_game(int width, int height);
  ~open_game();
};

// Makes the screen current, as the main loop would, and gives its record.
void *enter(int screen);
// What is written during `action`, with the libraries' own words replaced by "*".
std::string output_of(const std::function<void()> &action);

// Queues an event per letter, in place of what is queued: D down, U up, R return, E escape, N the
// keypad's Enter, X Return with Alt, F the focus lost, M the window minimised, Q its close. Small letters are
// the repeats of a held key.
void push_keys(const std::string &letters);
