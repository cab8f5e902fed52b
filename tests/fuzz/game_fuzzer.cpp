// Plays the whole game in a tiny window that nobody sees: a start, then steps, all from the input. Clocks,
// random numbers and the network are this file's own, so that an input always plays the same.

#include <SDL.h>
#include <SDL_ttf.h>

#undef NDEBUG  // whatever the build, the assertions are what is checked
#include <cassert>
#include <cstring>
#include <deque>
#include <sstream>

#include "app/application.h"
#include "app/main_loop.h"
#include "core/context.h"
#include "core/state_machine.h"
#include "core/window.h"
#include "fight/fighter.h"
#include "fight/game_state.h"
#include "lan/lan_room.h"
#include "media/graphics.h"
#include "media/sounds.h"
#include "net/linked_list.h"
#include "net/message_reader.h"
#include "net/net.h"
#include "net/net_socket.h"
#include "net/networks.h"
#include "net/peer_list.h"

#define ENDS(text) (std::memchr(text, 0, sizeof(text)) != nullptr)

struct world_record {
  const std::uint8_t *next, *end;  // what is left of the input
  int frames, draw;                // to run until the next step; the last random number
  Uint32 ticks;
  long clock;                                     // s by which the wall clock was set
  bool offline, mirrored;                         // sockets fail; the peer told its match, however odd
  std::deque<std::pair<std::string, int>> inbox;  // with the sender's number; the peer's is 0
} world;
long taken = 0;  // blocks not given back yet

constexpr struct start {
  int screen, game_mode, page, is_host, paired;
} starts[] = {{screen_main_menu, 0, 0, 0, 0}, {screen_options, 0, 0, 0, 0}, {screen_end, 0, 0, 0, 0},
              {screen_end, 2, 0, 1, 1},       {screen_game, 0, 0, 0, 0},    {screen_game, 1, 0, 0, 0},
              {screen_game, 2, 0, 1, 1},      {screen_game, 2, 0, 0, 1},    {screen_lan, 2, 0, 0, 0},
              {screen_lan, 2, 1, 0, 0},       {screen_lan, 2, 2, 1, 0},     {screen_lan, 2, 2, 1, 1},
              {screen_lan, 2, 3, 0, 1}};
constexpr SDL_Keycode keys[] = {SDLK_LEFT,   SDLK_RIGHT,  SDLK_UP,        SDLK_DOWN, SDLK_SPACE, SDLK_TAB,
                                SDLK_RETURN, SDLK_ESCAPE, SDLK_BACKSPACE, SDLK_a,    SDLK_d,     SDLK_w,
                                SDLK_s,      SDLK_c,      SDLK_v,         SDLK_x};
// The nine messages; R is a room id, # a counter that is news.
constexpr const char *messages[] = {"a R host me 120 1 2",
                                    "b R peer",
                                    "c R 2 1",
                                    "d R peer",
                                    "e R # 10 10 0 0 0 0 0 3 0 86 54 1 0 0 0 0 3 0 100 0",
                                    "f R # 4 0 1 0",
                                    "g R peer",
                                    "h R peer",
                                    "i R peer"};

int take() {
  return world.next == world.end ? 0 : *world.next++;
}
bool within(int value, int least, int most) {
  return value >= least && value <= most;
}

std::string take_text(int most) {
  std::string text;
  for (int left = take() % most; left > 0; --left) text += static_cast<char>(take());
  return text;
}

// A message with the value of one token, if there is such a token, replaced by the input's.
std::string compose(int letter, int room, int changed) {
  const int value = take();
  std::istringstream words(messages[letter] + 1);
  std::string text(messages[letter], 1), word;
  for (int token = 1; words >> word; ++token) {
    if (word == "#") word = std::to_string(netInfo.received_msg_number + 1);
    if (word == "R") word = room == 0 ? netInfo.room_id : "ROOM000" + std::to_string(room);
    if (token == changed) word = std::to_string(value < 64 ? 1L << value : value % 32 - 8L);
    text += (token > 1 ? " " : "") + std::to_string(word.size()) + " " + word;
  }
  return text;
}

// A key; or a text, and the window's close for an empty one.
void push_event(int code) {
  SDL_Event event = {};
  event.type = (code & 16) == 0 ? SDL_KEYDOWN : SDL_KEYUP;
  event.key.repeat = (code & 32) != 0;
  event.key.keysym.sym = keys[code & 15];
  SDL_SetModState((code & 64) != 0 ? KMOD_CTRL : KMOD_NONE);
  if ((code & 128) != 0) event.type = SDL_TEXTINPUT;
  if ((code & 128) != 0 && take_text(32).copy(event.text.text, 31) == 0) event.type = SDL_QUIT;
  SDL_PushEvent(&event);
}

void check_fighter(const fighter *fighter, const struct fighter *other) {
  assert(within(fighter->punch_phase, 0, 6) && within(fighter->score, 0, world.mirrored ? 9999 : 102));
  if (world.mirrored) return;
  const int left = fighter_get_collision_x(fighter) - context.ring.x;
  assert(!fighter_collision(fighter, other) && within(left, 0, context.ring.w - fighter->w / 2));
  assert(within(fighter->y - context.ring.y, 0, context.ring.h - fighter->h));
}

void check_frame() {
  const state_object *state = context.state_machine;
  assert(gTemp.handle == nullptr && count_list(creatorList) <= 160 && ENDS(netInfo.room_id));
  assert(state->screen != nullptr && ENDS(netInfo.username) && ENDS(netInfo.peer_username));
  if (state->current_state == screen_lan) {
    const lan_menu_state *lobby = static_cast<lan_menu_state *>(state->screen);
    const bool host = lobby->mode == page_host_room;
    assert(within(lobby->room_selection, 0, 4) && within(lobby->room_scroll, 0, 156));
    assert(within(lobby->mode, 0, 3) && ENDS(lobby->selected_room_id) && (netInfo.is_host == 1) == host);
    assert(netInfo.guest_joined == 0 ? lobby->start_requested == 0 : host && netInfo.peer_ip[0] != 0);
    assert((lobby->mode != page_joined_room && !host) || netInfo.room_id[0] != 0);
  } else if (state->current_state == screen_game) {
    const game_state *game = static_cast<game_state *>(state->screen);
    check_fighter(game->fighter1, game->fighter2);
    check_fighter(game->fighter2, game->fighter1);
  }
}

// Takes the steps until a frame is due; when there are no more, the player leaves.
void play() {
  while (world.frames == 0 && world.next != world.end) {
    const int kind = *world.next % 8;
    const int detail = take() / 8;
    if (kind == 0) world.frames = 1 + detail / 16 * 2;
    if (kind == 1) push_event(take());
    if (kind / 2 == 1) world.inbox.push_back({compose(detail % 9, detail / 9, take() % 23), take() % 8});
    if (kind == 4) world.inbox.push_back({take_text(160), detail % 8});
    if (kind == 5) world.ticks += static_cast<Uint32>(detail * 200);
    if (kind >= 6) world.offline = detail == 1, world.clock += (detail - 16) * 10L;
  }
  if (--world.frames < 0) context.state_machine->next_state = screen_quit;
}

// The game's own messages must be ones that it takes in.
int socket_send(socket_handle, const char *bytes, int count, const sockaddr_in &) {
  message message;
  assert(count == datagram_size && bytes[count - 1] == '\0' && message_read(bytes, &message));
  return world.offline ? -1 : count;
}

int socket_receive(socket_handle, char *bytes, int most, sockaddr_in *from, socket_length *) {
  if (world.offline || world.inbox.empty()) return -1;
  const auto [text, sender] = world.inbox.front();
  world.inbox.pop_front();
  world.mirrored |= text[0] == 'e';
  from->sin_addr.s_addr = htonl(0x0A000001U + static_cast<unsigned>(sender));
  return static_cast<int>(text.copy(bytes, static_cast<std::size_t>(most)));
}

int socket_wait(socket_handle, int sets, int, int microseconds) {
  const int ready = sets & (world.inbox.empty() ? socket_writable : socket_writable | socket_readable);
  if (ready == 0) world.ticks += static_cast<Uint32>(microseconds / 1000);
  return world.offline ? -1 : ready;
}

bool socket_peek(socket_handle, sockaddr_in *from) {
  from->sin_addr.s_addr = htonl(0x0A000001U + static_cast<unsigned>(world.inbox.front().second));
  return true;
}

bool socket_start() {
  return true;
}
int socket_last_error() {
  return 0;
}
socket_handle socket_open() {
  return 1;
}
int socket_close(socket_handle) {
  return 0;
}
bool socket_set_option(socket_handle, int, int, int) {
  return true;
}
bool socket_join_group(socket_handle, in_addr, std::uint32_t) {
  return true;
}
std::span<const local_network> networks_find(std::uint32_t, local_network (&)[network_limit]) {
  return {};
}
bool socket_bind(socket_handle, const sockaddr_in &) {
  return true;
}

extern "C" {
void *__real_calloc(std::size_t, std::size_t), __real_free(void *);
void *__wrap_calloc(std::size_t count, std::size_t size) {
  return ++taken, __real_calloc(count, size);
}
void __wrap_free(void *block) {
  taken -= block != nullptr, __real_free(block);
}
int __wrap_rand() {
  return world.draw = (world.draw * 171 + 11213) % 53125;
}
long __wrap_time(long *) {
  return 1000000 + world.clock + static_cast<long>(world.ticks / 1000);
}
Uint32 __wrap_SDL_GetTicks() {
  return world.ticks;
}
void __wrap_SDL_Delay(Uint32 milliseconds) {
  world.ticks += milliseconds, check_frame(), play();
}
const char *__asan_default_options() {
  return "detect_leaks=0:quarantine_size_mb=1:malloc_context_size=3";
}

int LLVMFuzzerInitialize(int *, char ***) {
  for (const char *name : {"SDL_VIDEODRIVER", "SDL_AUDIODRIVER"}) setenv(name, "dummy", 1);
  setenv("SDL_RENDER_DRIVER", "software", 1);
  setenv("SDL_NO_SIGNAL_HANDLERS", "1", 1);
  screen_width = screen_height = 20;
  assert(std::freopen("/dev/null", "w", stdout) != nullptr && init() && context_init() && graphics_load() &&
         sounds_load());
  context_teardown();
  return 0;
}

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const long before = taken;
  context = {};
  world = {data, data + size, 0, 1, 1, 0, false, false, {}};
  SDL_SetClipboardText("");
  SDL_FlushEvents(SDL_FIRSTEVENT, SDL_LASTEVENT);
  context_init();
  const start &start = starts[static_cast<std::size_t>(take()) % std::size(starts)];
  state_object *state = context.state_machine;
  context.game_mode = static_cast<std::uint8_t>(start.game_mode);
  state->next_state = start.screen == screen_end ? int{screen_game} : start.screen;
  state_change(state);
  std::strcpy(netInfo.room_id, start.is_host + start.paired > 0 ? "ROOM0001" : "");
  std::strcpy(netInfo.peer_ip, start.paired == 1 ? "10.0.0.1" : "");
  netInfo.is_host = static_cast<std::uint8_t>(start.is_host);
  netInfo.guest_joined = static_cast<std::uint8_t>(start.is_host * start.paired);
  net_setup_p2p_struct();
  if (start.screen == screen_lan) static_cast<lan_menu_state *>(state->screen)->mode = start.page;
  if (start.screen == screen_end) state->next_state = screen_end;
  context_loop();
  context_teardown();
  delete_list(&creatorList);
  assert(taken == before);
  return 0;
}
}
