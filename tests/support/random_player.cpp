#include "tests/support/random_player.h"

#include <SDL.h>

#include <cstddef>
#include <iterator>

#include "core/state_machine.h"
#include "fight/fighter.h"
#include "fight/game_state.h"
#include "screens/main_menu.h"

namespace {

constexpr int lan_item = 3;  // of the main menu

// Frames out of which one, on average, has this typed.
constexpr unsigned move_odds = 5;
constexpr unsigned punch_odds = 4;
constexpr unsigned menu_odds = 5;
constexpr unsigned pause_odds = 250;

bool one_in(random_player *player, unsigned odds) {
  return player->dice() % odds == 0;
}

void push(Uint32 type, SDL_Keycode key) {
  SDL_Event event = {};
  event.type = type;
  event.key.keysym.sym = key;
  SDL_PushEvent(&event);
}

void type(SDL_Keycode key) {
  push(SDL_KEYDOWN, key);
  push(SDL_KEYUP, key);
}

// Lets go of an axis' key and holds another, or none: towards the opponent more often than not.
void turn(random_player *player, int *held, int distance, SDL_Keycode back, SDL_Keycode forth) {
  const int towards = distance > 0 ? 1 : -1;
  const int wanted[] = {-1, 0, 1, towards, towards};
  if (*held != 0) push(SDL_KEYUP, *held < 0 ? back : forth);
  *held = wanted[player->dice() % std::size(wanted)];
  if (*held != 0) push(SDL_KEYDOWN, *held < 0 ? back : forth);
}

void fight(random_player *player, const game_state *game) {
  const int across = game->fighter2->x - game->fighter1->x, down = game->fighter2->y - game->fighter1->y;
  if (one_in(player, move_odds)) turn(player, &player->held[0], across, SDLK_LEFT, SDLK_RIGHT);
  if (one_in(player, move_odds)) turn(player, &player->held[1], down, SDLK_UP, SDLK_DOWN);
  if (one_in(player, move_odds)) turn(player, &player->held[2], -across, SDLK_a, SDLK_d);
  if (one_in(player, move_odds)) turn(player, &player->held[3], -down, SDLK_w, SDLK_s);
  if (one_in(player, punch_odds)) type(SDLK_SPACE);
  if (one_in(player, punch_odds)) type(SDLK_TAB);
  if (one_in(player, pause_odds)) type(SDLK_ESCAPE);
}

}  // namespace

void random_player_type(random_player *player, const state_object *state) {
  const bool in_game = state->current_state == screen_game;
  const game_state *game = in_game ? static_cast<const game_state *>(state->screen) : nullptr;
  if (in_game && game->paused == pause_none) {
    fight(player, game);
    return;
  }
  if (!one_in(player, menu_odds)) return;
  constexpr SDL_Keycode keys[] = {SDLK_UP, SDLK_DOWN, SDLK_ESCAPE, SDLK_RETURN};
  const SDL_Keycode key = keys[player->dice() % std::size(keys)];
  const bool in_menu = state->current_state == screen_main_menu;
  const int item = in_menu ? static_cast<const main_menu_screen *>(state->screen)->selected : 0;
  if (key == SDLK_RETURN && (item == main_menu_item_count || item == lan_item)) return;
  type(key);
}
