#include "screens/game_screen.h"

#include <SDL.h>

#include <cstdint>
#include <cstdlib>

#include "core/allocation.h"
#include "core/context.h"
#include "core/state_machine.h"
#include "core/utility.h"
#include "fight/cpu_logic.h"
#include "fight/fighter.h"
#include "fight/game.h"
#include "lan/messages.h"
#include "media/graphics.h"
#include "net/net.h"

namespace {

// For how long the host is told of a press; the shortest punch lasts for one frame more.
constexpr int punch_tells_most = 4;                                                  // frames
constexpr std::uint32_t punch_tell_time = punch_tells_most * screen_tick_per_frame;  // ms

// LAN match

// The guest mirrors the host's match and runs none of its own.
bool is_guest() {
  return context_is_lan() && netInfo.is_host == 0;
}

bool is_host() {
  return context_is_lan() && netInfo.is_host != 0;
}

bool peer_reachable() {
  return net_validate_ip4(netInfo.peer_ip) != 0;
}

void watch_peer(game_state *game) {
  const std::uint32_t now = SDL_GetTicks();
  if (net_peer_lost(now)) {
    context_state_machine()->next_state = screen_end;
    net_reset_peer_info();
  }
  game->peer_silent = net_peer_silent(now) ? 1 : 0;
}

// Tells the host this frame's controls. A press of the punch key is repeated for some frames, since one
// message may be lost; until the host's state shows the punch, and not for so long that it could be taken for
// another.
void tell_controls(game_state *game) {
  const bool seen = game->fighter2->punch_phase >= punch_half;
  if (seen || SDL_GetTicks() - game->punch_ticks >= punch_tell_time) game->punch_tells = 0;
  if (peer_reachable()) messages_key_press();
  if (game->punch_tells > 0) --game->punch_tells;
}

// Input

// A key that moves a fighter while it is held, in steps of its speed.
struct movement_key {
  SDL_Keycode key;
  int across;
  int down;
};
constexpr movement_key arrow_keys[] = {
    {SDLK_LEFT, -1, 0}, {SDLK_RIGHT, 1, 0}, {SDLK_UP, 0, -1}, {SDLK_DOWN, 0, 1}};
constexpr movement_key letter_keys[] = {{SDLK_a, -1, 0}, {SDLK_d, 1, 0}, {SDLK_w, 0, -1}, {SDLK_s, 0, 1}};

struct controls {
  int set;  // index of `held`
  const movement_key (&movement)[4];
  SDL_Keycode punch;
};
constexpr controls right_hand = {0, arrow_keys, SDLK_SPACE};
constexpr controls left_hand = {1, letter_keys, SDLK_TAB};

// Presses add a step and releases take it back, so that opposite keys held together cancel out. A release
// without a press that counted, such as that of a key held since before the match, changes nothing: it would
// leave the fighter walking by itself.
void count_direction(fighter *fighter, const movement_key &movement, bool pressed, bool *held) {
  if (*held == pressed) return;
  *held = pressed;
  const int direction = pressed ? 1 : -1;
  fighter->vel_x += direction * movement.across * fighter->speed_x;
  fighter->vel_y += direction * movement.down * fighter->speed_y;
}

void begin_punch(game_state *game, fighter *fighter) {
  if (fighter->punch_phase != punch_none) return;
  fighter->punch_phase = punch_started;
  if (!is_guest()) return;
  game->punch_tells = punch_tells_most;
  game->punch_ticks = SDL_GetTicks();
  game->punch_unheard = true;
}

void control_fighter(game_state *game, fighter *fighter, const controls &controls,
                     const SDL_KeyboardEvent &key) {
  const bool pressed = key.type == SDL_KEYDOWN;
  if (pressed && key.keysym.sym == controls.punch) begin_punch(game, fighter);
  for (int i = 0; i < 4; ++i) {
    const movement_key &movement = controls.movement[i];
    if (key.keysym.sym == movement.key)
      count_direction(fighter, movement, pressed, &game->held[controls.set][i]);
  }
}

// In a LAN match the peer learns of it by the next message, and stands still as well.
void toggle_pause(game_state *game) {
  if (game->paused == pause_none) {
    game->paused = pause_local;
  } else if (game->paused == pause_local) {
    game->paused = pause_none;
    game_restart_clock(game);
  }
}

// A match that nobody else waits for pauses when its window is left or hidden.
void pause_unseen(game_state *game, const SDL_WindowEvent &event) {
  const bool unseen = event.event == SDL_WINDOWEVENT_FOCUS_LOST || event.event == SDL_WINDOWEVENT_MINIMIZED;
  if (unseen && !context_is_lan() && game->paused == pause_none) toggle_pause(game);
}

void activate_pause_item(game_state *game) {
  switch (game->pause_selection) {
    case pause_item_sound:
      context_toggle_sound();
      break;
    case pause_item_restart:
      if (context_is_lan()) break;  // the match is not this player's alone
      game_unload();
      game_load(game);
      break;
    case pause_item_quit:
      if (context_is_lan()) messages_repeat(messages_leave_game);
      context_state_machine()->next_state = screen_main_menu;
      break;
    default:
      break;
  }
}

void control_pause_menu(game_state *game, SDL_Keycode key) {
  if (key == SDLK_ESCAPE) {
    toggle_pause(game);
    return;
  }
  if (game->paused == pause_none) return;
  game->pause_selection = move_selection(key, game->pause_selection, pause_item_sound, pause_item_quit);
  if (key == SDLK_RETURN) activate_pause_item(game);
}

void handle_key(game_state *game, const SDL_KeyboardEvent &key) {
  if (key.repeat != 0) return;
  control_fighter(game, is_guest() ? game->fighter2 : game->fighter1, right_hand, key);
  if (context_get()->game_mode == mode_two_players) control_fighter(game, game->fighter2, left_hand, key);
  if (key.type == SDL_KEYDOWN) control_pause_menu(game, plain_key(key.keysym));
}

// Update

// A paused match stands still, and so does one whose peer is silent.
bool stands_still(const game_state *game) {
  return game->paused != pause_none || game->peer_silent != 0;
}

}  // namespace

void game_load(game_state *game) {
  const context_record *app = context_get();
  *game = {};
  game->time_left = app->fight_time;
  game_restart_clock(game);
  const bool lan = context_is_lan();  // where the lobby's colours hold, not the options screen's
  game->fighter1 =
      fighter_create(&commet_texture, 10, 10, side_left, lan ? netInfo.fighter1_color : app->fighter1_color);
  game->fighter2 =
      fighter_create(&commet_texture, 86, 54, side_right, lan ? netInfo.fighter2_color : app->fighter2_color);
  if (app->game_mode == mode_one_player) {
    game->cpu = allocate_record<cpu_logic>("cpu");
    cpu_logic_init(game->cpu);
  }
  game->fighting = 1;
  game->pause_selection = pause_item_sound;
}

void game_handle_input() {
  game_state *game = current_game();
  SDL_Event &event = context_get()->event;
  while (SDL_PollEvent(&event) != 0) {
    if (event.type == SDL_QUIT) {
      if (context_is_lan()) messages_repeat(messages_leave_game);
      context_state_machine()->next_state = screen_quit;
      return;
    }
    if (game->fighting == 0) continue;
    if (event.type == SDL_KEYDOWN || event.type == SDL_KEYUP) handle_key(game, event.key);
    if (event.type == SDL_WINDOWEVENT) pause_unseen(game, event.window);
  }
  if (is_guest()) tell_controls(game);
}

void game_update() {
  game_state *game = current_game();
  if (context_is_lan()) watch_peer(game);
  // The end of a LAN match comes on both machines, whoever has paused or is unheard in its frame: one that
  // waited for a resume would find the other gone.
  if (!stands_still(game) || context_is_lan()) game_check_for_end(game);
  if (game_is_over(game)) {
    context_state_machine()->next_state = screen_end;
    return;
  }
  if (game->fighting != 0 && stands_still(game)) {
    game_restart_clock(game);
  } else if (!is_guest()) {
    game_run_fight(game);
  }
  if (is_host() && peer_reachable()) messages_game_state();
}

void game_unload() {
  game_state *game = current_game();
  fighter_destroy(&game->fighter1);
  fighter_destroy(&game->fighter2);
  std::free(game->cpu);
  game->cpu = nullptr;
}
