#include "fight/game.h"

#include <cstdlib>
#include <ctime>
#include <initializer_list>

#include "core/context.h"
#include "fight/cpu_logic.h"
#include "fight/fighter.h"
#include "media/sounds.h"

namespace {

constexpr int winning_score = 99;
constexpr int end_delay = 2;  // s from the end of the match to the end screen

// The system clock in whole seconds.
int now_in_seconds() {
  return static_cast<int>(std::time(nullptr));
}

void run_cpu(game_state *game) {
  cpu_logic_check_state(game->cpu, game->fighter2, game->fighter1);
  cpu_logic_state_intructions(game->cpu, game->fighter2);
}

void aim(fighter *puncher, const fighter *opponent) {
  if (puncher->punch_phase < punch_half) fighter_set_punching_arm(puncher, opponent->y);
}

// Fighter 1 always goes first: when both would land in the same frame, only fighter 1 scores.
void move_and_punch(game_state *game) {
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

void turn_to(fighter *fighter, int side) {
  const int shift = fighter_body_columns * context_get()->unit_w;
  fighter->side = side;
  fighter->x += side == side_left ? shift : -shift;
}

}  // namespace

void game_restart_clock(game_state *game) {
  game->end_time = now_in_seconds() + game->time_left;
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

bool game_is_over(const game_state *game) {
  if (game->fighting != 0) return false;
  const int now = now_in_seconds();
  // A clock that was set back since the bell does not hold the end up.
  return now > game->end_at || now < game->end_at - end_delay;
}

void game_run_fight(game_state *game) {
  const bool against_cpu = game->cpu != nullptr && game->fighting == 1;
  if (against_cpu) run_cpu(game);
  move_and_punch(game);
  if (against_cpu) game->distance = game_opponents_distance_x(game->fighter1, game->fighter2);
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
