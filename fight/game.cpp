#include "fight/game.h"

#include <SDL.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <initializer_list>

#include "app/allocation.h"
#include "app/context.h"
#include "app/state_machine.h"
#include "app/utility.h"
#include "fight/cpu_logic.h"
#include "fight/fighter.h"
#include "media/graphics.h"
#include "media/sounds.h"
#include "net/messages.h"
#include "net/net.h"

namespace {

constexpr int winning_score = 99;
constexpr int end_delay = 2;         // s from the end of the match to the end screen
constexpr int goodbye_repeats = 3;   // copies of the leave message, since nobody answers it
constexpr int punch_tells_most = 4;  // frames in which the host is told of a press; a punch lasts for more
constexpr std::uint32_t punch_tell_time =
    5 * screen_tick_per_frame;  // ms; the same for frames that took long

game_state *current_game() {
  return static_cast<game_state *>(context_state_machine()->screen);
}

// The system clock in whole seconds.
int now_in_seconds() {
  return static_cast<int>(std::time(nullptr));
}

// The clock goes on from time_left as of now.
void restart_clock(game_state *game) {
  game->end_time = now_in_seconds() + game->time_left;
}

// LAN match

bool in_lan_match() {
  return context_get()->game_mode == mode_lan;
}

// The guest mirrors the host's match and runs none of its own.
bool is_guest() {
  return in_lan_match() && netInfo.is_host == 0;
}

bool is_host() {
  return in_lan_match() && netInfo.is_host != 0;
}

bool peer_reachable() {
  return net_validate_ip4(netInfo.peer_ip) != 0;
}

bool peer_silent() {
  return in_lan_match() && net_peer_silent(SDL_GetTicks());
}

void check_for_lost_peer() {
  if (!in_lan_match() || !net_peer_lost(SDL_GetTicks())) return;
  context_state_machine()->next_state = screen_end;
  net_reset_peer_info();
}

void tell_peer_goodbye() {
  for (int i = 0; i < goodbye_repeats; ++i) messages_leave_game();
}

// Tells the host this frame's controls. A press of the punch key is repeated for some frames, since one
// message may be lost; until the host's state shows the punch, and not for so long that it could be taken for
// another.
void tell_controls(game_state *game) {
  const bool seen = game->fighter2->punch_phase >= punch_half;
  if (seen || SDL_GetTicks() - game->punch_ticks > punch_tell_time) game->punch_tells = 0;
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

void toggle_pause(game_state *game) {
  if (game->paused == pause_none) {
    game->paused = pause_local;
  } else if (game->paused == pause_local) {
    game->paused = pause_none;
    restart_clock(game);
  }
}

void activate_pause_item(game_state *game) {
  switch (game->pause_selection) {
    case pause_item_sound:
      context_toggle_sound();
      break;
    case pause_item_restart:
      if (in_lan_match()) break;  // the match is not this player's alone
      game_unload();
      game_load(game);
      break;
    case pause_item_quit:
      if (in_lan_match()) tell_peer_goodbye();
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
  if (key.type == SDL_KEYDOWN) control_pause_menu(game, key.keysym.sym);
}

// Rules

void run_cpu(game_state *game) {
  cpu_logic_check_state(game->cpu, game->fighter2, game->fighter1);
  cpu_logic_state_intructions(game->cpu, game->fighter2);
}

void aim(fighter *fighter, const struct fighter *opponent) {
  if (fighter->punch_phase < punch_half) fighter_set_punching_arm(fighter, opponent->y);
}

// Fighter 1 always goes first: when both would land in the same frame, only fighter 1 scores.
void run_fight(game_state *game) {
  const context_record *app = context_get();
  fighter *first = game->fighter1;
  fighter *second = game->fighter2;
  fighter_move(first, second, app->ring);
  fighter_move(second, first, app->ring);
  aim(first, second);
  aim(second, first);
  fighter_punch(first, second);
  fighter_punch(second, first);
  fighter_flex(first, app->frame_count);
  fighter_flex(second, app->frame_count);
  fighter_knock_back(first);
  fighter_knock_back(second);
  game_set_sides(first, second);
  game->time_left = game->end_time - now_in_seconds();
}

// A clock that was set back since the bell does not hold the end screen up either.
bool bell_is_long_ago(const game_state *game) {
  const int now = now_in_seconds();
  return now > game->end_at || now < game->end_at - end_delay;
}

// A frame of a match that does not stand still. False when it has been over for long enough: the end screen
// is asked for then.
bool run_match(game_state *game) {
  if (game->fighting == 0 && bell_is_long_ago(game)) {
    context_state_machine()->next_state = screen_end;
    return false;
  }
  const bool against_cpu = context_get()->game_mode == mode_one_player && game->fighting == 1;
  if (against_cpu) run_cpu(game);
  if (!is_guest()) run_fight(game);
  if (against_cpu) game->distance = game_opponents_distance_x(game->fighter1, game->fighter2);
  return true;
}

void turn_to(fighter *fighter, int side) {
  const int shift = fighter_body_columns * context_get()->unit_w;
  fighter->side = side;
  fighter->x += side == side_left ? shift : -shift;
}

}  // namespace

void game_load(game_state *game) {
  const context_record *app = context_get();
  game->time_left = app->fight_time;
  restart_clock(game);
  const bool lan = in_lan_match();  // where the lobby's colours hold, not the options screen's
  game->fighter1 =
      fighter_create(&commet_texture, 10, 10, side_left, lan ? netInfo.fighter1_color : app->fighter1_color);
  game->fighter2 =
      fighter_create(&commet_texture, 86, 54, side_right, lan ? netInfo.fighter2_color : app->fighter2_color);
  game->cpu = nullptr;
  if (app->game_mode == mode_one_player) {
    game->cpu = allocate_record<cpu_logic>("cpu");
    cpu_logic_init(game->cpu);
  }
  game->distance = 0;
  game->end_at = 0;
  game->fighting = 1;
  std::memset(game->held, 0, sizeof game->held);
  game->punch_tells = 0;
  game->punch_ticks = 0;
  game->paused = pause_none;
  game->pause_selection = pause_item_sound;
}

void game_handle_input() {
  game_state *game = current_game();
  SDL_Event &event = context_get()->event;
  while (SDL_PollEvent(&event) != 0) {
    if (event.type == SDL_QUIT) {
      if (in_lan_match()) tell_peer_goodbye();
      context_state_machine()->next_state = screen_quit;
      return;
    }
    if (game->fighting == 0) continue;
    if (event.type == SDL_KEYDOWN || event.type == SDL_KEYUP) handle_key(game, event.key);
  }
  if (is_guest()) tell_controls(game);
}

void game_update() {
  game_state *game = current_game();
  check_for_lost_peer();
  const bool standing = game->paused != pause_none || peer_silent();
  // The end of a LAN match comes on both machines, whoever has paused or is unheard in its frame: one that
  // waited for a resume would find the other gone.
  if (!standing || in_lan_match()) game_check_for_end(game);
  if (standing && game->fighting != 0) {
    restart_clock(game);
  } else if (!run_match(game)) {
    return;
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

void game_check_for_end(game_state *game) {
  if (game->fighting == 0) return;
  const bool won = game->fighter1->score >= winning_score || game->fighter2->score >= winning_score;
  if (!won && game->time_left > 0) return;
  game->fighting = 0;
  game->end_at = now_in_seconds() + end_delay;
  for (fighter *fighter : {game->fighter1, game->fighter2}) {
    fighter->vel_x = 0;
    fighter->vel_y = 0;
  }
  sounds_play(gBell);
}

void game_set_sides(fighter *fighter1, fighter *fighter2) {
  if (fighter1->punch_phase != punch_none || fighter2->punch_phase != punch_none) return;
  const int left1 = fighter_get_collision_x(fighter1);
  const int left2 = fighter_get_collision_x(fighter2);
  if (fighter1->side == side_left && left1 > left2) {
    turn_to(fighter1, side_right);
    turn_to(fighter2, side_left);
  } else if (fighter1->side == side_right && left1 < left2) {
    turn_to(fighter1, side_left);
    turn_to(fighter2, side_right);
  }
}

int game_opponents_distance_x(const fighter *fighter1, const fighter *fighter2) {
  const int blocks =
      (fighter_get_collision_x(fighter1) - fighter_get_collision_x(fighter2)) / context_get()->unit_w;
  return std::abs(blocks) - fighter_body_columns;
}
