#pragma once

#include <iterator>
#include <random>
#include <string>

#include "core/state_machine.h"
#include "fight/fighter.h"
#include "fight/game_state.h"
#include "screens/main_menu.h"
#include "tests/support/keyboard.h"

// Somebody who plays every screen but the LAN lobby: fights, now and then pauses; in menus moves, changes,
// enters and leaves, but never exits.
struct random_player {
  std::mt19937 dice{7};
  SDL_Keycode held[4] = {};  // on each player's axes

  bool one_in(unsigned frames) { return dice() % frames == 0; }

  // For long enough that the key begins to repeat.
  void tap(SDL_Keycode key) {
    push_key(key, SDL_KEYDOWN);
    push_key(key, SDL_KEYDOWN, 1);
    push_key(key, SDL_KEYUP);
  }

  // Lets go of an axis' key and holds another, or none: towards the opponent more often than not.
  void turn(SDL_Keycode &held_key, int distance, SDL_Keycode back, SDL_Keycode forth) {
    if (!one_in(5)) return;
    const SDL_Keycode towards = distance > 0 ? forth : back;
    const SDL_Keycode wanted[] = {back, SDLK_UNKNOWN, forth, towards, towards};
    if (held_key != SDLK_UNKNOWN) push_key(held_key, SDL_KEYUP);
    held_key = wanted[dice() % std::size(wanted)];
    if (held_key != SDLK_UNKNOWN) push_key(held_key);
  }

  void fight(const game_state &game) {
    const int across = game.fighter2->x - game.fighter1->x, down = game.fighter2->y - game.fighter1->y;
    turn(held[0], across, SDLK_LEFT, SDLK_RIGHT);
    turn(held[1], down, SDLK_UP, SDLK_DOWN);
    turn(held[2], -across, SDLK_a, SDLK_d);
    turn(held[3], -down, SDLK_w, SDLK_s);
    if (one_in(4)) tap(SDLK_SPACE);
    if (one_in(4)) tap(SDLK_TAB);
    if (one_in(250)) tap(SDLK_ESCAPE);
  }

  // Whether Return would lead to the lobby or end the program.
  static bool stays_away(const state_object &state) {
    if (state.current_state != screen_main_menu) return false;
    const auto *menu = static_cast<const main_menu_screen *>(state.screen);
    const std::string item = menu->labels[menu->selected - 1];
    return item == "LAN" || item == "Exit";
  }

  void play(const state_object &state) {
    const auto *game = static_cast<const game_state *>(state.screen);
    if (state.current_state == screen_game && game->paused == pause_none) return fight(*game);
    constexpr SDL_Keycode keys[] = {SDLK_UP, SDLK_DOWN, SDLK_ESCAPE, SDLK_RETURN, SDLK_KP_ENTER};
    if (one_in(5)) tap(keys[dice() % (stays_away(state) ? 3 : 5)]);
  }
};
