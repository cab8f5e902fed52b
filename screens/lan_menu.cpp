#include "screens/lan_menu.h"

#include <SDL.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <utility>

#include "core/context.h"
#include "core/state_machine.h"
#include "core/utility.h"
#include "fight/preview.h"
#include "lan/message_interpreter.h"
#include "lan/messages.h"
#include "media/graphics.h"
#include "net/linked_list.h"
#include "net/net.h"
#include "net/peer_list.h"
#include "screens/menu.h"

texture lan_title;
texture lan_join;
texture lan_create;
texture lan_created;
texture lan_start_game;
texture lan_kick;
texture lan_host;
texture lan_joined;
texture lan_name;

namespace {

constexpr std::uint32_t send_period = 1000;    // ms between announcements or joined messages
constexpr int socket_patience = 1000;          // microseconds that a frame waits for the socket
constexpr std::size_t name_limit = 10;         // bytes of a user name
constexpr int room_timeout = 5000;             // ms without an announcement until a room leaves the list
constexpr std::uint32_t start_timeout = 5000;  // ms for which a guest is asked to start

constexpr const char *input_failure = "Unable to render Input texture!";

struct fixed_text {
  texture *destination;
  const char *text;
  const char *failure_line;
};
constexpr fixed_text item_texts[] = {
    {&lan_join, "Join", "Unable to render Join texture!"},
    {&lan_create, "Create", "Unable to render Create texture!"},
    {&lan_created, "ROOMS", input_failure},
    {&lan_start_game, "Start Game", input_failure},
    {&lan_kick, "Kick", input_failure},
    {&lan_host, "Host", input_failure},
    {&lan_joined, "Joined", input_failure},
};

void load_texts() {
  texture_replace_text("LAN", &lan_title, gFontBigger, text_color_dark, "Unable to load texture from text!");
  for (const fixed_text &item : item_texts) {
    texture_replace_text(item.text, item.destination, gFont, text_color_dark, item.failure_line);
  }
  lan_load_time_texture(context_get()->fight_time);
  lan_load_username_texture();
}

// Name entry

bool name_takes_text(const lan_menu_state *lobby) {
  return lobby->name_selection == entry_name && std::strlen(netInfo.username) < name_limit;
}

// Text input is on only while a name is being typed: an input method would swallow the keys of a match.
void switch_text_input(const lan_menu_state *lobby) {
  const bool on = lobby->mode == page_name_entry && name_takes_text(lobby);
  if (on == (SDL_IsTextInputActive() == SDL_TRUE)) return;
  if (on) {
    SDL_StartTextInput();
  } else {
    SDL_StopTextInput();
  }
}

bool continues_character(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80;
}

// Bytes of the UTF-8 character that `text` begins with.
std::size_t character_length(const char *text) {
  std::size_t length = 1;
  while (continues_character(text[length])) ++length;
  return length;
}

// True for U+0000 to U+001F and U+007F to U+009F.
bool is_control_character(const char *text) {
  const unsigned char first = static_cast<unsigned char>(text[0]);
  if (first == 0xC2) return static_cast<unsigned char>(text[1]) < 0xA0;
  return first < 0x20 || first == 0x7F;
}

// Appends as many whole characters as the name has room for, without those that show nothing.
void append_to_name(const char *text) {
  std::size_t length = std::strlen(netInfo.username);
  while (*text != '\0') {
    const std::size_t bytes = character_length(text);
    const bool taken = !is_control_character(text);
    if (taken && length + bytes > name_limit) break;
    if (taken) std::memcpy(netInfo.username + length, text, bytes);
    length += taken ? bytes : 0;
    text += bytes;
  }
  netInfo.username[length] = '\0';
  lan_load_username_texture();
}

// Takes away the last character, whole.
void shorten_name() {
  std::size_t length = std::strlen(netInfo.username);
  if (length == 0) return;
  do {
    --length;
  } while (length > 0 && continues_character(netInfo.username[length]));
  netInfo.username[length] = '\0';
  lan_load_username_texture();
}

bool is_blank(const char *name) {
  return name[std::strspn(name, " ")] == '\0';
}

void type_text(const lan_menu_state *lobby, const char *text) {
  const bool control_held = (SDL_GetModState() & KMOD_CTRL) != 0;  // a text event has no modifiers of its own
  const bool shortcut = control_held && text[0] != '\0' && std::strchr("cCvV", text[0]) != nullptr;
  if (name_takes_text(lobby) && !shortcut) append_to_name(text);
}

void paste_name() {
  char *text = SDL_GetClipboardText();
  if (text == nullptr) return;
  netInfo.username[0] = '\0';
  append_to_name(text);
  SDL_free(text);
}

void edit_name(SDL_Keycode key) {
  if (key == SDLK_BACKSPACE) shorten_name();
  if (key != SDLK_c && key != SDLK_v) return;
  // The event's own modifiers: Ctrl may be up again by the time that a short press is handled.
  if ((context_get()->event.key.keysym.mod & KMOD_CTRL) == 0) return;
  if (key == SDLK_c) {
    SDL_SetClipboardText(netInfo.username);
  } else {
    paste_name();
  }
}

void leave_name_entry(lan_menu_state *lobby) {
  if (!is_blank(netInfo.username)) lobby->mode = lobby->name_selection;
  // Nobody has listened so far: what has queued up tells of rooms that may be long gone.
  if (lobby->mode != page_name_entry) net_discard_pending();
  netInfo.is_host = 0;
  if (lobby->mode == page_host_room) {
    random_bytes(room_id_length, netInfo.room_id);
    netInfo.is_host = 1;
    lan_load_time_texture(context_get()->fight_time);  // the text may show another host's time
  }
}

bool handle_name_entry(lan_menu_state *lobby, SDL_Keycode key) {
  if (context_get()->event.type == SDL_TEXTINPUT) type_text(lobby, context_get()->event.text.text);
  if (lobby->name_selection == entry_name) edit_name(key);
  lobby->name_selection = move_selection(key, lobby->name_selection, entry_name, entry_create);
  if (key == SDLK_RETURN) leave_name_entry(lobby);
  if (key == SDLK_ESCAPE) context_state_machine()->next_state = screen_main_menu;
  return true;
}

// Room list

// The host's silence is timed from the last announcement that was heard.
void join_room(lan_menu_state *lobby, const room_record *room) {
  std::snprintf(netInfo.peer_ip, sizeof netInfo.peer_ip, "%s", room->ip);
  std::snprintf(netInfo.room_id, sizeof netInfo.room_id, "%s", room->room_id);
  netInfo.heartbeat = room->heartbeat;
  net_setup_p2p_struct();  // so that a player who leaves at once can say so
  std::memset(lobby->guest_name, 0, sizeof lobby->guest_name);
  lobby->mode = page_joined_room;
}

void move_cursor_down(lan_menu_state *lobby) {
  const int rooms = count_list(creatorList);
  if (lobby->room_selection < std::min(rooms, list_rows)) {
    ++lobby->room_selection;
  } else if (lobby->room_scroll < rooms - list_rows) {
    ++lobby->room_scroll;
  }
}

void move_cursor_up(lan_menu_state *lobby) {
  if (lobby->room_selection > 1) {
    --lobby->room_selection;
    return;
  }
  lobby->room_selection = 1;
  if (lobby->room_scroll > 0) --lobby->room_scroll;
}

bool handle_room_list(lan_menu_state *lobby, SDL_Keycode key) {
  if (key == SDLK_DOWN) move_cursor_down(lobby);
  if (key == SDLK_UP) move_cursor_up(lobby);
  if (key == SDLK_ESCAPE) lobby->mode = page_name_entry;
  if (key != SDLK_RETURN) return true;
  const room_record *room = find_room(creatorList, lobby->selected_room_id);
  const bool has_id = room != nullptr && room->room_id[0] != '\0';
  if (!has_id) return false;  // nobody can be told of a room without an id
  join_room(lobby, room);
  return true;
}

// Host room

void kick_guest() {
  net_setup_p2p_struct();
  messages_kick_game();
  lan_forget_peer();
}

void ask_to_start(lan_menu_state *lobby) {
  lobby->start_requested = 1;
  lobby->start_ticks = SDL_GetTicks();
}

void change_host_room(lan_menu_state *lobby) {
  switch (lobby->host_selection) {
    case host_colors:
      std::swap(netInfo.fighter1_color, netInfo.fighter2_color);
      lan_set_players_color(netInfo.fighter1_color, netInfo.fighter2_color);
      break;
    case host_time:
      context_next_fight_time();
      lan_load_time_texture(context_get()->fight_time);
      break;
    case host_start:
      if (netInfo.guest_joined != 0) ask_to_start(lobby);
      break;
    case host_kick:
      if (netInfo.guest_joined != 0) kick_guest();
      break;
    default:
      break;
  }
}

void close_room(lan_menu_state *lobby) {
  net_setup_p2p_struct();
  messages_repeat(messages_cancel_game);
  lan_forget_peer();
  net_clear_room_id();
  lobby->mode = page_name_entry;
  netInfo.is_host = 0;
}

bool handle_host_room(lan_menu_state *lobby, SDL_Keycode key) {
  lobby->host_selection = move_selection(key, lobby->host_selection, host_colors, host_kick);
  if (key == SDLK_RETURN) change_host_room(lobby);
  if (key == SDLK_ESCAPE) close_room(lobby);
  return true;
}

// Joined room

bool handle_joined_room(lan_menu_state *, SDL_Keycode key) {
  if (key == SDLK_ESCAPE) {
    messages_leave_game();
    lan_leave_host_room(netInfo.room_id);
  }
  return true;
}

// The keys of a page; false ends the frame's input, leaving later events queued. By lan_page.
using page_handler = bool (*)(lan_menu_state *lobby, SDL_Keycode key);
constexpr page_handler page_handlers[] = {handle_name_entry, handle_room_list, handle_host_room,
                                          handle_joined_room};

// Closing the window

// While a start waits for the guest, keys stay queued. The window's close does not.
bool close_was_asked_for() {
  SDL_PumpEvents();
  return SDL_PeepEvents(&context_get()->event, 1, SDL_GETEVENT, SDL_QUIT, SDL_QUIT) > 0;
}

// Whoever shares the room is told, rather than left to wait.
void tell_of_closed_window(const lan_menu_state *lobby) {
  if (lobby->mode == page_host_room) messages_repeat(messages_cancel_game);
  if (lobby->mode == page_joined_room) messages_leave_game();
}

void poll_page(lan_menu_state *lobby) {
  // A key may turn to another page; what is left of this frame's events is still this page's.
  const page_handler handle = page_handlers[lobby->mode];
  while (menu_poll_event() && handle(lobby, menu_pressed_key())) {
  }
}

// Update

void receive_one(int ready) {
  if ((ready & net_readable) == 0) return;
  char buffer[receive_buffer_size];
  const int length = net_receive_udp(buffer, sizeof buffer);
  interpret_message(buffer, length);
}

// True once a period when the socket takes a datagram.
bool send_is_due(lan_menu_state *lobby, int ready) {
  const std::uint32_t now = SDL_GetTicks();
  if ((ready & net_writable) == 0 || now - send_period < lobby->last_sent) return false;
  lobby->last_sent = now;
  return true;
}

// Gives up in time: a guest that is there but never answers must not hold the host's keys.
void request_start(lan_menu_state *lobby) {
  if (SDL_GetTicks() - lobby->start_ticks >= start_timeout) {
    lobby->start_requested = 0;
    return;
  }
  net_setup_p2p_struct();
  messages_repeat(messages_starting_game);
}

void update_host_room(lan_menu_state *lobby, int ready) {
  receive_one(ready);
  if (send_is_due(lobby, ready)) messages_game_create();
  if (net_peer_lost(SDL_GetTicks())) lan_forget_peer();
}

void update_joined_room(lan_menu_state *lobby, int ready) {
  receive_one(ready);
  if (lobby->mode != page_joined_room) return;  // sent away just now, there is nobody to answer
  if (send_is_due(lobby, ready)) {
    net_setup_p2p_struct();
    messages_joined_game();
  }
  if (net_peer_lost(SDL_GetTicks())) {
    delete_peer_from_list(&creatorList, netInfo.room_id);
    net_reset_peer_info();
    net_clear_room_id();
    lobby->mode = page_room_list;
  }
}

void update_page(lan_menu_state *lobby, int ready) {
  switch (lobby->mode) {
    case page_room_list:
      net_listen_everywhere(SDL_GetTicks());
      receive_one(ready);
      break;
    case page_host_room:
      update_host_room(lobby, ready);
      break;
    case page_joined_room:
      update_joined_room(lobby, ready);
      break;
    default:  // the name entry receives nothing
      break;
  }
}

}  // namespace

void lan_load(lan_menu_state *lobby) {
  net_reset_peer_info();
  net_clear_room_id();
  netInfo.is_host = 0;
  *lobby = {};
  lobby->last_sent = SDL_GetTicks();
  load_texts();
  preview_shrink_layout(0.5);
  preview_create({19, 0, netInfo.fighter1_color}, {77, 0, netInfo.fighter2_color});
}

void lan_load_username_texture() {
  char field[name_limit + 1] = "..........";
  const std::size_t length = std::min(std::strlen(netInfo.username), name_limit);
  std::memcpy(field + name_limit - length, netInfo.username, length);
  texture_replace_text(field, &lan_name, gFont, text_color_dark, input_failure);
}

void lan_handle_input() {
  lan_menu_state *lobby = current_lobby();
  state_object *state = context_state_machine();
  if (lobby->start_requested == 0) {
    switch_text_input(lobby);
    poll_page(lobby);
    switch_text_input(lobby);
  } else if (close_was_asked_for()) {
    state->next_state = screen_quit;
  }
  if (state->next_state == screen_quit) tell_of_closed_window(lobby);
}

void lan_update() {
  lan_menu_state *lobby = current_lobby();
  if (context_state_machine()->next_state == screen_quit) return;  // whoever has said goodbye is silent
  if (lobby->start_requested != 0) request_start(lobby);
  const int ready = net_check_descriptor(0, socket_patience, net_readable | net_writable);
  update_page(lobby, ready);
  check_hart_beat_for_list(&creatorList, SDL_GetTicks(), room_timeout);
}

void lan_unload() {
  SDL_StopTextInput();
  preview_destroy();
  preview_restore_layout();
  texture_unload(&lan_title);
  texture_unload(&lan_time);
  texture_unload(&lan_name);
  for (const fixed_text &item : item_texts) texture_unload(item.destination);
}
