#include "lan/message_interpreter.h"

#include <SDL.h>

#include <cstdint>
#include <cstdio>
#include <cstring>

#include "core/context.h"
#include "core/state_machine.h"
#include "fight/fighter.h"
#include "fight/game_state.h"
#include "lan/lan_room.h"
#include "lan/messages.h"
#include "media/sounds.h"
#include "net/linked_list.h"
#include "net/message_reader.h"
#include "net/net.h"
#include "net/peer_list.h"

namespace {

bool showing(int screen) {
  return context_state_machine()->current_state == screen;
}

bool room_matches(const message &message) {
  return net_room_ids_match(message.room_id, netInfo.room_id) != 0;
}

// Cut to the destination, which is cleared first.
template <std::size_t size>
void copy_text(char (&destination)[size], const char *text) {
  std::memset(destination, 0, size);
  std::snprintf(destination, size, "%s", text);
}

// The settings of the room that this guest has joined, as its host announces them. Whom the host takes for
// its guest is shown but changes no name here: the host may not have heard of this player yet, or know
// another.
void follow_host(const message &message) {
  copy_text(netInfo.peer_username, message.room.name);
  copy_text(current_lobby()->guest_name, message.room.guest_name);
  netInfo.fight_time = message.room.fight_time;
  lan_load_time_texture(netInfo.fight_time);
  if (message.room.fighter1_color != netInfo.fighter1_color) {
    netInfo.fighter1_color = message.room.fighter1_color;
    netInfo.fighter2_color = message.room.fighter2_color;
    lan_set_players_color(netInfo.fighter1_color, netInfo.fighter2_color);
  }
  net_peer_heard(SDL_GetTicks());
}

// A room is listed by the way it was heard first, also when the host is heard on several networks. The list
// reads the text once more, since it believes numbers of nine digits at most.
void list_room(const message &message, const char *text) {
  if (update_peer_heartbeat(SDL_GetTicks(), message.room_id, creatorList) == 1) return;
  char sender[16];
  copy_text(sender, net_get_sender_ip());
  update_peer_list(text, sender, message.room_id, &creatorList);
  update_peer_heartbeat(SDL_GetTicks(), message.room_id, creatorList);
}

void apply_announcement(const message &message, const char *text) {
  list_room(message, text);
  if (room_matches(message)) follow_host(message);
}

// The first to come is the guest, whatever room it names; from then on only the guest is listened to.
void apply_joined(const message &message, const char *) {
  if (netInfo.guest_joined != 1) {
    copy_text(netInfo.peer_username, message.name);
    copy_text(netInfo.peer_ip, net_get_sender_ip());
    net_peer_heard(SDL_GetTicks());
    netInfo.guest_joined = 1;
  } else if (room_matches(message) && net_sender_is_peer()) {
    net_peer_heard(SDL_GetTicks());
  }
}

// A start may come before the first announcement since joining; the list of rooms knows the host, too.
void learn_host_name() {
  const room_record *room = find_room(creatorList, netInfo.room_id);
  if (room != nullptr) copy_text(netInfo.peer_username, room->name);
}

void apply_start(const message &message, const char *) {
  if (netInfo.peer_username[0] == '\0') learn_host_name();
  netInfo.fighter1_color = message.fighter1_color;
  netInfo.fighter2_color = message.fighter2_color;
  net_setup_p2p_struct();
  messages_starting_game_ack();
  context_state_machine()->next_state = screen_game;
  net_peer_heard(SDL_GetTicks());
}

void apply_start_ack(const message &, const char *) {
  context_state_machine()->next_state = screen_game;
  current_lobby()->start_requested = 0;
  net_peer_heard(SDL_GetTicks());
}

// Drops what is older than, or as old as, what was accepted last.
bool is_news(const message &message) {
  const std::uint32_t counter = static_cast<std::uint32_t>(message.counter);
  if (netInfo.received_msg_number >= counter) return false;
  netInfo.received_msg_number = counter;
  return true;
}

// A pause crosses over mirrored. One made on this machine is never lifted by the peer. Messages are taken in
// in their order, so a peer that holds itself paused by this machine, after it had paused, has itself
// resumed: otherwise two that resume at once would wait for each other for good.
void follow_pause(game_state *game, int peer_paused) {
  const bool resumed = peer_paused == pause_none || peer_paused == pause_by_peer;
  if (game->paused == pause_none && peer_paused == pause_local) {
    game->paused = pause_by_peer;
  } else if (game->paused == pause_by_peer && resumed) {
    game->paused = pause_none;
  }
}

void follow_peer(game_state *game, const message &message) {
  follow_pause(game, message.paused);
  game->peer_silent = 0;
  net_peer_heard(SDL_GetTicks());
}

void follow_fighter(fighter *fighter, const fighter_report &report) {
  fighter_set_pos_from_unit(report.unit_x, report.unit_y, fighter);
  fighter->side = report.side;
  fighter->punch_phase = report.punch_phase;
  fighter->punching_arm = report.punching_arm;
  fighter->punch_frames = report.punch_frames;
  fighter->knock_frames = report.knock_frames;
  fighter->flex_pose = report.flex_pose;
  fighter->score = report.score;
}

// A punch that ends without having met anybody; `before` is the one who punches.
bool misses(const fighter &before, const fighter_report &after, const fighter &other_before,
            const fighter_report &other_after) {
  const bool extended = before.punch_phase >= punch_started && before.punch_phase <= punch_full;
  return extended && after.punch_phase >= punch_returning && other_before.knock_frames == 0 &&
         other_after.knock_frames == 0;
}

// The guest runs no punches, so it hears them by what the host's state changes.
void sound_changes(const game_state &game, const message &message) {
  const fighter &first = *game.fighter1;
  const fighter &second = *game.fighter2;
  if (message.fighter1.knock_frames > first.knock_frames) sounds_play(gPunchHit);
  if (message.fighter2.knock_frames > second.knock_frames) sounds_play(gPunchHit);
  if (misses(first, message.fighter1, second, message.fighter2)) sounds_play(gPunch);
  if (misses(second, message.fighter2, first, message.fighter1)) sounds_play(gPunch);
}

void apply_game_state(const message &message, const char *) {
  if (!is_news(message)) return;
  game_state *game = current_game();
  sound_changes(*game, message);
  follow_fighter(game->fighter1, message.fighter1);
  follow_fighter(game->fighter2, message.fighter2);
  game->time_left = message.time_left;
  game->punch_unheard = false;
  follow_peer(game, message);
}

// -1, 0 or 1.
int sign(int value) {
  if (value == 0) return 0;
  return value < 0 ? -1 : 1;
}

void apply_key_press(const message &message, const char *) {
  if (!is_news(message)) return;
  game_state *game = current_game();
  // The peer's pixels are those of its own window; what counts is where to, in this window's steps.
  game->fighter2->vel_x = sign(message.vel_x) * game->fighter2->speed_x;
  game->fighter2->vel_y = sign(message.vel_y) * game->fighter2->speed_y;
  if (game->fighter2->punch_phase == punch_none && message.punch_phase == punch_started) {
    game->fighter2->punch_phase = punch_started;
  }
  follow_peer(game, message);
}

void apply_kick(const message &message, const char *) {
  lan_leave_host_room(message.room_id);
}

void apply_cancel(const message &message, const char *) {
  delete_peer_from_list(&creatorList, message.room_id);
  lan_leave_host_room(message.room_id);
}

void apply_leave(const message &, const char *) {
  if (showing(screen_lan)) {
    lan_forget_peer();
    return;
  }
  const bool decided = current_game()->fighting == 0;
  net_reset_peer_info();
  if (decided)
    net_peer_heard(SDL_GetTicks());  // the end screen shows the result, whoever leaves after the bell
  if (context_is_lan()) context_state_machine()->next_state = screen_end;
}

// When a message is taken in.
enum wanted_screen : int { lobby, match, lobby_or_match };
enum wanted_role : int { any_role, host_of_room, host_of_none, waiting_for_start };
enum wanted_sender : int { anyone, peer };
enum wanted_room : int { any_room, own_room, own_room_text };  // the latter by comparing texts alone
struct handler {
  char letter;
  wanted_screen screen;
  wanted_role role;
  wanted_sender sender;
  wanted_room room;
  void (*apply)(const message &message, const char *text);
};
constexpr handler handlers[] = {
    {message_game_create, lobby, host_of_none, anyone, any_room, apply_announcement},
    {message_joined_game, lobby, host_of_room, anyone, any_room, apply_joined},
    {message_starting_game, lobby, any_role, peer, own_room, apply_start},
    {message_starting_game_ack, lobby, waiting_for_start, peer, own_room, apply_start_ack},
    {message_key_press, lobby, waiting_for_start, peer, own_room,
     apply_start_ack},  // it plays: the ack was lost
    {message_game_state, match, any_role, peer, own_room, apply_game_state},
    {message_key_press, match, any_role, peer, own_room_text, apply_key_press},
    {message_kick_game, lobby, host_of_none, peer, any_room, apply_kick},
    {message_cancel_game, lobby, any_role, anyone, any_room, apply_cancel},
    {message_leave_game, lobby_or_match, any_role, peer, own_room, apply_leave},
};

bool screen_fits(wanted_screen wanted) {
  return (wanted != match && showing(screen_lan)) || (wanted != lobby && showing(screen_game));
}

bool role_fits(wanted_role wanted) {
  switch (wanted) {
    case host_of_room:
      return netInfo.is_host == 1;
    case host_of_none:
      return netInfo.is_host == 0;
    case waiting_for_start:
      return current_lobby()->start_requested == 1;
    default:
      return true;
  }
}

bool room_fits(wanted_room wanted, const message &message) {
  if (wanted == own_room) return room_matches(message);
  return wanted == any_room || std::strcmp(message.room_id, netInfo.room_id) == 0;
}

void take_in(const handler &handler, const char *text) {
  if (!screen_fits(handler.screen) || !role_fits(handler.role)) return;
  if (handler.sender == peer && !net_sender_is_peer()) return;
  message message = {};
  if (message_read(text, &message) && room_fits(handler.room, message)) handler.apply(message, text);
}

}  // namespace

void interpret_message(const char *text, [[maybe_unused]] int length) {
  for (const handler &handler : handlers) {
    if (handler.letter == text[0]) take_in(handler, text);
  }
}
