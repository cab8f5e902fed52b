// Decisions that hardly come up in the recorded matches.

#include "fight/cpu_logic.h"

#include <gtest/gtest.h>

#include "core/context.h"
#include "fight/fighter.h"
#include "tests/support/stage.h"

TEST(cpu_logic, chooses_a_direction_by_its_plan) {
  const struct {
    int plan, x, y, opponent_y;
    std::deque<int> draws;
    int direction, next_move_at;
  } cases[] = {{plan_wander, 86, 54, 10, {15, 0}, direction_down_right, 5400},
               {plan_retreat, 86, 54, 10, {399, 2}, direction_right, 5799},
               {plan_attack, 60, 64, 53, {0}, direction_up, 5100},  // at the floor, where no room is left
               {plan_attack, 60, 64, 52, {0}, direction_down_left, 5100},
               {plan_attack, 60, 52, 53, {0}, direction_down_left, 5100},
               {plan_keep_going, 86, 54, 10, {}, direction_none, 5000}};
  for (const auto &c : cases) {
    bare_match match(mode_one_player);
    match.game.distance = 60;
    fighter_set_pos_from_unit(10, c.opponent_y, match.game.fighter1);
    fighter_set_pos_from_unit(c.x, c.y, match.game.fighter2);
    match.game.fighter2->punching_arm = arm_lower;
    world.ticks = 5000;
    world.draws = c.draws;
    cpu_logic cpu = {9000, c.plan, 5000, 0, 0, 9000};
    cpu_logic_check_state(&cpu, match.game.fighter2, match.game.fighter1);
    EXPECT_EQ(std::tie(cpu.direction, cpu.next_move_at), std::tie(c.direction, c.next_move_at))
        << "case " << &c - cases;
  }
}
