#pragma once

// What all menus share: how they read keys, move a selection and mark the selected row.

#include <SDL.h>

#include "media/texture.h"

// Polls the next pending event into the context's event. False when none is left and, after asking for the
// quit screen, when it closes the window; what follows stays queued then.
bool menu_poll_event();
// The key that the context's event presses, or SDLK_UNKNOWN when it is no press or the repeat of a held key.
SDL_Keycode menu_pressed_key();

// Starts a menu's frame: clears the window and fills it with the menus' background.
void menu_begin_frame();
// Draws the two markers beside the row whose top is at y (pixels). Their columns and their height come from
// the reference item, the same for all rows of a menu, so that they stay in line.
void menu_render_arrows(const texture *reference, int y);

// Renders an item's label in place of its last one: red when it is selected, else dark. Prints a line on
// failure.
void menu_load_item(const char *label, texture *item, bool selected);
// Makes `to` the selected row (counted from 1) in place of `from`, with the screen's own operations for one
// item: the newly selected item is rendered again first, then the old one. Nothing to do when they are equal.
void menu_recolor_items(int from, int to, void (*unload_item)(int index),
                        void (*load_item)(int index, int selected));
