// Draws fighters block by block from their masks.

#include "core/context.h"
#include "fight/fighter.h"
#include "fight/fighter_masks.h"
#include "media/texture.h"

namespace {

constexpr int head_top = arm_mask_rows;  // fighter row of the head's first row
constexpr int knocked_head_frames = 2;   // the head is thrown back while this many are to run

const mask<arm_mask_rows> &arm_mask(const fighter *fighter, int arm) {
  if (fighter->punching_arm == arm) {
    if (fighter->punch_phase == punch_half || fighter->punch_phase == punch_returning) return upper_left_1;
    if (fighter->punch_phase == punch_full) return upper_left_2;
  }
  if (fighter->flex_pose == arm || fighter->flex_pose == flex_both) return flex;
  return upper_left_0;
}

const mask<head_mask_rows> &head_mask(const fighter *fighter) {
  return fighter->knock_frames >= knocked_head_frames ? head_back : head_normal_left;
}

void draw_block(const fighter *fighter, int column, int row, const SDL_Rect &block) {
  // Both fighters draw with the same texture, so each block brings its colour along.
  SDL_SetTextureColorMod(fighter->texture->handle, fighter->color->r, fighter->color->g, fighter->color->b);
  texture_render(fighter->texture, fighter->x + block.w * column, fighter->y + block.h * row, nullptr,
                 &block);
}

// Draws the mask with its row r at fighter row first_row + r * row_step. Masks face left; a fighter that
// faces right mirrors them.
template <std::size_t rows>
void draw_mask(const fighter *fighter, const mask<rows> &mask, int first_row, int row_step, int block_w,
               int block_h) {
  const context_record *app = context_get();
  const SDL_Rect block = {0, 0, block_w == 0 ? app->unit_w : block_w, block_h == 0 ? app->unit_h : block_h};
  int row = first_row;
  for (const auto &cells : mask) {
    for (int column = 0; column < mask_columns; ++column) {
      if (!cells[static_cast<std::size_t>(column)]) continue;
      draw_block(fighter, fighter->side == side_right ? column : mask_columns - 1 - column, row, block);
    }
    row += row_step;
  }
}

}  // namespace

void fighter_render(const fighter *fighter, int block_w, int block_h) {
  fighter_draw_arm(fighter, arm_upper, block_w, block_h);
  fighter_draw_head(fighter, block_w, block_h);
  fighter_draw_arm(fighter, arm_lower, block_w, block_h);
}

void fighter_draw_head(const fighter *fighter, int block_w, int block_h) {
  draw_mask(fighter, head_mask(fighter), head_top, 1, block_w, block_h);
}

void fighter_draw_arm(const fighter *fighter, int arm, int block_w, int block_h) {
  // The lower arm is the upper one turned upside down.
  if (arm == arm_upper) {
    draw_mask(fighter, arm_mask(fighter, arm), 0, 1, block_w, block_h);
  } else {
    draw_mask(fighter, arm_mask(fighter, arm), fighter_rows - 1, -1, block_w, block_h);
  }
}
