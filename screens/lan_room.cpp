#include "screens/lan_room.h"

#include <cstdio>

#include "app/context.h"
#include "app/state_machine.h"
#include "app/utility.h"
#include "fight/fighter.h"
#include "media/graphics.h"
#include "net/net.h"
#include "screens/preview.h"

texture lan_time;

namespace {

lan_menu_state *current_lobby() {
  return static_cast<lan_menu_state *>(context_state_machine()->screen);
}

}  // namespace

void lan_load_time_texture(int seconds) {
  char time[20];
  char text[32];
  seconds_to_time(seconds, time);
  std::snprintf(text, sizeof text, "Time: %s", time);
  texture_replace_text(text, &lan_time, gFont, text_color_dark, "Unable to render Input texture!");
}

void lan_set_players_color(std::uint16_t color_id1, std::uint16_t color_id2) {
  fighter1->color = graphics_get_color(color_id1);
  fighter2->color = graphics_get_color(color_id2);
}

void lan_leave_host_room(const char *room_id) {
  if (netInfo.is_host == 1 || net_room_ids_match(netInfo.room_id, room_id) == 0) return;
  net_reset_peer_info();
  net_clear_room_id();
  current_lobby()->mode = page_room_list;
}

void lan_forget_peer() {
  net_reset_peer_info();
  current_lobby()->start_requested = 0;
}
