// Plays the whole game in a tiny window that nobody sees: a start, then steps, all from the input. Clocks,
// random numbers and the network are the tests' own, so that an input always plays the same.

#undef NDEBUG  // whatever the build, the assertions are what is checked
#include <cassert>
#include <cstring>
#include <sstream>

#include "app/main_loop.h"
#include "lan/lan_room.h"
#include "media/graphics.h"
#include "media/sounds.h"
#include "net/linked_list.h"
#include "net/message_reader.h"
#include "net/net.h"
#include "net/peer_list.h"
#include "tests/support/network.h"
#include "tests/support/stage.h"

#define ENDS(text) (std::memchr(text, 0, sizeof(text)) != nullptr)

const std::uint8_t *next_byte, *end_of_input;
int frames;     // to run until the next step
long clock_by;  // s by which the wall clock was set

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
// Every message; R is a room id, # a counter that is news.
constexpr const char *whole_match = "e R # 10 10 0 0 0 0 0 3 0 86 54 1 0 0 0 0 3 0 100 0";
constexpr const char *messages[] = {"a R host me 120 1 2", "b R peer", "c R 2 1",  "d R peer", whole_match,
                                    "f R # 4 0 1 0",       "g R peer", "h R peer", "i R peer"};

int take() {
  return next_byte == end_of_input ? 0 : *next_byte++;
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

void check_frame() {
  const state_object *state = context.state_machine;
  assert(gTemp.handle == nullptr && count_list(creatorList) <= 160 && ENDS(netInfo.room_id));
  assert(state->screen != nullptr && ENDS(netInfo.username) && ENDS(netInfo.peer_username));
  if (state->current_state == screen_lan) {
    const lan_menu_state *lobby = current_lobby();
    const bool host = lobby->mode == page_host_room;
    assert(within(lobby->room_selection, 0, 4) && within(lobby->room_scroll, 0, 156));
    assert(within(lobby->mode, 0, 3) && ENDS(lobby->selected_room_id) && (netInfo.is_host == 1) == host);
    assert(netInfo.guest_joined == 0 ? lobby->start_requested == 0 : host && netInfo.peer_ip[0] != 0);
    assert((lobby->mode != page_joined_room && !host) || netInfo.room_id[0] != 0);
  }
}

// The game's own messages must be ones that it takes in.
void check_sent() {
  for (const datagram &own : network.sent) {
    message message;
    assert(own.bytes.size() == datagram_size && own.bytes.back() == '\0' &&
           message_read(own.bytes.data(), &message));
  }
  network.sent.clear();
}

void arrive(const std::string &text, int sender) {
  const std::vector exact(text.c_str(), text.c_str() + std::strlen(text.c_str()) + 1);
  message message;
  message_read(exact.data(), &message);  // beyond whose end nothing can be read unseen
  network.inbox.push_back({"10.0.0." + std::to_string(sender + 1), text});
}

// Takes the steps until a frame is due; when there are no more, the player leaves.
void play() {
  while (frames == 0 && next_byte != end_of_input) {
    const int kind = *next_byte % 8, detail = take() / 8, count = std::size(messages);
    if (kind == 0) frames = 1 + detail / 16 * 2;
    if (kind == 1) push_event(take());
    if (kind / 2 == 1) {
      const std::string text = compose(detail % count, detail / count, take() % 23);
      arrive(text, take() % 8);
    }
    if (kind == 4) arrive(take_text(160), detail % 8);
    if (kind == 5) world.ticks += static_cast<Uint32>(detail * 200);
    if (kind >= 6) network.fails.clear();
    if (kind >= 6 && detail == 1) network.fails = {"send", "receive", "wait"};
    if (kind >= 6) clock_by += (detail - 16) * 10L;
  }
  world.seconds = 1000000 + clock_by + world.ticks / 1000;
  if (--frames < 0) context.state_machine->next_state = screen_quit;
}

extern "C" {
const char *__asan_default_options() {
  return "detect_leaks=0:quarantine_size_mb=1:malloc_context_size=3";
}

int LLVMFuzzerInitialize(int *, char ***) {
  setenv("SDL_NO_SIGNAL_HANDLERS", "1", 1);
  assert(std::freopen("/dev/null", "w", stdout) != nullptr);
  new open_game(20, 20);     // for as long as the process lasts
  assert(gBell != nullptr);  // the last that is loaded
  context_teardown();
  return 0;
}

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  static std::mt19937 dice;
  dice.seed(1);
  context = {};
  network = {};
  world = {
      .ticks = 1, .seconds = 1000000, .dice = &dice, .on_delay = [] { check_frame(), check_sent(), play(); }};
  next_byte = data;
  end_of_input = data + size;
  clock_by = frames = 0;
  SDL_SetClipboardText("");
  SDL_FlushEvents(SDL_FIRSTEVENT, SDL_LASTEVENT);
  context_init();
  const start &start = starts[static_cast<std::size_t>(take()) % std::size(starts)];
  context.game_mode = static_cast<std::uint8_t>(start.game_mode);
  enter(start.screen == screen_end ? int{screen_game} : start.screen);
  std::strcpy(netInfo.room_id, start.is_host + start.paired > 0 ? "ROOM0001" : "");
  std::strcpy(netInfo.peer_ip, start.paired == 1 ? "10.0.0.1" : "");
  netInfo.is_host = static_cast<std::uint8_t>(start.is_host);
  netInfo.guest_joined = static_cast<std::uint8_t>(start.is_host * start.paired);
  net_setup_p2p_struct();
  if (start.screen == screen_lan) current_lobby()->mode = start.page;
  if (start.screen == screen_end) context.state_machine->next_state = screen_end;
  context_loop();
  context_teardown();
  delete_list(&creatorList);
  check_sent();
  assert(world.blocks == 0);
  return 0;
}
}
