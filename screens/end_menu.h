#pragma once

// The end screen: the score, winner and loser in their poses, and what to do next.

#include "media/texture.h"

inline constexpr int end_menu_item_count = 2;

struct end_menu_state {
  int selected;                         // the selected item, 1 or 2
  int score1;                           // fighter 1's points; handed over from the match
  int score2;                           // fighter 2's points; handed over from the match
  texture *items[end_menu_item_count];  // owned; the rendered labels
  char labels[end_menu_item_count][20];
};

// Builds the texts, the posed fighters and the menu from the scores. Prints a line for each text that fails.
void end_load(end_menu_state *end);
void end_handle_input();
// Nothing moves on this screen.
void end_update();
void end_render();
// Releases what end_load made.
void end_unload();

// Pieces of the picture.
void end_render_winner();
void end_render_menu();
// Renders the item with `index` 0 or 1, in red when `selected` (1 or 2) names it. Prints a line on failure.
void end_load_menu_element(int index, int selected);
// Destroys that item's texture.
void end_unload_menu_element(int index);
