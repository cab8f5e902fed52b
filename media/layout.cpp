#include "media/layout.h"

#include "core/context.h"
#include "core/window.h"
#include "media/graphics.h"

namespace {

constexpr Uint8 dimmed_alpha = 75;

}  // namespace

int layout_x(double fraction) {
  return static_cast<int>(context_get()->window_width * fraction);
}

int layout_y(double fraction) {
  return static_cast<int>(context_get()->window_height * fraction);
}

void layout_fill_window(const SDL_Color &color) {
  SDL_RenderClear(gRenderer);
  layout_fill({0, 0, context_get()->window_width, context_get()->window_height}, color);
}

void layout_fill(const SDL_Rect &area, const SDL_Color &color) {
  SDL_SetRenderDrawColor(gRenderer, color.r, color.g, color.b, color.a);
  SDL_RenderFillRect(gRenderer, &area);
}

void layout_render_centered(const texture *texture, double fraction, int y) {
  const int x = static_cast<int>(context_get()->window_width * fraction - texture->width * 0.5);
  texture_render(texture, x, y, nullptr, nullptr);
}

void layout_render_dimmed(const texture *texture, double fraction, int y, bool dimmed) {
  if (dimmed) SDL_SetTextureAlphaMod(texture->handle, dimmed_alpha);
  layout_render_centered(texture, fraction, y);
  if (dimmed) SDL_SetTextureAlphaMod(texture->handle, 255);
}

int layout_arrow_width() {
  return layout_x(0.05);
}

void layout_render_arrows(int right_arrow_x, int left_arrow_x, int y, int height) {
  const SDL_Rect size = {0, 0, layout_arrow_width(), height};
  texture_render(&to_right_menu_arrow, right_arrow_x, y, nullptr, &size);
  texture_render(&to_left_menu_arrow, left_arrow_x, y, nullptr, &size);
}
