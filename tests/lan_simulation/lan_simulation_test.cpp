// Two machines run the whole game, on a network and with clocks that are simulated, so that the same seed
// gives the same run. Times are milliseconds, and pass only while machines sleep or wait for their sockets.

#include <SDL_ttf.h>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sched.h>

#include <algorithm>
#include <deque>
#include <functional>
#include <map>
#include <random>
#include <semaphore>
#include <set>
#include <thread>

#include "core/context.h"
#include "core/state_machine.h"
#include "fight/fighter.h"
#include "fight/game_state.h"
#include "lan/lan_room.h"
#include "net/linked_list.h"
#include "net/net.h"
#include "net/networks.h"
#include "net/socket_api.h"
#include "screens/end_menu.h"

namespace {

struct machine {
  unsigned number = 0;
  network_record *net = nullptr;                     // of the game that runs here
  context_record *context = nullptr;                 // likewise
  list_node **room_list = nullptr;                   // likewise
  std::function<void(machine &)> on_frame = {};      // after every frame
  std::deque<SDL_Keycode> keys = {};                 // pressed, for the next frame
  std::set<std::string> texts = {};                  // all that was drawn since they last met
  std::multimap<long long, std::string> inbox = {};  // by arrival; a byte with the sender's number in front
  std::mt19937 random = {};                          // the player's, and that of what is sent from here
  long long ticks_ahead = number * 12'345;           // of SDL's tick counter before the simulation's time
  long long wake = 0, stopped_until = 0;             // when it goes on, and the earliest at all
  bool listening = false;                            // a datagram wakes it
  std::binary_semaphore turn{0};
};
machine machines[2] = {{.number = 0}, {.number = 1}};  // running their programs until the process ends
machine &host = machines[0], &guest = machines[1];
thread_local machine *self;  // null on the threads of the libraries and of the test
std::binary_semaphore test_turn(0);
long long now;
std::function<bool(unsigned to, const std::string &bytes)> loses;  // datagrams; is shown every one

void sleep_until(long long wake, bool listening) {
  self->wake = wake;
  self->listening = listening;
  test_turn.release();
  self->turn.acquire();
}

long long due(const machine &machine) {
  const bool by_mail =
      machine.listening && !machine.inbox.empty() && machine.inbox.begin()->first < machine.wake;
  return std::max({by_mail ? machine.inbox.begin()->first : machine.wake, machine.stopped_until, now});
}

// Runs for `ms`, or until the condition holds, asked for after every step. Returns whether it held.
bool run(long long ms, const std::function<bool()> &until = {}) {
  const long long end = now + ms;
  for (machine *next; next = std::ranges::min_element(machines, {}, due), due(*next) <= end;) {
    now = due(*next);
    next->turn.release();
    test_turn.acquire();
    if (until && until()) return true;
  }
  now = end;
  return false;
}

void start(machine &started) {
  void *library = dlopen((MACHINES + std::to_string(started.number) + ".so").c_str(), RTLD_NOW | RTLD_LOCAL);
  started.net = static_cast<network_record *>(dlsym(library, "netInfo"));
  started.context = static_cast<context_record *>(dlsym(library, "context"));
  started.room_list = static_cast<list_node **>(dlsym(library, "creatorList"));
  std::thread([&started, program = dlsym(library, "_Z9game_mainiPPc")] {
    self = &started;
    self->turn.acquire();
    char *arguments[] = {nullptr, strdup("80"), strdup("64")};
    reinterpret_cast<int (*)(int, char **)>(program)(3, arguments);
    std::abort();  // it could not start
  }).detach();
}

// The threads take turns, which is quickest so.
void share_one_processor() {
  cpu_set_t processor;
  CPU_ZERO(&processor);
  CPU_SET(sched_getcpu(), &processor);
  sched_setaffinity(0, sizeof processor, &processor);
}

// Begins anew at the main menus, later than all that the games may remember.
void begin(unsigned seed, std::function<bool(unsigned, const std::string &)> lost = {}) {
  for (const char *variable : {"SDL_VIDEODRIVER", "SDL_AUDIODRIVER"}) setenv(variable, "dummy", 1);
  setenv("SDL_RENDER_DRIVER", "software", 1);
  if (host.net == nullptr) {
    share_one_processor();
    std::ranges::for_each(machines, start);
  }
  for (machine &machine : machines) machine.on_frame = {};
  loses = lost;
  now = (now / 1'000'000 + 1) * 1'000'000;
  run(100);
  for (machine &machine : machines) machine.context->state_machine->next_state = screen_main_menu;
  run(900);
  for (machine &machine : machines) {
    machine.inbox.clear();
    machine.random.seed(seed + machine.number);
    machine.wake = now + machine.number * 7;
    machine.context->frame_count = 0;
    machine.context->fight_time = 60;
    machine.context->game_mode = mode_lan;
  }
}

// The record of a screen; null while another one is current.
template <typename record, int screen>
record *shown(const machine &machine) {
  const state_object *state = machine.context->state_machine;
  return state->current_state == screen ? static_cast<record *>(state->screen) : nullptr;
}
constexpr auto lobby_of = shown<lan_menu_state, screen_lan>;
constexpr auto match_of = shown<game_state, screen_game>;
constexpr auto end_of = shown<end_menu_state, screen_end>;

int rooms_of(const machine &machine) {
  int rooms = 0;
  for (const list_node *node = *machine.room_list; node != nullptr; node = node->next) ++rooms;
  return rooms;
}

bool is_at(const machine &machine, lan_page page) {
  return lobby_of(machine) != nullptr && lobby_of(machine)->mode == page;
}

// From anywhere, the host's player opens a room, the guest's joins it; with `start` the match begins.
void go(machine &machine, bool start) {
  if (machine.context->frame_count % 8 != 0 || match_of(machine) != nullptr) return;
  lan_menu_state *lobby = lobby_of(machine);
  if (lobby == nullptr) return void(machine.context->state_machine->next_state = screen_lan);
  machine.net->username[0] = 'x';
  lobby->name_selection = machine.number == 0 ? page_host_room : page_room_list;
  lobby->room_selection = 1;
  lobby->host_selection = 2;
  if (lobby->mode <= page_room_list || start) machine.keys = {SDLK_RETURN};
}

// What a player may do: K kick, S start, E escape, Q quit.
void act(machine *machine, char deed) {
  if (lobby_of(*machine) != nullptr) lobby_of(*machine)->host_selection = deed == 'S' ? 2 : 3;
  if (match_of(*machine) != nullptr) match_of(*machine)->pause_selection = pause_item_quit;
  if (deed == 'Q' || deed == 'E') machine->keys.push_back(SDLK_ESCAPE);
  if (deed == 'Q' || deed == 'K' || deed == 'S') machine->keys.push_back(SDLK_RETURN);
}

// Both take a break every ten seconds, the guest a longer one. Returns whether a punch was begun.
bool fight(machine &machine) {
  game_state *match = match_of(machine);
  if (match == nullptr || match->fighting == 0) return false;
  fighter *own = machine.number == 0 ? match->fighter1 : match->fighter2;
  const fighter *other = machine.number == 0 ? match->fighter2 : match->fighter1;
  const unsigned resumes_at = match->paused == pause_local ? 30 + 30 * machine.number : 0;
  if (machine.context->frame_count % 300 == resumes_at) machine.keys = {SDLK_ESCAPE};
  const auto draw = machine.random();
  if (draw % 4 == 0) own->vel_x = other->x > own->x ? own->speed_x : -own->speed_x;
  if (draw % 8 == 1) own->vel_y = static_cast<int>(draw / 8 % 3 - 1) * own->speed_y;
  if (draw % 8 != 2 || own->punch_phase != punch_none) return false;
  own->punch_phase = punch_started;
  return true;
}

// Lets them meet in a match, or in a room.
void meet(bool match, int most = 20'000) {
  for (machine &machine : machines) machine.on_frame = [match](auto &own) { go(own, match); };
  EXPECT_TRUE(run(most, [match] {
    if (match) return match_of(host) != nullptr && match_of(guest) != nullptr;
    return host.net->guest_joined == 1 && is_at(guest, page_joined_room);
  })) << "they do not meet";
  run(match ? 500 : 0);
  for (machine &machine : machines) {
    machine.on_frame = {};
    machine.texts.clear();
  }
}

// What the host decides and the guest shows; empty outside of a match.
std::vector<int> view_of(const machine &machine) {
  const game_state *match = match_of(machine);
  if (match == nullptr) return {};
  const fighter *a = match->fighter1, *b = match->fighter2;
  return {a->x, a->y, a->score, a->knock_frames, b->x, b->y, b->score, b->knock_frames, match->time_left};
}

TEST(lan_simulation, plays_on_a_bad_network) {
  for (unsigned seed = 0; seed < 18; ++seed) {
    SCOPED_TRACE(seed);
    std::map<std::uint32_t, std::vector<int>> told;  // by message counter
    int wrong = 0, pressed = 0, punches = 0;
    begin(seed, [&, weather = std::mt19937(seed)](unsigned, const std::string &bytes) mutable {
      if (bytes[0] == 'e') {
        told[host.net->sent_msg_number] = view_of(host);
        const game_state &match = *match_of(host);
        punches += match.paused == pause_none && match.fighter2->punch_phase == punch_half;  // once in each
      }
      return weather() % 100 < 5 * (seed % 9);  // percent
    });
    meet(true, 60'000);
    host.on_frame = fight;
    guest.on_frame = [&, accepted = 0U](machine &own) mutable {
      const auto last = std::exchange(accepted, own.net->received_msg_number);
      wrong += match_of(own) != nullptr && (accepted < last || told[accepted] != view_of(own));
      pressed += fight(own);
    };
    ASSERT_TRUE(run(100'000, [] { return end_of(host) != nullptr && end_of(guest) != nullptr; }));
    EXPECT_EQ(wrong, 0) << "frames in which the guest does not show what it was told last";
    EXPECT_TRUE(punches > 0 && punches <= pressed) << punches << " of " << pressed;
    const auto result = std::to_string(end_of(host)->score1) + " - " + std::to_string(end_of(host)->score2);
    for (const auto &texts : {host.texts, guest.texts})
      EXPECT_TRUE(texts.contains(result) && texts.contains("Game Paused") &&
                  !texts.contains("Disconnecting"));
  }
}

// Whatever the two do at about the same time, in the room or in a match, and whichever messages are lost on
// the way: six seconds later each takes the other for where it is, and they can start a match.
TEST(lan_simulation, loses_messages_of_a_pairing) {
  for (const std::string deeds : {"--", "K-", "E-", "-E", "S-", "SE", "KE", "EE", "Q-", "-Q", "QQ"}) {
    for (int test = 0; test < 28; ++test) {
      const char letter = "abcdghi"[test / 4];
      const int copies = test % 4;
      SCOPED_TRACE(deeds + ", lost " + std::to_string(copies) + letter);
      int left = copies;
      begin(1, [&](unsigned, const std::string &bytes) { return bytes[0] == letter && left-- > 0; });
      meet(deeds.find('Q') != deeds.npos, 8000 + 6500 * copies);
      left = copies;
      act(&host, deeds[0]);
      run(20 * copies);
      act(&guest, deeds[1]);
      run(6000);
      const bool awaited = is_at(host, page_host_room) && host.net->guest_joined == 1;
      EXPECT_EQ(awaited, is_at(guest, page_joined_room));
      EXPECT_FALSE(lobby_of(host) != nullptr && lobby_of(host)->start_requested != 0);
      EXPECT_EQ(match_of(host) == nullptr, match_of(guest) == nullptr);
      meet(true, 8000 + 6500 * copies);
    }
  }
}

TEST(lan_simulation, bears_short_silence_only) {
  const struct {
    int ms;
    unsigned deaf, stopped, wraps;  // 1 the host, 2 the guest, 3 both
    long long ticks;                // that the one that wraps reaches during the match
    unsigned notices;               // who is shown that the peer is silent
    bool ends;
  } rows[] = {
      {900, 3, 0, 0, 0, 0, false},       {1500, 3, 0, 0, 0, 3, false},      {1500, 2, 0, 0, 0, 2, false},
      {4500, 3, 0, 0, 0, 3, false},      {5500, 3, 0, 0, 0, 3, true},       {5500, 1, 0, 0, 0, 3, true},
      {3000, 0, 1, 0, 0, 2, false},      {3000, 0, 2, 0, 0, 1, false},      {6000, 0, 2, 0, 0, 1, true},
      {0, 0, 0, 1, 1LL << 31, 0, false}, {0, 0, 0, 2, 1LL << 31, 0, false}, {0, 0, 0, 1, 1LL << 32, 2, true},
      {0, 0, 0, 2, 1LL << 32, 1, true}};
  for (const auto &row : rows) {
    SCOPED_TRACE(&row - rows);
    long long over = 0;
    begin(1, [&](unsigned to, const std::string &) { return now < over && (row.deaf >> to & 1) != 0; });
    if (row.wraps != 0) machines[row.wraps - 1].ticks_ahead = row.ticks - now - 15'000;
    meet(true);
    over = now + row.ms;
    if (row.stopped != 0) machines[row.stopped - 1].stopped_until = over;
    run(15'000);
    for (const machine &own : machines) {
      EXPECT_EQ(own.texts.contains("Disconnecting"), (row.notices >> own.number & 1) != 0) << own.number;
      EXPECT_EQ(own.texts.contains("Disconnected"), row.ends);
      EXPECT_EQ(match_of(own) == nullptr, row.ends);
      const auto sent = machines[1 - own.number].net->sent_msg_number;
      EXPECT_TRUE(row.ends || own.net->received_msg_number + 9 > sent) << "a backlog";
    }
    meet(true);
  }
}

// What both players see of five seconds of a match while a stranger sends to both.
std::vector<std::vector<int>> match_beside(char letter, int interval) {
  begin(1);
  meet(true);
  const char sender_and_letter[] = {7, static_cast<char>(std::tolower(letter)), '\0'};
  std::string bytes = sender_and_letter + ("8 " + std::string(host.net->room_id)) + " 6 999999";
  for (int i = 0; i < 20; ++i) bytes += std::islower(letter) ? " 1 1" : " 9";  // well formed, or not
  std::vector<std::vector<int>> seen;
  for (machine &machine : machines) {
    for (int at = 0; at < 5000; at += interval) machine.inbox.emplace(now + at, bytes);
    machine.on_frame = [&](auto &own) {
      fight(own);
      seen.push_back(view_of(own));
    };
  }
  run(5000);
  return seen;
}

TEST(lan_simulation, heeds_no_stranger) {
  const auto undisturbed = match_beside('x', 5000);
  for (const char letter : std::string("abcdefghiAEFI")) {
    for (const int ms : {1, 16, 33}) EXPECT_TRUE(match_beside(letter, ms) == undisturbed) << letter << ms;
  }
}

TEST(lan_simulation, speaks_once_a_second_in_a_room) {
  std::map<char, int> sent;
  begin(1, [&](unsigned, const std::string &bytes) { return ++sent[bytes[0]] < 0; });
  meet(false);
  sent.clear();
  run(6000);
  for (const char letter : {'a', 'b'})
    EXPECT_TRUE(sent[letter] == 5 || sent[letter] == 6) << letter << sent[letter];
}

TEST(lan_simulation, forgets_a_flood_of_rooms) {
  begin(1);
  for (machine &machine : machines) machine.on_frame = [](auto &own) { go(own, false); };
  run(5000, [] { return is_at(guest, page_room_list); });
  host.on_frame = guest.on_frame = {};
  int most = 0;
  for (int room = 10'000'000; room < 10'010'000; ++room) {  // 1,000 a second, of which the system queues some
    if (guest.inbox.size() < 256)
      guest.inbox.emplace(now, "\7a8 " + std::to_string(room) + " 3 Eve 0  2 60 1 1 1 2");
    run(1);
    most = std::max(most, rooms_of(guest));
  }
  EXPECT_TRUE(most > 100 && most <= 160) << most;
  run(15'000);
  EXPECT_LE(rooms_of(guest), 1) << "the host's own";
}

}  // namespace

extern "C" std::time_t time(std::time_t *) noexcept {
  return self == nullptr ? 0 : 1'700'000'000 + now / 1000;
}

Uint32 SDL_GetTicks() {
  return self == nullptr ? 0 : static_cast<Uint32>(now + self->ticks_ahead);
}

void SDL_Delay(Uint32 ms) {
  if (self->on_frame) self->on_frame(*self);
  sleep_until(now + ms + self->random() % 2, false);
}

int SDL_PollEvent(SDL_Event *event) {
  if (self->keys.empty()) return 0;
  *event = {.type = SDL_KEYDOWN};
  event->key.keysym.sym = self->keys.front();
  self->keys.pop_front();
  return 1;
}

SDL_Surface *TTF_RenderUTF8_Solid(TTF_Font *, const char *text, SDL_Color) {
  self->texts.insert(text);
  return SDL_CreateRGBSurface(0, 1, 1, 32, 0, 0, 0, 0);
}

void fighter_render(const fighter *, int, int) {}

std::span<const local_network> networks_find(std::uint32_t, local_network (&)[network_limit]) {
  return {};
}

int socket_send(socket_handle, const char *bytes, int count, const sockaddr_in &) {
  const std::string text(bytes, static_cast<std::size_t>(count));
  machine &other = machines[1 - self->number];
  if (loses && loses(other.number, text)) return count;
  for (int copies = self->random() % 20 == 0 ? 2 : 1; copies > 0; --copies) {
    const auto delay = 10 + self->random() % 21 * (self->random() % 8 == 0 ? 4 : 1);  // some overtake others
    other.inbox.emplace(now + static_cast<int>(delay), static_cast<char>(self->number) + text);
  }
  return count;
}

int socket_receive(socket_handle, char *bytes, int most, sockaddr_in *from, socket_length *) {
  const auto mail = self->inbox.extract(self->inbox.begin());
  from->sin_addr.s_addr = htonl(0x0A000001U + static_cast<unsigned>(mail.mapped()[0]));
  return static_cast<int>(mail.mapped().copy(bytes, static_cast<std::size_t>(most), 1));
}

bool socket_peek(socket_handle, sockaddr_in *from) {
  from->sin_addr.s_addr = htonl(0x0A000001U + static_cast<unsigned>(self->inbox.begin()->second[0]));
  return true;
}

int socket_wait(socket_handle, int sets, int, int microseconds) {
  const auto has_mail = [] { return !self->inbox.empty() && self->inbox.begin()->first <= now; };
  const int writable = sets & socket_writable;
  if (writable == 0 && microseconds > 0 && !has_mail()) sleep_until(now + microseconds / 1000, true);
  return writable | (has_mail() ? sets & socket_readable : 0);
}
