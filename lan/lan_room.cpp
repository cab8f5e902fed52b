#include "lan/lan_room.h"

#include <cstdio>

#include "core/context.h"
#include "core/state_machine.h"
#include "core/utility.h"
#include "fight/fighter.h"
#include "fight/preview.h"
#include "media/graphics.h"
#include "net/net.h"

texture lan_time;

void lan_load_time_texture(int seconds) {
  char text[time_label_size];
  texture_replace_text(time_label(seconds, text), &lan_time, gFont, text_color_dark,
                       "Unable to render Input texture!");
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
