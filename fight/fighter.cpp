#include "fight/fighter.h"

#include <cstdlib>

#include "core/allocation.h"
#include "core/context.h"
#include "core/utility.h"
#include "media/graphics.h"

void fighter_init(fighter *fighter, texture *texture, int unit_x, int unit_y, int side,
                  std::uint16_t color_index) {
  const context_record *app = context_get();
  *fighter = {};
  fighter->w = fighter_columns * app->unit_w;
  fighter->h = fighter_rows * app->unit_h;
  fighter_set_pos_from_unit(unit_x, unit_y, fighter);
  fighter->speed_x = fighter_step * app->unit_w;
  fighter->speed_y = fighter_step * app->unit_h;
  fighter->knock_speed_x = fighter->speed_x;
  fighter->knock_speed_y = fighter->speed_y;
  fighter->side = side;
  fighter->color = graphics_get_color(color_index);
  fighter->flex_pose = flex_none;
  fighter->texture = texture;
}

fighter *fighter_create(texture *texture, int unit_x, int unit_y, int side, std::uint16_t color_index) {
  fighter *created = allocate_record<fighter>("fighter");
  fighter_init(created, texture, unit_x, unit_y, side, color_index);
  return created;
}

void fighter_unload(fighter *fighter) {
  fighter->texture = nullptr;
}

void fighter_destroy(fighter **fighter) {
  if (*fighter == nullptr) return;
  fighter_unload(*fighter);
  std::free(*fighter);
  *fighter = nullptr;
}

void fighter_set_pos_from_unit(int unit_x, int unit_y, fighter *fighter) {
  const context_record *app = context_get();
  fighter->x = app->ring.x + app->unit_w * unit_x;
  fighter->y = app->ring.y + app->unit_h * unit_y;
}

void fighter_get_unit_from_pos(int *unit_x, int *unit_y, const fighter *fighter) {
  const context_record *app = context_get();
  *unit_x = (fighter->x - app->ring.x) / app->unit_w;
  *unit_y = (fighter->y - app->ring.y) / app->unit_h;
}

int fighter_get_collision_x(const fighter *fighter) {
  return fighter->side == side_left ? fighter->x : fighter->x + fighter_body_columns * context_get()->unit_w;
}

namespace {

SDL_Rect collision_box(const fighter *fighter) {
  const context_record *app = context_get();
  return {fighter_get_collision_x(fighter), fighter->y, fighter_body_columns * app->unit_w,
          fighter_rows * app->unit_h};
}

bool leaves_horizontally(const fighter *fighter, SDL_Rect ring) {
  const int body_right = fighter->side == side_left
                             ? fighter->x + fighter_body_columns * context_get()->unit_w
                             : fighter->x + fighter->w;
  return fighter_get_collision_x(fighter) < ring.x || body_right > ring.x + ring.w;
}

bool leaves_vertically(const fighter *fighter, SDL_Rect ring) {
  return fighter->y < ring.y || fighter->y + fighter->h > ring.y + ring.h;
}

}  // namespace

bool fighter_collision(const fighter *a, const fighter *b) {
  return check_collision(collision_box(a), collision_box(b));
}

void fighter_set_x(fighter *fighter, int dx) {
  fighter->x += dx;
}

void fighter_set_y(fighter *fighter, int dy) {
  fighter->y += dy;
}

void fighter_move(fighter *mover, const fighter *other, SDL_Rect ring) {
  const bool knocked = mover->knock_frames != 0;
  const int dx = knocked ? mover->knock_vel_x : mover->vel_x;
  const int dy = knocked ? mover->knock_vel_y : mover->vel_y;

  fighter_set_x(mover, dx);
  if (leaves_horizontally(mover, ring) || fighter_collision(mover, other)) fighter_set_x(mover, -dx);
  fighter_set_y(mover, dy);
  if (leaves_vertically(mover, ring) || fighter_collision(mover, other)) fighter_set_y(mover, -dy);
}
