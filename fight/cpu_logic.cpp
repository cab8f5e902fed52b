#include "fight/cpu_logic.h"

#include <SDL.h>

#include <cstdint>
#include <cstdlib>

#include "core/context.h"
#include "core/utility.h"
#include "fight/fighter.h"
#include "fight/game_state.h"

namespace {

struct velocity {
  int across;
  int down;
};
constexpr velocity velocities[] = {{0, 0},   {0, -1}, {0, 1},  {-1, 0}, {1, 0},
                                   {-1, -1}, {1, -1}, {-1, 1}, {1, 1}};  // by cpu_direction, in steps

// Blocks above the ring's bottom edge: with both fighters in there, an attack starts upwards.
constexpr int floor_zone = 11;
constexpr int nose_row = 15;  // blocks from a fighter's top down to the nose
constexpr int never_far = 1 << 30;

// How eager the CPU is to punch: within `distance` blocks, once in `odds` frames.
struct eagerness {
  int distance;
  int odds;
};
constexpr eagerness far_punches[] = {{25, 10}, {50, 20}, {never_far, 30}};

// Ticks are compared unsigned, as SDL counts them.
bool reached(int tick, std::uint32_t now) {
  return static_cast<std::uint32_t>(tick) <= now;
}

bool passed(int tick, std::uint32_t now) {
  return static_cast<std::uint32_t>(tick) < now;
}

// A tick `least` to `least + spread - 1` ms from now.
int tick_after(std::uint32_t now, int least, int spread) {
  return static_cast<int>(now + static_cast<std::uint32_t>(least + std::rand() % spread));
}

// One fighter above the other.
bool stacked(const fighter *me, const fighter *opponent) {
  const int width = fighter_body_columns * context_get()->unit_w;
  return check_collision_on_x_axis({fighter_get_collision_x(me), me->y, width, me->h},
                                   {fighter_get_collision_x(opponent), opponent->y, width, opponent->h});
}

// The glove's rows meet the nose's rows, wherever they are across.
bool aligned(const fighter *me, const fighter *opponent) {
  SDL_Rect gloves[3];
  SDL_Rect nose;
  fighter_get_punch_rect(me, gloves);
  fighter_get_nose_rect(&nose, opponent);
  for (const SDL_Rect &glove : gloves) {
    if (check_collision_on_y_axis(glove, nose)) return true;
  }
  return false;
}

void side_step(cpu_logic *cpu, std::uint32_t now) {
  if (!passed(cpu->next_move_at, now)) return;
  cpu->direction = (std::rand() & 1) != 0 ? direction_left : direction_right;
  cpu->next_move_at = tick_after(now, 800, 200);
}

void draw_plan(cpu_logic *cpu, int distance, std::uint32_t now) {
  cpu->plan = std::rand() % 3 + 1;
  if (distance >= 0 && distance < 15 && cpu->plan != plan_attack && std::rand() % 3 != 0) {
    cpu->plan = plan_attack;
  } else if (distance >= 0 && distance < 40 && cpu->plan != plan_attack) {
    cpu->plan = std::rand() % 3 + 2;
  }
  cpu->next_plan_at = tick_after(now, 1000, 2000);
  cpu->next_move_at = 0;  // the new plan chooses its first direction at once
}

int retreat_to_the_right() {
  switch (std::rand() % 3) {
    case 1:
      return direction_up_right;
    case 2:
      return direction_right;
    default:
      return direction_down_right;
  }
}

// Standing on the left the CPU looks where the ring ends and slides along its edges.
int retreat_to_the_left(const fighter *me) {
  const SDL_Rect &ring = context_get()->ring;
  const bool at_top = me->y == ring.y;
  const bool at_bottom = me->y + me->h == ring.y + ring.h;
  const bool at_left = me->x == ring.x;
  switch (std::rand() % 3) {
    case 1:
      if (at_top) return direction_left;
      return at_left ? direction_up : direction_up_left;
    case 2:
      if (!at_top) return direction_left;
      return std::rand() % 2 == 0 ? direction_up : direction_down;
    default:
      if (at_bottom) return direction_left;
      return at_left ? direction_down : direction_down_left;
  }
}

bool above_floor_zone(const fighter *fighter) {
  const context_record *app = context_get();
  return app->ring.y + app->ring.h - (fighter->y + fighter->h) > floor_zone * app->unit_h;
}

int attack(const fighter *me, const fighter *opponent) {
  const bool left = me->side == side_left;
  if (aligned(me, opponent)) return left ? direction_right : direction_left;
  if (!above_floor_zone(me) && !above_floor_zone(opponent)) return direction_up;
  if (me->y < opponent->y + nose_row * context_get()->unit_h) {
    return left ? direction_down_right : direction_down_left;
  }
  return left ? direction_up_right : direction_up_left;
}

void choose_direction(cpu_logic *cpu, const fighter *me, const fighter *opponent, std::uint32_t now) {
  switch (cpu->plan) {
    case plan_wander:
      cpu->direction = std::rand() % 8 + 1;
      cpu->next_move_at = tick_after(now, 400, 400);
      break;
    case plan_retreat:
      cpu->next_move_at = tick_after(now, 400, 400);
      cpu->direction = me->side == side_right ? retreat_to_the_right() : retreat_to_the_left(me);
      break;
    case plan_attack:
      cpu->direction = attack(me, opponent);
      cpu->next_move_at = tick_after(now, 100, 400);
      break;
    default:  // keep going
      break;
  }
}

bool wants_punch(const fighter *me, const fighter *opponent, int distance) {
  if (distance < 15 && aligned(me, opponent)) return true;
  for (const eagerness &eagerness : far_punches) {
    if (distance < eagerness.distance && std::rand() % eagerness.odds == 0) return true;
  }
  return false;
}

}  // namespace

void cpu_logic_init(cpu_logic *cpu) {
  *cpu = {};
}

void cpu_logic_check_state(cpu_logic *cpu, const fighter *me, const fighter *opponent) {
  const std::uint32_t now = SDL_GetTicks();
  if (stacked(me, opponent)) {
    side_step(cpu, now);
    return;
  }
  const int distance = current_game()->distance;
  if (reached(cpu->next_plan_at, now)) draw_plan(cpu, distance, now);
  if (reached(cpu->next_move_at, now)) choose_direction(cpu, me, opponent, now);
  if (me->punch_phase == punch_none && passed(cpu->next_punch_at, now) &&
      wants_punch(me, opponent, distance)) {
    cpu->punch_request = 1;
  }
}

void cpu_logic_state_intructions(cpu_logic *cpu, fighter *me) {
  const velocity &velocity = velocities[cpu->direction];
  me->vel_x = velocity.across * me->speed_x;
  me->vel_y = velocity.down * me->speed_y;
  if (cpu->punch_request == 1 && me->punch_phase == punch_none) {
    cpu->next_punch_at = tick_after(SDL_GetTicks(), 100, 400);
    me->punch_phase = punch_started;
    cpu->punch_request = 0;
  }
}
