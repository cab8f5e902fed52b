#include "screens/main_menu.h"

#include <SDL.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <string_view>

#include "core/context.h"
#include "core/state_machine.h"
#include "core/utility.h"
#include "core/version.h"
#include "core/window.h"
#include "media/graphics.h"
#include "media/layout.h"
#include "net/net.h"
#include "screens/menu.h"

namespace {

constexpr SDL_Color title_shadow_color = {0, 59, 30, 155};

// The four title textures in drawing order, so that each word covers its shadow.
struct title_piece {
  const char *text;
  SDL_Color color;
  double column;  // of the window's width, its centre
  double row;     // of the window's height, its top
};
constexpr title_piece title_pieces[4] = {
    {"Vantaro", title_shadow_color, 0.505, 0.105},
    {"Pugnado", title_shadow_color, 0.505, 0.205},
    {"Vantaro", text_color_dark, 0.5, 0.1},
    {"Pugnado", text_color_dark, 0.5, 0.2},
};

// What Return does on an item.
struct item {
  const char *label;
  int game_mode;  // chosen before the screen opens; no_mode leaves it
  int screen;     // a screen_id
};
constexpr int no_mode = -1;
constexpr item items[main_menu_item_count] = {
    {"1 Player", mode_one_player, screen_game},
    {"2 Player", mode_two_players, screen_game},
    {"LAN", mode_lan, screen_lan},
    {"Options", no_mode, screen_options},
    {"Exit", no_mode, screen_quit},
};
static_assert(std::ranges::all_of(items, [](const item &item) {
  return std::string_view(item.label).size() < sizeof main_menu_screen::labels[0];
}));

void load_title(main_menu_screen *menu) {
  for (int i = 0; i < 4; ++i) {
    menu->titles[i] = texture_create();
    texture_replace_text(title_pieces[i].text, menu->titles[i], gFontBigger, title_pieces[i].color,
                         "Unable to render title texture!");
  }
}

void load_version(main_menu_screen *menu) {
  char text[32];
  std::snprintf(text, sizeof text, "Version: %s", menu_version);
  menu->version = texture_create();
  texture_replace_text(text, menu->version, gFontSmaller, text_color_dark,
                       "Unable to load texture from text!");
}

void activate(const item &item) {
  if (item.game_mode != no_mode) context_get()->game_mode = static_cast<std::uint8_t>(item.game_mode);
  context_state_machine()->next_state = item.screen;
}

}  // namespace

void main_menu_load(main_menu_screen *menu) {
  netInfo.is_host = 0;  // whoever is back here hosts no room any more
  menu->selected = 1;
  load_title(menu);
  for (int i = 0; i < main_menu_item_count; ++i) {
    std::snprintf(menu->labels[i], sizeof menu->labels[i], "%s", items[i].label);
  }
  for (int i = 0; i < main_menu_item_count; ++i) {
    menu->items[i] = texture_create();
    main_menu_load_menu_element(i, menu->selected);
  }
  load_version(menu);
}

void main_menu_handle_input() {
  main_menu_screen *menu = current_main_menu();
  while (menu_poll_event()) {
    const SDL_Keycode key = menu_pressed_key();
    const int old = menu->selected;
    menu->selected = move_selection(key, old, 1, main_menu_item_count);
    menu_recolor_items(old, menu->selected, main_menu_unload_menu_element, main_menu_load_menu_element);
    if (key == SDLK_RETURN) activate(items[menu->selected - 1]);
  }
}

void main_menu_update() {}

void main_menu_render() {
  menu_begin_frame();
  main_menu_render_title();
  main_menu_render_menu();
  const texture *version = current_main_menu()->version;
  const double height = context_get()->window_height;
  texture_render(version, layout_y(0.02), static_cast<int>(height * 0.98 - version->height), nullptr,
                 nullptr);
  SDL_RenderPresent(gRenderer);
}

void main_menu_unload() {
  main_menu_screen *menu = current_main_menu();
  for (texture *&item : menu->items) texture_destroy(&item);
  for (texture *&title : menu->titles) texture_destroy(&title);
  texture_destroy(&menu->version);
}

void main_menu_render_title() {
  for (int i = 0; i < 4; ++i) {
    layout_render_centered(current_main_menu()->titles[i], title_pieces[i].column,
                           layout_y(title_pieces[i].row));
  }
}

void main_menu_render_menu() {
  const main_menu_screen *menu = current_main_menu();
  menu_render_arrows(menu->items[0], layout_y((menu->selected - 1) * 0.1 + 0.4));
  for (int i = 0; i < main_menu_item_count; ++i) {
    layout_render_centered(menu->items[i], 0.5, layout_y((i + 4) * 0.1));
  }
}

void main_menu_load_menu_element(int index, int selected) {
  main_menu_screen *menu = current_main_menu();
  menu_load_item(menu->labels[index], menu->items[index], index + 1 == selected);
}

void main_menu_unload_menu_element(int index) {
  texture_unload(current_main_menu()->items[index]);
}
