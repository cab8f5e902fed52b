#include "lan_simulation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace {

constexpr unsigned weathers[] = {0, 5, 25};  // percent of the datagrams that are lost
const char *const joins = std::getenv("PUGNADO_JOINS");
const unsigned runs = joins != nullptr ? static_cast<unsigned>(std::atoi(joins)) : 25;

void set_wishes(wish of_host, wish of_guest) {
  host.wish = of_host;
  guest.wish = of_guest;
}

bool is_at(const machine &machine, lan_page page) {
  return lobby_of(machine) != nullptr && lobby_of(machine)->mode == page;
}

bool both_play() {
  return match_of(host) != nullptr && match_of(guest) != nullptr;
}

bool has_joined() {
  return host.net->guest_joined == 1 && is_at(guest, page_joined_room) &&
         std::string(host.net->room_id) == guest.net->room_id;
}

// Lets them meet in a match, or in a room, and rest.
void meet(bool in_match) {
  set_wishes(in_match ? start_match : host_room, join_room);
  guest.to_join = 0;
  host.on_frame = guest.on_frame = play;
  EXPECT_TRUE(run(20'000, in_match ? both_play : has_joined)) << "they do not meet";
  run(in_match ? 500 : 0);
  for (machine *machine : {&host, &guest}) {
    machine->on_frame = rest;
    machine->texts.clear();
  }
}

// What the host decides and the guest shows, places in blocks; empty outside of a match.
std::vector<int> view_of(const machine &machine) {
  const game_state *match = match_of(machine);
  if (match == nullptr) return {};
  const context_record &app = *machine.context;
  std::vector<int> view = {match->time_left};
  for (const fighter *fighter : {match->fighter1, match->fighter2}) {
    view.insert(view.end(), {(fighter->x - app.ring.x) / app.unit_w, (fighter->y - app.ring.y) / app.unit_h,
                             fighter->score, fighter->knock_frames});
  }
  return view;
}

// What may go wrong how often, in thousandths, by weather; -1: however often.
struct goal {
  const char *text;
  int most[3], wrong = 0, all = 0;

  void count(int of_them_wrong, int of = 1) {
    wrong += of_them_wrong;
    all += of;
  }
};
goal nameless = {"joins left somebody nameless", {0, 0, 0}};
goal failed = {"starts failed", {0, 0, 2}};
goal silent = {"starts began with a notice of silence", {0, -1, -1}};
goal unseen = {"presses became no punch", {10, 10, 30}};
goal doubled = {"presses became two punches", {0, 0, 0}};
goal hits_unheard = {"hits were not heard by the guest", {0, -1, -1}};
goal misses_unheard = {"misses were not heard by the guest", {0, -1, -1}};
goal stuck = {"matches stood still", {0, 0, 0}};
goal drifting = {"matches moved a fighter without a key", {0, 0, 0}};
goal misshown = {"matches showed what was not told", {0, 0, 0}};
goal disagreeing = {"ends differed", {0, -1, -1}};
goal left_open = {"windows did not close", {0, 0, 0}};

// Watches every frame of a match.
struct referee {
  std::map<unsigned, std::vector<int>> told = {};            // by message counter
  unsigned accepted = 0;                                     // the counter last taken in
  long long seen = 0, pressed = 0, begun = 0, begun_before;  // the guest's presses, when alone, and punches
  int phase = 0;                                             // of its fighter, as the host has it
  bool drifts = false, shows_wrong = false;

  void watch_punches() {
    const auto still = [](const game_state *match) { return match->paused != 0 || match->fighting == 0; };
    if (!both_play() || still(match_of(host)) || still(match_of(guest))) return void(pressed = 0);
    const int last = std::exchange(phase, match_of(host)->fighter2->punch_phase);
    begun += last == punch_none && phase != punch_none;
    if (pressed != 0 && now - pressed > 550) {
      pressed = 0;
      unseen.count(begun == begun_before);
      doubled.count(begun > begun_before + 1);
    }
    if (std::exchange(seen, guest.punches) == guest.punches || guest.punches % 2 == 0) return;
    if (match_of(guest)->fighter2->punch_phase == punch_none && phase == punch_none) pressed = now;
    begun_before = begun;
  }

  void watch(const machine &own) {
    watch_punches();
    const game_state *match = match_of(own);
    if (match == nullptr || &own == &third) return;
    const fighter &fighter = &own == &host ? *match->fighter1 : *match->fighter2;
    drifts |= own.held.empty() && own.events.empty() && (fighter.vel_x != 0 || fighter.vel_y != 0);
    if (&own == &host || guest.net->received_msg_number == 0) return;
    const unsigned last = std::exchange(accepted, guest.net->received_msg_number);
    shows_wrong |= accepted < last || (accepted > last && told[accepted] != view_of(guest));
  }
};

bool have_names() {
  const auto is = [](const char *name, const machine &player) { return std::string(name) == player.name; };
  return is(host.net->username, host) && is(guest.net->peer_username, host) &&
         is(guest.net->username, guest) && is(host.net->peer_username, guest) &&
         (third.wish == be_idle || is(third.net->username, third));
}

void join() {
  set_wishes(host_room, join_room);
  run(30'000, has_joined);
  run(2000);
  nameless.count(!run(15'000, [] { return has_joined() && have_names(); }));
}

// By the seed the guest leaves, or is kicked, or the host makes another room, and it joins again; or somebody
// else comes, to the same room or with an own one.
void join_again(unsigned seed) {
  constexpr wish wishes[][2] = {
      {host_room, be_home}, {kick_guest, join_room}, {be_home, join_room}, {host_room, join_room}};
  set_wishes(wishes[seed % 4][0], wishes[seed % 4][1]);
  if (seed % 4 == 3) {
    third.stopped_until = 0;
    third.wish = seed % 8 == 3 ? host_room : join_room;
  }
  run(5000, [] { return !is_at(guest, page_joined_room); });
  join();
}

bool start_playing() {
  host.wish = start_match;
  run(3000, [] { return is_at(host, page_host_room) && lobby_of(host)->start_requested != 0; });
  for (machine &machine : machines) machine.texts.clear();
  const bool started = run(4000, both_play) && !run(1000, [] { return !both_play(); });
  failed.count(!started);
  silent.count(started && (host.texts.contains("Disconnecting") || guest.texts.contains("Disconnecting")));
  return started;
}

// Both pause, and resume, at about the same time. Returns whether they play on.
bool pause() {
  for (machine *own : {&host, &guest, &host, &guest}) {
    press(*own, SDLK_ESCAPE, 20);
    run(own->random() % 80);
  }
  return run(4000, [] { return both_play() && match_of(host)->paused == 0 && match_of(guest)->paused == 0; });
}

// They pause about the bell; then a clock is set back or a window is closed. Returns whether the end comes.
bool end(unsigned seed) {
  set_wishes(be_idle, be_idle);
  while (!run(host.random() % 400, [] { return !both_play() || match_of(host)->fighting == 0; })) {
    if (match_of(host)->time_left <= 1) press(machines[host.random() % 2], SDLK_ESCAPE, 20);
  }
  machine &one = machines[seed / 8 % 2];
  if (seed % 8 == 0) one.clock_ahead -= 1'000'000;
  if (seed % 8 == 1) {
    run(one.random() % 2000);
    close_window(one);
    left_open.count(!run(100, [&] { return one.closing == 0; }));
  }
  if (!run(5000, [] { return match_of(host) == nullptr && match_of(guest) == nullptr; })) return false;
  if (seed % 8 == 1) return true;
  const auto *a = end_of(host), *b = end_of(guest);
  const bool disconnected = host.texts.contains("Disconnected") || guest.texts.contains("Disconnected");
  disagreeing.count(a == nullptr || b == nullptr || a->score1 != b->score1 || a->score2 != b->score2 ||
                    disconnected);
  if (seed % 8 == 0) return true;  // the clock's owner has left before the last punches
  hits_unheard.count(std::abs(host.heard[1] - guest.heard[1]), host.heard[1]);
  misses_unheard.count(std::abs(host.heard[0] - guest.heard[0]), host.heard[0] - 1);  // and the bell
  return true;
}

void episode(unsigned seed, unsigned percent) {
  referee referee;
  begin(seed, percent, seed % 4 == 0 ? 30 : 2);
  loses = [&](unsigned, const std::string &bytes) {
    if (bytes[0] == 'e') referee.told[host.net->sent_msg_number] = view_of(host);
    return false;
  };
  host.context->fight_time = 7;
  for (machine &machine : machines) machine.on_frame = [&](auto &own) { play(own), referee.watch(own); };
  join();
  join_again(seed / 2);
  if (!start_playing()) return;
  stuck.count((seed % 2 == 0 && !pause()) || !end(seed));
  drifting.count(referee.drifts);
  misshown.count(referee.shows_wrong);
  doubled.count(referee.begun > guest.punches);
}

TEST(lan_simulation, plays_in_any_weather) {
  for (const int i : {0, 1, 2}) {
    goal *const goals[] = {&nameless,       &failed, &silent,   &unseen,   &doubled,     &hits_unheard,
                           &misses_unheard, &stuck,  &drifting, &misshown, &disagreeing, &left_open};
    for (unsigned seed = 0; seed < runs; ++seed) episode(seed, weathers[i]);
    for (goal *goal : goals) {
      std::printf("%2u %% lost: %d of %d %s\n", weathers[i], goal->wrong, goal->all, goal->text);
      EXPECT_TRUE(goal->all > 0 && (goal->most[i] < 0 || goal->wrong * 1000 <= goal->most[i] * goal->all));
      goal->wrong = goal->all = 0;
    }
  }
}

// Whether its peer is where the machine takes it to be. After a match a pairing is kept until the next one.
bool agrees(const machine &own) {
  const bool in_match = match_of(own) != nullptr && own.context->game_mode == mode_lan;
  const bool has_guest = is_at(own, page_host_room) && own.net->guest_joined == 1;
  if (!in_match && !has_guest && !is_at(own, page_joined_room)) return true;
  const auto peer = std::ranges::find_if(machines, [&](const machine &machine) {
    return own.net->peer_ip == "10.0.0." + std::to_string(machine.number + 1);
  });
  if (peer == std::end(machines) || std::string(peer->net->room_id) != own.net->room_id) return false;
  if (in_match) return match_of(*peer) != nullptr && peer->net->is_host != own.net->is_host;
  return is_at(*peer, has_guest ? page_joined_room : page_host_room);
}

// Whatever three players do, and whatever is lost: a name changes only where it is typed, a closed window
// closes, and once they rest each takes the others for where they are, can leave, and can play again.
TEST(lan_simulation, leaves_nobody_behind) {
  for (unsigned seed = 0; seed < runs; ++seed) {
    SCOPED_TRACE(seed);
    begin(seed, weathers[seed % 3], seed % 2 == 0 ? 2 : 30);
    loses = [](unsigned, const std::string &) { return now / 3000 % 4 == 0; };  // for three seconds, all
    third.stopped_until = 0;
    int lost_names = 0;
    long long open = 0;
    for (machine &machine : machines) {
      machine.on_frame = [&, name = std::string(), kept = false](auto &own) mutable {
        const bool keeps = lobby_of(own) != nullptr && !is_at(own, page_name_entry);
        lost_names += std::exchange(kept, keeps) && keeps && name != own.net->username;
        name = own.net->username;
        if (own.closing != 0) open = std::max(open, now - std::max(own.closing, own.stopped_until));
        wander(own);
      };
    }
    run(30'000);
    percent_lost = 0;
    loses = {};
    for (machine &machine : machines) machine.stopped_until = 0, machine.on_frame = rest;
    run(6500);
    EXPECT_TRUE(run(100, [] { return std::ranges::all_of(machines, agrees); }));
    for (machine &machine : machines) machine.wish = be_home, machine.on_frame = play;
    EXPECT_TRUE(run(10'000, [] { return std::ranges::all_of(machines, menu_of); }));
    meet(true);
    EXPECT_EQ(lost_names, 0);
    EXPECT_LT(open, 100);
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
    begin(1);
    loses = [&](unsigned to, const std::string &) { return now < over && (row.deaf >> to & 1) != 0; };
    if (row.wraps != 0) machines[row.wraps - 1].ticks_ahead = row.ticks - now - 15'000;
    meet(true);
    run(100, [&] { return row.stopped == 0 || !machines[row.stopped - 1].listening; });
    over = now + row.ms;
    if (row.stopped != 0) machines[row.stopped - 1].stopped_until = over;
    run(15'000);
    for (const machine *own : {&host, &guest}) {
      EXPECT_EQ(own->texts.contains("Disconnecting"), (row.notices >> own->number & 1) != 0) << own->number;
      EXPECT_EQ(own->texts.contains("Disconnected"), row.ends);
      EXPECT_EQ(match_of(*own) == nullptr, row.ends);
      const auto sent = machines[1 - own->number].net->sent_msg_number;
      EXPECT_TRUE(row.ends || own->net->received_msg_number + 9 > sent) << "a backlog";
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
  for (machine *machine : {&host, &guest}) {
    for (int at = 0; at < 5000; at += interval) machine->inbox.emplace(now + at, bytes);
    machine->on_frame = [&](auto &own) {
      play(own);
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
  begin(1);
  meet(false);
  loses = [&](unsigned, const std::string &bytes) { return ++sent[bytes[0]] < 0; };
  run(6000);
  EXPECT_TRUE(sent['a'] / 2 == 5 || sent['a'] / 2 == 6) << sent['a'] << " to two machines";
  EXPECT_TRUE(sent['b'] == 5 || sent['b'] == 6) << sent['b'];
}

TEST(lan_simulation, forgets_a_flood_of_rooms) {
  begin(1);
  set_wishes(be_idle, join_room);
  guest.on_frame = play;
  run(5000, [] { return is_at(guest, page_room_list); });
  guest.on_frame = {};
  const auto rooms = [] {
    int listed = 0;
    for (const list_node *node = *guest.room_list; node != nullptr; node = node->next) ++listed;
    return listed;
  };
  int most = 0;
  for (int room = 10'000'000; room < 10'010'000; ++room) {  // 1,000 a second, of which the system queues some
    if (guest.inbox.size() < 256)
      guest.inbox.emplace(now, "\7a8 " + std::to_string(room) + " 3 Eve 0  2 60 1 1 1 2");
    run(1);
    most = std::max(most, rooms());
  }
  EXPECT_TRUE(most > 100 && most <= 160) << most;
  run(15'000);
  EXPECT_EQ(rooms(), 0);
}

}  // namespace
