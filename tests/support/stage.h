#pragma once

// Where the tests play: the game with window and media, or a bare match; the keys they press; and the
// pictures they expect, painted straight through SDL.

#include <SDL.h>
#include <gtest/gtest.h>

#include <string>

#include "fight/fighter.h"
#include "fight/game_state.h"
#include "tests/support/world.h"

// In a fresh world, the game as it is before its first screen; shut down at the end of the scope.
struct open_game {
  open_game(int width, int height);
  ~open_game();
};

// In a fresh world, a match without window and media: the geometry of an 800 x 640 window: blocks of 4 x 5
// pixels, the ring's corner at (132, 80), fighter 1 at (172, 130), fighter 2 at (476, 350). Nobody flexes.
struct bare_match {
  explicit bare_match(int game_mode);
  ~bare_match();
  state_object machine = {};
  game_state game = {};
};

// Makes the screen current, as the main loop would, and gives its record.
void *enter(int screen);
// What is written during `action`, with the libraries' own words replaced by "*".
std::string output_of(const std::function<void()> &action);

void push_key(SDL_Keycode key, Uint32 type = SDL_KEYDOWN, Uint8 repeat = 0);
// Queues an event per letter, in place of what is queued: D down, U up, R return, E escape, X an unrelated
// key, Q the window's close. Small letters are the repeats of a held key.
void push_keys(const std::string &letters);

inline constexpr SDL_Color white = {255, 255, 255, 255}, black = {0, 0, 0, 255};
inline constexpr SDL_Color dark = {0, 51, 25, 255}, red = {102, 0, 0, 255};
inline constexpr SDL_Color menu_green = {20, 170, 40, 255}, ring_green = {20, 170, 40, 220};

// The measures of a window that all screens use, in pixels.
struct layout {
  int width, height;
  int small, points, heading;  // font sizes
  int arrow;                   // width
  int twentieth, tenth[10];    // of the height
};
inline constexpr layout layouts[] = {
    {800, 640, 12, 25, 42, 40, 32, {0, 64, 128, 192, 256, 320, 384, 448, 512, 576}},
    {333, 257, 5, 10, 17, 16, 12, {0, 25, 51, 77, 102, 128, 154, 179, 205, 231}}};

SDL_Point text_size(const char *text, int points);
void paint_fill(const SDL_Rect &area, const SDL_Color &color);
// Centred on a column of pixels.
void paint_text(const std::string &text, int points, SDL_Color color, double column, int y);
void paint_arrows(int right_x, int left_x, int y, int width, int height);
// The two markers in a row at y, beside a centred text.
void paint_menu_arrows(const char *reference, const layout &layout, int y);
struct pose {
  int side, punch_phase = 0, knock_frames = 0, punching_arm = 0, flex_pose = 3;
};
// With its left top corner at (x, y).
void paint_fighter(int x, int y, const SDL_Color &color, const pose &pose, int unit_w, int unit_h);
// Compares two pictures: "" or where they differ.
std::string difference(const picture &a, const picture &b);
