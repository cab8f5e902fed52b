#pragma once

// Small functions that several modules share: overlaps of rectangles, menu selections, clock text, random
// text.

#include <SDL.h>

#include <cstddef>
#include <cstdint>
#include <span>

// True when the rectangles (pixels) overlap. Rectangles that only share an edge do not.
bool check_collision(SDL_Rect a, SDL_Rect b);
// The same looking at rows alone: x and w are ignored.
bool check_collision_on_y_axis(SDL_Rect a, SDL_Rect b);
// The same looking at columns alone: y and h are ignored.
bool check_collision_on_x_axis(SDL_Rect a, SDL_Rect b);

// The key as menus and match understand it: Enter on the keypad is Return, and Return with Alt held, which
// means other things on a desktop, is no key at all.
SDL_Keycode plain_key(const SDL_Keysym &key);

// The selection of a menu's rows `first` to `last` after the key: Down and Up move it by one and wrap around,
// any other key leaves it.
int move_selection(SDL_Keycode key, int selected, int first, int last);

// Writes `seconds` as "mm:ss" with a NUL, "00:00" for 0 and less. Six bytes hold any time below 6000 s; a
// longer text is cut to the buffer.
void seconds_to_time(int seconds, std::span<char> buffer);

inline constexpr std::size_t time_label_size = 26;  // bytes of the longest label, with NUL
// Writes the menus' row about the fight time, "Time: mm:ss", and returns it.
const char *time_label(int seconds, std::span<char, time_label_size> buffer);

// Fills `buffer` with `count` random letters and digits and a NUL; `buffer` holds count + 1 bytes. Returns
// `buffer`. Each character takes two draws of rand().
char *random_bytes(std::uint32_t count, char *buffer);
