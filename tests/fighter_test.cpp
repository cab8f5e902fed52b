// Where punches land, compared with a second account of gloves and noses: as cells instead of rectangles.

#include "fight/fighter.h"

#include <gtest/gtest.h>

#include "core/context.h"
#include "fight/fighter_masks.h"
#include "tests/support/stage.h"

namespace {

struct boxer {
  int body, y, side;  // the body's left column and top row in the ring
  int phase = 0, arm = 0;
};

// The attacker's round glove, wherever its phase has it, shares a cell with the defender's nose.
bool glove_on_nose(const boxer &attacker, const boxer &defender) {
  const int roundness[] = {2, 1, 0, 0, 0, 0, 1, 2};
  const int glove = attacker.phase == 3 ? 0 : attacker.phase == 2 ? 9 : 19;
  for (int row = 0; row < 8; ++row) {
    const int nose_row = attacker.y + (attacker.arm == 1 ? 31 - row : row) - defender.y;
    if (nose_row != 15 && nose_row != 16) continue;
    for (int column = glove + roundness[row]; column < glove + 10 - roundness[row]; ++column) {
      const int in_ring = attacker.side == 1 ? attacker.body - 19 + column : attacker.body + 37 - column;
      const int from_front = defender.side == 1 ? in_ring - defender.body - 3 : defender.body + 15 - in_ring;
      if (from_front >= 0 && from_front < 14) return true;
    }
  }
  return false;
}

}  // namespace

TEST(fighter, punch_lands_where_the_glove_meets_the_nose) {
  bare_match match(1);
  fighter &attacker = *match.game.fighter1, &defender = *match.game.fighter2;
  for (int pose = 0; pose < 56; ++pose) {  // phases 0 to 6, arms, sides of both
    attacker.punch_phase = pose / 8;
    attacker.punching_arm = pose / 4 % 2;
    attacker.side = pose / 2 % 2;
    defender.side = pose % 2;
    const boxer model = {60 + 19 * attacker.side, 40, attacker.side, attacker.punch_phase,
                         attacker.punching_arm};
    fighter_set_pos_from_unit(60, 40, &attacker);
    for (int i = 0; i < 73 * 121; ++i) {
      const int x = i % 121, y = 4 + i / 121;
      fighter_set_pos_from_unit(x, y, &defender);
      const boxer target = {x + 19 * defender.side, y, defender.side};
      const bool lands = (model.phase == 2 || model.phase == 3) && glove_on_nose(model, target);
      ASSERT_EQ(fighter_check_punch(&attacker, &defender), lands)
          << "pose " << pose << " at " << x << ", " << y;
    }
  }
}

// What is drawn as glove and nose is exactly what hits and is hit, for a fighter that faces left.
TEST(fighter, gloves_and_nose_are_drawn_where_punches_land) {
  const bare_match match(1);
  fighter &boxer = *match.game.fighter2;
  boxer.x = boxer.y = 0;
  const auto holds = [](const SDL_Rect &pixels, int column, int row) {
    const SDL_Point corner = {column * context.unit_w, row * context.unit_h};
    return SDL_PointInRect(&corner, &pixels) == SDL_TRUE;
  };
  const struct {
    int phase, glove_end;  // column behind the glove, where the arm begins
    const mask<arm_mask_rows> &arm;
  } arms[] = {
      {punch_started, 29, upper_left_0}, {punch_half, 19, upper_left_1}, {punch_full, 10, upper_left_2}};
  for (const auto &[phase, glove_end, arm] : arms) {
    SDL_Rect glove[3];
    boxer.punch_phase = phase;
    fighter_get_punch_rect(&boxer, glove);
    for (int cell = 0; cell < 8 * glove_end; ++cell) {
      const int column = cell % glove_end, row = cell / glove_end;
      const bool hits =
          holds(glove[0], column, row) || holds(glove[1], column, row) || holds(glove[2], column, row);
      EXPECT_EQ(arm[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)], hits)
          << phase << " " << cell;
    }
  }
  SDL_Rect nose;
  fighter_get_nose_rect(&nose, &boxer);
  for (int cell = 0; cell < 2 * mask_columns; ++cell) {
    const int column = cell % mask_columns, row = 4 + cell / mask_columns;
    EXPECT_EQ(head_normal_left[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)],
              holds(nose, column, arm_mask_rows + row))
        << cell;
  }
}
