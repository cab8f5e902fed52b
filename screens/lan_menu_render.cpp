// The pictures of the lobby's pages. Texts that change are rendered afresh every frame into the scratch
// texture.

#include <SDL.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstring>

#include "core/context.h"
#include "core/state_machine.h"
#include "core/window.h"
#include "fight/preview.h"
#include "media/graphics.h"
#include "media/layout.h"
#include "net/linked_list.h"
#include "net/net.h"
#include "net/peer_list.h"
#include "screens/lan_menu.h"
#include "screens/menu.h"

// Row tops in tenths of the window's height.
int menu_array[3] = {4, 5, 6};                        // name entry
float menu_array_host[4] = {5.2F, 6.5F, 7.5F, 8.5F};  // host room
int menu_array_created_games[4] = {4, 5, 6, 7};       // room list

namespace {

constexpr double host_column = 0.25;
constexpr double guest_column = 0.75;

// In the type that the array has: at some heights the last digit decides about a pixel.
template <typename number>
int row_top(number tenths) {
  return static_cast<int>(static_cast<number>(context_get()->window_height) * tenths * 0.1);
}

bool has_width(const char *text) {
  int width = 0;
  return TTF_SizeUTF8(gFont, text, &width, nullptr) != 0 || width > 0;
}

// A text of this frame only. One without width, such as a name that has not arrived yet, draws nothing.
void draw_text(const char *text, double column, int y, bool dimmed) {
  if (!has_width(text)) return;
  texture_replace_text(text, &gTemp, gFont, text_color_dark, "Unable to render Input texture!");
  if (gTemp.handle == nullptr) return;
  layout_render_dimmed(&gTemp, column, y, dimmed);
  texture_unload(&gTemp);
}

void draw_room_line() {
  char text[32];
  std::snprintf(text, sizeof text, "ROOM: %s", netInfo.room_id);
  draw_text(text, 0.5, layout_y(0.2), false);
}

void draw_players(const char *host_name, const char *guest_name, bool guest_dimmed) {
  layout_render_centered(&lan_host, host_column, layout_y(0.3));
  layout_render_centered(&lan_joined, guest_column, layout_y(0.3));
  draw_text(host_name, host_column, layout_y(0.4), false);
  draw_text(guest_name, guest_column, layout_y(0.4), guest_dimmed);
  preview_render();
  layout_render_centered(&lan_time, 0.5, row_top(menu_array_host[host_time]));
}

void render_name_entry(const lan_menu_state *lobby) {
  const bool nameless = netInfo.username[0] == '\0';
  menu_render_arrows(&lan_name, row_top(menu_array[lobby->name_selection]));
  layout_render_centered(&lan_name, 0.5, row_top(menu_array[entry_name]));
  layout_render_dimmed(&lan_join, 0.5, row_top(menu_array[entry_join]), nameless);
  layout_render_dimmed(&lan_create, 0.5, row_top(menu_array[entry_create]), nameless);
}

void render_room_list(const lan_menu_state *) {
  layout_render_centered(&lan_created, 0.5, layout_y(0.2));
  lan_render_created_games();
}

void render_host_room(const lan_menu_state *lobby) {
  const bool alone = netInfo.guest_joined != 1;
  menu_render_arrows(&lan_start_game, row_top(menu_array_host[lobby->host_selection]));
  draw_room_line();
  draw_players(netInfo.username, netInfo.guest_joined != 0 ? netInfo.peer_username : "?", alone);
  layout_render_dimmed(&lan_start_game, 0.5, row_top(menu_array_host[host_start]), alone);
  layout_render_dimmed(&lan_kick, 0.5, row_top(menu_array_host[host_kick]), alone);
}

// The guest is whom the host announces. Until it announces one, this player waits there, dimmed.
void render_joined_room(const lan_menu_state *lobby) {
  const bool announced = lobby->guest_name[0] != '\0';
  draw_room_line();
  draw_players(netInfo.peer_username, announced ? lobby->guest_name : netInfo.username, !announced);
}

// By lan_page.
constexpr void (*page_renderers[])(const lan_menu_state *lobby) = {render_name_entry, render_room_list,
                                                                   render_host_room, render_joined_room};

void draw_room(const room_record *room, int row) {
  char text[32];
  std::snprintf(text, sizeof text, "%s (%s)", room->name, room->room_id);
  draw_text(text, 0.5, row_top(menu_array_created_games[row]), false);
}

void draw_scroll_marks(int rooms, int shown_up_to) {
  if (rooms <= list_rows) return;
  if (shown_up_to > list_rows) layout_render_centered(&to_up_menu_arrow, 0.5, layout_y(0.3));
  if (shown_up_to < rooms) layout_render_centered(&to_down_menu_arrow, 0.5, layout_y(0.8));
}

void draw_cursor(int room_selection) {
  if (room_selection < 1 || room_selection > list_rows) return;
  const int left_arrow_x = static_cast<int>(context_get()->window_width * 0.9 - layout_arrow_width());
  layout_render_arrows(layout_x(0.1), left_arrow_x, row_top(menu_array_created_games[room_selection - 1]),
                       lan_created.height);
}

}  // namespace

void lan_render() {
  menu_begin_frame();
  layout_render_centered(&lan_title, 0.5, layout_y(0.05));
  const lan_menu_state *lobby = current_lobby();
  page_renderers[lobby->mode](lobby);
  SDL_RenderPresent(gRenderer);
}

void lan_render_created_games() {
  lan_menu_state *lobby = current_lobby();
  const int rooms = count_list(creatorList);
  lobby->room_scroll = std::max(std::min(lobby->room_scroll, rooms - list_rows), 0);
  const int last = lobby->room_scroll + list_rows;
  int index = 0;
  for (const list_node *node = creatorList; node != nullptr && index < last; node = node->next, ++index) {
    const int row = index - lobby->room_scroll;
    if (row < 0) continue;
    const room_record *room = get_peer_from_list(node);
    draw_room(room, row);
    if (row == lobby->room_selection - 1) {
      std::memcpy(lobby->selected_room_id, room->room_id, sizeof lobby->selected_room_id);
    }
  }
  draw_scroll_marks(rooms, index);
  draw_cursor(lobby->room_selection);
}
