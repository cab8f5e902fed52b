#pragma once

// Somebody who plays every screen but the LAN lobby with keys at random, the same ones for the same seed.

#include <random>

struct state_object;

struct random_player {
  std::mt19937 dice;
  int held[4] = {};  // -1, 0 or 1: the direction keys held on each player's axes
};

// Queues the keys of the next frame for the screen that is current: fights, now and then pauses; in menus
// moves, changes, enters and leaves, but never exits.
void random_player_type(random_player *player, const state_object *state);
