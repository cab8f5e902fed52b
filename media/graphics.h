#pragma once

// The fonts, images and colours that more than one screen uses. Fonts and images live from graphics_load at
// the start to graphics_unload at the end.

#include <SDL.h>
#include <SDL_ttf.h>

#include <cstdint>

#include "media/texture.h"

extern TTF_Font *gFont;         // font_size points: menu items, scores, clock
extern TTF_Font *gFontBigger;   // a fifteenth of the window's height: headings
extern TTF_Font *gFontSmaller;  // half of font_size: the version line

extern texture to_right_menu_arrow;  // drawn left of a selected item
extern texture to_left_menu_arrow;   // drawn right of a selected item
extern texture to_down_menu_arrow;   // more rows below
extern texture to_up_menu_arrow;     // more rows above
extern texture commet_texture;  // one block (the name is spelt so); fighters are many tinted copies of it
extern texture gTemp;           // scratch: a text that is drawn once and destroyed again

inline constexpr SDL_Color player1_color = {255, 255, 255, 255};  // colour id 1
inline constexpr SDL_Color player2_color = {0, 0, 0, 255};        // colour id 2
inline constexpr SDL_Color game_bg_color = {12, 12, 17, 255};
inline constexpr SDL_Color ring_color = {20, 170, 40, 220};  // slightly see-through
inline constexpr SDL_Color bg_color_menus = {20, 170, 40, 255};
inline constexpr SDL_Color text_color_dark = {0, 51, 25, 255};
inline constexpr SDL_Color text_color_red = {102, 0, 0, 255};
inline constexpr SDL_Color game_text_color = {255, 255, 255, 255};

// Opens the fonts, in sizes that follow the window's height, and loads the images. Tries every one, prints
// a line for each that fails, and returns false if any did.
bool graphics_load();
// Closes the fonts and destroys the images, also those that were never loaded.
void graphics_unload();
// The colour of a fighter: player1_color for id 1, player2_color for any other. Never null.
const SDL_Color *graphics_get_color(std::uint16_t color_id);
