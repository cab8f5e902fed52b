#pragma once

// The rules of a match: its frame, its clock and its end. No key is read and nothing is drawn here; that is
// the game screen's.

#include "fight/game_state.h"

// The clock goes on from time_left as of now. To be called in every frame in which the match stands still,
// too.
void game_restart_clock(game_state *game);
// Ends the match, with the bell, when a score or the clock has reached its limit.
void game_check_for_end(game_state *game);
// True once the match has been over for so long that the end screen is due.
bool game_is_over(const game_state *game);
// One frame of the fight: moves, punches, sides, clock. Against the CPU it has its turn, too, until the match
// ends.
void game_run_fight(game_state *game);

// Turns both fighters round when they have passed each other, keeping their bodies where they are.
void game_set_sides(fighter *fighter1, fighter *fighter2);
// Whole blocks between the two bodies across; negative when they overlap horizontally.
int game_opponents_distance_x(const fighter *fighter1, const fighter *fighter2);
