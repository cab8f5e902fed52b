#include "fight/preview.h"

#include <algorithm>

#include "core/context.h"
#include "fight/fighter.h"
#include "media/graphics.h"
#include "media/layout.h"

fighter *fighter1 = nullptr;
fighter *fighter2 = nullptr;

void preview_create(const preview_place &place1, const preview_place &place2) {
  fighter1 = fighter_create(&commet_texture, place1.unit_x, place1.unit_y, side_left, place1.color);
  fighter2 = fighter_create(&commet_texture, place2.unit_x, place2.unit_y, side_right, place2.color);
}

void preview_destroy() {
  fighter_destroy(&fighter1);
  fighter_destroy(&fighter2);
}

void preview_render() {
  fighter_render(fighter1, 0, 0);
  fighter_render(fighter2, 0, 0);
}

void preview_shrink_layout(double row) {
  context_record *app = context_get();
  app->unit_w = std::max(app->window_height / 300, 1);
  app->unit_h = app->unit_w;
  context_calc_ring();
  app->ring.y = layout_y(row);
  app->ring.h = fighter_rows * app->unit_h;
}

void preview_restore_layout() {
  context_calc_units();
  context_calc_ring();
}
