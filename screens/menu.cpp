#include "screens/menu.h"

#include <initializer_list>

#include "core/context.h"
#include "core/state_machine.h"
#include "core/utility.h"
#include "media/graphics.h"
#include "media/layout.h"

bool menu_poll_event() {
  SDL_Event &event = context_get()->event;
  if (SDL_PollEvent(&event) == 0) return false;
  if (event.type != SDL_QUIT) return true;
  context_state_machine()->next_state = screen_quit;
  return false;
}

SDL_Keycode menu_pressed_key() {
  const SDL_Event &event = context_get()->event;
  if (event.type != SDL_KEYDOWN || event.key.repeat != 0) return SDLK_UNKNOWN;
  return plain_key(event.key.keysym);
}

void menu_begin_frame() {
  layout_fill_window(bg_color_menus);
}

void menu_render_arrows(const texture *reference, int y) {
  const int item_left = (context_get()->window_width - reference->width) / 2;
  const int item_right = item_left + reference->width;
  const int arrow = layout_arrow_width();
  layout_render_arrows(static_cast<int>(item_left - arrow * 1.5), static_cast<int>(item_right + arrow * 0.5),
                       y, reference->height);
}

void menu_load_item(const char *label, texture *item, bool selected) {
  texture_replace_text(label, item, gFont, selected ? text_color_red : text_color_dark,
                       "Unable to load texture from text!");
}

void menu_recolor_items(int from, int to, void (*unload_item)(int index),
                        void (*load_item)(int index, int selected)) {
  if (from == to) return;
  for (const int row : {to, from}) {
    unload_item(row - 1);
    load_item(row - 1, to);
  }
}
