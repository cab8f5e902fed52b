#pragma once

// The CPU opponent of a one-player match. It sees only geometry, decides on timers in ms and by rand(), and
// plays the same at every difficulty.

struct fighter;

enum cpu_plan : int {
  plan_wander = 1,
  plan_retreat = 2,
  plan_attack = 3,
  plan_keep_going = 4,
};

enum cpu_direction : int {
  direction_none = 0,
  direction_up = 1,
  direction_down = 2,
  direction_left = 3,
  direction_right = 4,
  direction_up_left = 5,
  direction_up_right = 6,
  direction_down_left = 7,
  direction_down_right = 8,
};

struct cpu_logic {
  int next_plan_at;   // tick (ms) of the next plan
  int plan;           // a cpu_plan; 0 before the first
  int next_move_at;   // tick (ms) of the next choice of direction
  int direction;      // a cpu_direction
  int punch_request;  // 1 when a punch is wanted
  int next_punch_at;  // tick (ms) before which no new punch is wanted
};

// Zeroes the record.
void cpu_logic_init(cpu_logic *cpu);
// One frame of decisions for the fighter `me`. Reads the current match's distance.
void cpu_logic_check_state(cpu_logic *cpu, const fighter *me, const fighter *opponent);
// Turns the decisions into the fighter's movement and punch. (The name is spelt so.)
void cpu_logic_state_intructions(cpu_logic *cpu, fighter *me);
