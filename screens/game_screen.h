#pragma once

// The game screen: a match with its keys, its pause menu and its picture (game_screen_render.cpp), and what a
// LAN match tells the other machine. The rules are fight/game.h's.

struct game_state;

// Sets a match up on the record: fighters at their corners, the clock at the chosen fight time.
void game_load(game_state *game);
// Handles every pending event: movement, punches, pause menu, the window left or hidden, which pauses a local
// match, and its close, which the peer of a LAN match is told. Once the match has ended, drops all but that.
void game_handle_input();
// One frame of the match.
void game_update();
// Draws the match and presents the frame. Prints a line for a text that cannot be drawn.
void game_render();
// Releases the fighters and the CPU opponent of the current match.
void game_unload();

// Pieces of the picture.
void game_render_timer();
void game_render_score();
void game_render_pause_menu();
// The notice that the peer of a LAN match has gone silent.
void game_render_disconnecting();
