#include "fight/cpu_logic.h"

#include <gtest/gtest.h>

#include "fight/fighter.h"
#include "tests/support/stage.h"

namespace {

constexpr int later = 9000;  // ms; it is 5000 now

struct place {
  int x, y, side;
};
constexpr place start = {86, 54, 1}, opposite = {10, 10, 0};
constexpr place top_corner = {0, 0, 0}, bottom_corner = {0, 64, 0};
constexpr place high = {60, 10, 1};  // its lower glove, on rows 34 to 41, is level with...
constexpr place level = {10, 22, 0}, low = {10, 60, 0};  // ...the nose of the first of these

// One frame of decisions with the lower arm, in a match at the distance; it has to take all draws.
cpu_logic decide(cpu_logic cpu, int distance, place me, place opponent, std::deque<int> draws,
                 int phase = 0) {
  bare_match match(0);
  match.game.distance = distance;
  fighter_init(match.game.fighter1, nullptr, opponent.x, opponent.y, opponent.side, 1);
  fighter_init(match.game.fighter2, nullptr, me.x, me.y, me.side, 2);
  match.game.fighter2->punching_arm = 1;
  match.game.fighter2->punch_phase = phase;
  world.ticks = 5000;
  world.draws = draws;
  cpu_logic_check_state(&cpu, match.game.fighter2, match.game.fighter1);
  EXPECT_TRUE(world.draws.empty()) << world.draws.size() << " draws were not taken";
  return cpu;
}

}  // namespace

TEST(cpu_logic, draws_a_plan_when_the_last_is_over) {
  const struct {
    int next_plan_at, distance;
    std::deque<int> draws;
    int plan, plan_until, direction, move_until;
  } cases[] = {{5001, 0, {}, 1, 5001, 4, later},              // not yet
               {5000, 0, {0, 0, 2, 1999}, 4, 7999, 4, 0},     // near: no attack, any other: keep going
               {0, 0, {1, 1, 0, 399}, 3, 6000, 5, 5499},      // near: attack after all
               {0, 14, {0, 2, 500, 0}, 3, 6500, 5, 5100},     // the same
               {0, 14, {2, 500, 0}, 3, 6500, 5, 5100},        // attack at once
               {0, 15, {1, 1, 500, 0}, 3, 6500, 5, 5100},     // between: attack after all
               {0, 39, {0, 0, 0, 10, 1}, 2, 6000, 6, 5410},   // between: retreat
               {0, 40, {0, 2000, 7, 399}, 1, 6000, 8, 5799},  // far: wander
               {0, -1, {1, 3, 400, 2}, 2, 6003, 4, 5400}};    // one over the other a frame ago: as drawn
  for (const auto &c : cases) {
    const cpu_logic cpu =
        decide({c.next_plan_at, 1, later, 4, 0, later}, c.distance, start, opposite, c.draws);
    EXPECT_EQ(std::tie(cpu.plan, cpu.next_plan_at, cpu.direction, cpu.next_move_at, cpu.punch_request),
              std::make_tuple(c.plan, c.plan_until, c.direction, c.move_until, 0))
        << "case " << &c - cases;
  }
}

TEST(cpu_logic, wishes_to_punch_more_often_the_nearer) {
  const struct {
    int distance;
    place opponent;
    std::deque<int> draws;
    int next_punch_at, phase, request;
  } cases[] = {
      {14, level, {}, 4999, 0, 1},        {14, level, {}, 5000, 0, 0},     {14, level, {}, 4999, 1, 0},
      {15, level, {1, 1, 1}, 4999, 0, 0}, {14, low, {10}, 4999, 0, 1},     {24, level, {5, 20}, 4999, 0, 1},
      {25, level, {40}, 4999, 0, 1},      {25, low, {10, 60}, 4999, 0, 1}, {49, low, {5, 5}, 4999, 0, 0},
      {50, low, {30}, 0, 0, 1},           {50, low, {20}, 0, 0, 0},        {-19, level, {}, 4999, 0, 1}};
  for (const auto &c : cases) {
    const cpu_logic before = {later, 4, later, 4, 0, c.next_punch_at};
    EXPECT_EQ(decide(before, c.distance, high, c.opponent, c.draws, c.phase).punch_request, c.request)
        << "case " << &c - cases;
  }
}

TEST(cpu_logic, only_steps_aside_while_stacked) {
  const struct {
    int next_move_at, x;
    std::deque<int> draws;
    int direction, move_until;
  } cases[] = {{4999, -9, {1, 199}, 3, 5999},
               {0, -9, {2, 200}, 4, 5800},
               {5000, -9, {}, 7, 5000},
               {4999, -27, {3, 0}, 3, 5800},
               {4999, 9, {0, 0}, 4, 5800}};
  for (const auto &c : cases) {  // the opponent's body covers columns 10 to 28
    const cpu_logic cpu = decide({0, 1, c.next_move_at, 7, 0, 0}, 0, {c.x, 50, 1}, opposite, c.draws);
    EXPECT_EQ(std::tie(cpu.direction, cpu.next_move_at, cpu.next_plan_at, cpu.punch_request),
              std::make_tuple(c.direction, c.move_until, 0, 0))
        << "case " << &c - cases;
  }
  for (const int x : {10, -28}) {  // the bodies only touch
    EXPECT_EQ(decide({later, 1, 5000, 7, 0, later}, 0, {x, 50, 1}, opposite, {1, 0}).direction, 2);
  }
}
