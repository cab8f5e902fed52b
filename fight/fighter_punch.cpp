// Punches, hits, knock-back and the idle flexing of the arms.

#include <algorithm>
#include <cstddef>
#include <cstdlib>

#include "core/context.h"
#include "core/utility.h"
#include "fight/fighter.h"
#include "fight/fighter_masks.h"
#include "media/sounds.h"

namespace {

constexpr int knock_back_frames = 7;  // a hit knocks back for this long
constexpr int flex_frames = 6;        // a flexed pose is held until the next multiple of this
constexpr int flex_period = 24;       // and a new one is drawn at the multiples of this

// The round glove as three overlapping rectangles, in blocks from the fighter's top-left corner: the widest
// rows, the rows around them, the outermost rows.
constexpr SDL_Rect glove_upper[3] = {{0, 2, 10, 4}, {1, 1, 8, 6}, {2, 0, 6, 8}};
constexpr int glove_lower_offset = 24;  // blocks from the upper glove down to the lower one

// Left edge of the glove in blocks, by reach and fighter_side.
struct reach {
  int by_side[2];
};
constexpr reach reach_rest = {{9, 19}};
constexpr reach reach_half = {{19, 9}};
constexpr reach reach_full = {{28, 0}};

constexpr SDL_Rect nose[2] = {{2, 15, 14, 2}, {22, 15, 14, 2}};  // blocks, by fighter_side

constexpr bool covers(const SDL_Rect &rect, int column, int row) {
  return column >= rect.x && column < rect.x + rect.w && row >= rect.y && row < rect.y + rect.h;
}

// Whether exactly what is drawn in these rows of a mask, left of column `end`, is covered by one of the
// rectangles when these are moved.
template <std::size_t rows, std::size_t count>
constexpr bool is_drawn(const mask<rows> &drawing, std::size_t first_row, std::size_t last_row,
                        std::size_t end, const SDL_Rect (&rects)[count], SDL_Point moved) {
  for (std::size_t row = first_row; row <= last_row; ++row) {
    for (std::size_t column = 0; column < end; ++column) {
      const int x = static_cast<int>(column) - moved.x;
      const int y = static_cast<int>(row) - moved.y;
      const bool hit = std::ranges::any_of(rects, [=](const SDL_Rect &rect) { return covers(rect, x, y); });
      if (drawing[row][column] != hit) return false;
    }
  }
  return true;
}

// Of a fighter that faces left, as the masks do; one that faces right is its mirror image.
constexpr bool glove_is_drawn(const mask<arm_mask_rows> &arm, const reach &reach) {
  constexpr int glove_columns = 10;
  constexpr int last_row = 7;
  const int left = reach.by_side[side_right];
  const int end = left + glove_columns;
  return reach.by_side[side_left] == mask_columns - end &&
         is_drawn(arm, 0, last_row, static_cast<std::size_t>(end), glove_upper, {left, 0});
}

// Of the head, which lies below the arm, the rows with the nose.
constexpr bool nose_is_drawn(const mask<head_mask_rows> &head) {
  const SDL_Rect &rect = nose[side_right];
  const std::size_t first_row = static_cast<std::size_t>(rect.y) - arm_mask_rows;
  const std::size_t last_row = first_row + static_cast<std::size_t>(rect.h) - 1;
  return nose[side_left].x == mask_columns - rect.w - rect.x &&
         is_drawn(head, first_row, last_row, mask_columns, {rect}, {0, -arm_mask_rows});
}

static_assert(glove_is_drawn(upper_left_0, reach_rest));
static_assert(glove_is_drawn(upper_left_1, reach_half));
static_assert(glove_is_drawn(upper_left_2, reach_full));
static_assert(nose_is_drawn(head_normal_left));

int glove_column(const fighter *fighter) {
  switch (fighter->punch_phase) {
    case punch_half:
      return reach_half.by_side[fighter->side];
    case punch_full:
      return reach_full.by_side[fighter->side];
    default:
      return reach_rest.by_side[fighter->side];
  }
}

SDL_Rect to_pixels(const fighter *fighter, SDL_Rect blocks) {
  const context_record *app = context_get();
  return {fighter->x + blocks.x * app->unit_w, fighter->y + blocks.y * app->unit_h, blocks.w * app->unit_w,
          blocks.h * app->unit_h};
}

void land_punch(fighter *attacker, fighter *defender) {
  defender->knock_frames = knock_back_frames;
  defender->knock_arm = attacker->punching_arm;
  if (attacker->punch_phase == punch_half) {
    attacker->score += 2;
    attacker->punch_phase = punch_full;
  } else {
    attacker->score += 1;
  }
  sounds_play(gPunchHit);
}

}  // namespace

void fighter_punch(fighter *attacker, fighter *defender) {
  if (attacker->punch_phase == punch_none) return;
  if (defender->knock_frames == 0 && fighter_check_punch(attacker, defender)) land_punch(attacker, defender);

  // A glove that found nobody stays out for one frame more.
  if (attacker->punch_phase == punch_full && defender->knock_frames == 0) {
    if (attacker->punch_frames % 3 != 0) {
      ++attacker->punch_frames;
      return;
    }
    sounds_play(gPunch);
  }

  if (attacker->punch_phase >= punch_last) {
    attacker->punch_phase = punch_none;
    attacker->punch_frames = 0;
  } else {
    ++attacker->punch_phase;
    ++attacker->punch_frames;
  }
}

void fighter_set_punching_arm(fighter *fighter, int opponent_y) {
  fighter->punching_arm = fighter->y <= opponent_y ? arm_lower : arm_upper;
}

bool fighter_check_punch(const fighter *attacker, const fighter *defender) {
  const bool extended = attacker->punch_phase == punch_half || attacker->punch_phase == punch_full;
  if (!extended || attacker->knock_frames != 0) return false;

  SDL_Rect gloves[3];
  SDL_Rect target;
  fighter_get_punch_rect(attacker, gloves);
  fighter_get_nose_rect(&target, defender);
  for (const SDL_Rect &glove : gloves) {
    if (check_collision(glove, target)) return true;
  }
  return false;
}

void fighter_get_punch_rect(const fighter *fighter, SDL_Rect rects[3]) {
  for (int i = 0; i < 3; ++i) {
    SDL_Rect blocks = glove_upper[i];
    blocks.x += glove_column(fighter);
    if (fighter->punching_arm == arm_lower) blocks.y += glove_lower_offset;
    rects[i] = to_pixels(fighter, blocks);
  }
}

void fighter_get_nose_rect(SDL_Rect *rect, const fighter *fighter) {
  *rect = to_pixels(fighter, nose[fighter->side]);
}

void fighter_knock_back(fighter *fighter) {
  if (fighter->knock_frames > 0) {
    --fighter->knock_frames;
    fighter->knock_vel_x = fighter->side == side_right ? fighter->knock_speed_x : -fighter->knock_speed_x;
    fighter->knock_vel_y = fighter->knock_arm == arm_lower ? -fighter->knock_speed_y : fighter->knock_speed_y;
  } else {
    fighter->knock_arm = 0;
    fighter->knock_vel_x = 0;
    fighter->knock_vel_y = 0;
  }
}

void fighter_flex(fighter *fighter, std::uint32_t frame_count) {
  const bool knocked = fighter->knock_frames != 0;
  const bool punching = fighter->punch_phase != punch_none;
  if (knocked && punching) fighter->flex_pose = flex_none;
  if (knocked || punching) return;
  if (fighter->flex_pose != flex_none && frame_count % flex_frames == 0) fighter->flex_pose = flex_none;
  if (fighter->flex_pose == flex_none && frame_count % flex_period == 0) fighter->flex_pose = std::rand() % 3;
}
