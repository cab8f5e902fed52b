#pragma once

// The game screen: one match in the ring, its input, its rules and its picture. Rules never draw and drawing
// never decides; the drawing is in game_render.cpp.

#include "fight/game_state.h"

// Sets a match up on the record: fighters at their corners, the clock at the chosen fight time.
void game_load(game_state *game);
// Handles every pending event: movement, punches, pause menu, the window's close, which the peer of a LAN
// match is told. Once the match has ended, drops all but that.
void game_handle_input();
// One frame of the match.
void game_update();
// Draws the match and presents the frame. Prints a line for a text that cannot be drawn.
void game_render();
// Releases the fighters and the CPU opponent of the current match.
void game_unload();

// Ends the match when a score or the clock has reached its limit.
void game_check_for_end(game_state *game);
// Turns both fighters round when they have passed each other, keeping their bodies where they are.
void game_set_sides(fighter *fighter1, fighter *fighter2);
// Whole blocks between the two bodies across; negative when they overlap horizontally.
int game_opponents_distance_x(const fighter *fighter1, const fighter *fighter2);

// Pieces of the picture.
void game_render_timer();
void game_render_score();
void game_render_pause_menu();
// The notice that the peer of a LAN match has gone silent.
void game_render_disconnecting();
