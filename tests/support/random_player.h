#pragma once

#include <SDL.h>

#include <iterator>
#include <random>
#include <string>

#include "core/state_machine.h"
#include "fight/fighter.h"
#include "fight/game_state.h"
#include "screens/main_menu.h"

// Somebody who plays every screen but the LAN lobby: fights, now and then pauses; in menus moves, changes,
// enters and leaves, but never exits.
struct random_player {
  std::mt19937 dice{7};
  int held[4] = {};  // -1, 0 or 1: the direction keys held on each player's axes

  bool one_in(unsigned frames) { return dice() % frames == 0; }

  void push(SDL_Keycode key, Uint32 type, Uint8 repeat = 0) {
    SDL_Event event = {};
    event.type = type;
    event.key.repeat = repeat;
    event.key.keysym.sym = key;
    SDL_PushEvent(&event);
  }

  // For long enough that the key begins to repeat.
  void tap(SDL_Keycode key) {
    push(key, SDL_KEYDOWN);
    push(key, SDL_KEYDOWN, 1);
    push(key, SDL_KEYUP);
  }

  // Lets go of an axis' key and holds another, or none: towards the opponent more often than not.
  void turn(int &axis, int distance, SDL_Keycode back, SDL_Keycode forth) {
    const int towards = distance > 0 ? 1 : -1;
    const int wanted[] = {-1, 0, 1, towards, towards};
    if (!one_in(5)) return;
    if (axis != 0) push(axis < 0 ? back : forth, SDL_KEYUP);
    axis = wanted[dice() % std::size(wanted)];
    if (axis != 0) push(axis < 0 ? back : forth, SDL_KEYDOWN);
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
