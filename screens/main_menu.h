#pragma once

// The main menu: the title, the items and the version. Every other screen returns here.

#include "media/texture.h"

inline constexpr int main_menu_item_count = 5;

struct main_menu_screen {
  int selected;                          // the selected item, from 1
  texture *items[main_menu_item_count];  // owned; the rendered labels
  char labels[main_menu_item_count][10];
  texture *version;    // owned
  texture *titles[4];  // owned; the shadows of both words, then the words
};

// Renders every text and selects the first item. Prints a line for each text that fails.
void main_menu_load(main_menu_screen *menu);
void main_menu_handle_input();
// Nothing moves on this screen.
void main_menu_update();
void main_menu_render();
// Releases the textures.
void main_menu_unload();

// Pieces of the picture.
void main_menu_render_title();
void main_menu_render_menu();
// Renders the item with this `index`, from 0, in red when `selected`, from 1, names it. Prints a line on
// failure.
void main_menu_load_menu_element(int index, int selected);
// Destroys that item's texture.
void main_menu_unload_menu_element(int index);
