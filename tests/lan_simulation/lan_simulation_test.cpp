#include "lan_simulation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace {

constexpr unsigned weathers[] = {0, 5, 25};  // percent of the datagrams that are lost
const char *const joins = std::getenv("PUGNADO_JOINS");
const unsigned runs = joins != nullptr ? static_cast<unsigned>(std::atoi(joins)) : 25;

bool is_at(const machine &machine, lan_page page) {
  return lobby_of(machine) != nullptr && lobby_of(machine)->mode == page;
}

bool has_joined() {
  return host.net->guest_joined == 1 && is_at(guest, page_joined_room) &&
         std::string(host.net->room_id) == guest.net->room_id;
}

bool both_fight() {
  const game_state *one = match_of(host), *other = match_of(guest);
  return one != nullptr && other != nullptr && one->fighting + other->fighting == 2;
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
goal drifting = {"frames moved a fighter without a key", {0, 0, 0}};
goal disagreeing = {"ends differed", {0, -1, -1}};
goal *const goals[] = {&nameless,     &failed,         &silent, &unseen,   &doubled,
                       &hits_unheard, &misses_unheard, &stuck,  &drifting, &disagreeing};

// Watches every frame of a match. The guest waits long after every other press of the punch key.
struct referee {
  long long presses = 0, begun = 0;  // the guest's, and the punches of its fighter since the last one
  bool counts = false;               // the last press: its fighter was free, and nothing came between
  int phase = 0;                     // of its fighter, as the host has it

  void watch(const machine &own) {
    const game_state *first = match_of(host), *second = match_of(guest);
    if (first == nullptr || second == nullptr) return;
    const fighter &mine = &own == &host ? *first->fighter1 : *second->fighter2;
    drifting.count(own.held.empty() && own.events.empty() && (mine.vel_x != 0 || mine.vel_y != 0));
    begun += std::exchange(phase, first->fighter2->punch_phase) == punch_none && phase != punch_none;
    counts &= both_fight() && first->paused + second->paused == 0;
    if (std::exchange(presses, guest.punches) == guest.punches) return;
    unseen.count(counts && begun == 0, counts);
    doubled.count(counts && begun > 1, counts);
    begun = 0;
    counts = presses % 2 == 1 && phase == punch_none && second->fighter2->punch_phase == punch_none;
  }
};

bool have_names() {
  return host.name == guest.net->peer_username && guest.name == host.net->peer_username &&
         guest.name == guest.net->username && third.name.starts_with(third.net->username);
}

// Without loss an announcement a second tells the names soon.
void join(intention of_third) {
  host.wish = host_room, guest.wish = join_room, third.wish = of_third;
  third.stopped_until = of_third == be_idle ? now + 1'000'000 : 0;
  run(30'000, has_joined);
  run(1500);
  nameless.count(!run(percent_lost == 0 ? 50 : 15'000, [] { return has_joined() && have_names(); }));
}

// By the seed the guest leaves, or is kicked, or the host makes another room, and it joins again; or somebody
// else comes, to the same room or with an own one.
void join_again(unsigned seed) {
  constexpr intention changes[][2] = {
      {host_room, be_home}, {kick_guest, join_room}, {be_home, join_room}, {host_room, join_room}};
  const auto &[of_host, of_guest] = changes[seed % 4];
  host.wish = of_host, guest.wish = of_guest;
  run(5000, [] { return !is_at(guest, page_joined_room); });
  join(seed % 4 < 3 ? be_idle : seed % 8 == 3 ? host_room : join_room);
}

bool start_playing() {
  host.wish = start_match;
  texts.clear();
  const bool started = run(5000, both_fight) && !run(1000, [] { return !both_fight(); });
  failed.count(!started);
  silent.count(started && texts.contains("Disconnecting"));
  return started;
}

// They pause and resume, often at about the same time, and about the bell; then one may close its window.
void play_to_the_end(unsigned seed) {
  host.wish = guest.wish = third.wish = be_idle;
  for (const long long latest = now + 120'000; both_fight() && now < latest;) {
    const bool pauses = seed % 2 == 0 || match_of(host)->time_left <= 1;
    for (machine *own : {&host, &guest}) {
      if (pauses) press(*own, SDLK_ESCAPE, 20);
      run(own->random() % 20);
    }
    run(host.random() % 800);
  }
  const bool closes = seed % 4 == 3;
  if (closes) run(1900), machines[seed / 4 % 2].events.push_back({.type = SDL_QUIT});
  stuck.count(!run(5000, [] { return match_of(host) == nullptr && match_of(guest) == nullptr; }));
  const auto *a = end_of(host), *b = end_of(guest);
  const bool agree = a != nullptr && b != nullptr && a->score1 == b->score1 && a->score2 == b->score2;
  disagreeing.count(texts.contains("Disconnected") || (!agree && !closes));
  if (closes) return;  // before the last punches
  hits_unheard.count(std::abs(host.heard[1] - guest.heard[1]), host.heard[1]);
  misses_unheard.count(std::abs(host.heard[0] - guest.heard[0]), host.heard[0] - 1);  // and the bell
}

void episode(unsigned seed, unsigned percent) {
  referee referee;
  begin(seed);
  percent_lost = percent;
  host.on_frame = guest.on_frame = [&](auto &own) { play(own), referee.watch(own); };
  join(be_idle);
  join_again(seed / 2);
  if (start_playing()) play_to_the_end(seed);
}

TEST(lan_simulation, plays_in_any_weather) {
  for (const int i : {0, 1, 2}) {
    for (unsigned seed = 0; seed < runs; ++seed) episode(seed, weathers[i]);
    for (goal *goal : goals) {
      std::printf("%2u %% lost: %d of %d %s\n", weathers[i], goal->wrong, goal->all, goal->text);
      EXPECT_TRUE(goal->all > 0 && (goal->most[i] < 0 || goal->wrong * 1000 <= goal->most[i] * goal->all));
      goal->wrong = goal->all = 0;
    }
  }
}

// Whether the peer is where the machine takes it to be. After a match a pairing is kept until the next one.
bool agrees(const machine &own) {
  const bool in_match = match_of(own) != nullptr && own.context->game_mode == mode_lan;
  const bool has_guest = is_at(own, page_host_room) && own.net->guest_joined == 1;
  if (!in_match && !has_guest && !is_at(own, page_joined_room)) return true;
  const std::string address = own.net->peer_ip;
  const machine &peer = machines[address.empty() ? own.number : address.back() - '1'];
  if (&peer == &own || std::string(peer.net->room_id) != own.net->room_id) return false;
  if (in_match) return match_of(peer) != nullptr && peer.net->is_host != own.net->is_host;
  return is_at(peer, has_guest ? page_joined_room : page_host_room);
}

// Whatever three players do, and whatever is lost: a closed window closes, and once they rest each takes the
// others for where they are, can leave, and can play again. A machine that has stood still works off two old
// messages a frame, each of which counts as hearing its peer: so long may it take to notice that one is gone.
// Of silence a match bears five seconds.
TEST(lan_simulation, leaves_nobody_behind) {
  const auto names_room = [](const std::string &text) { return text.ends_with(')'); };
  const auto hosts = [](const machine &own) { return is_at(own, page_host_room); };
  for (unsigned seed = 0; seed < runs; ++seed) {
    SCOPED_TRACE(seed);
    begin(seed);
    for (machine &machine : machines) {
      machine.on_frame = [seed](auto &own) {
        const long long asked = std::max(own.closing, own.stopped_until);
        EXPECT_TRUE(own.closing == 0 || now < asked + 100) << "a window stays open, seed " << seed;
        percent_lost = now / 3000 % 4 == 0 ? 100 : weathers[seed % 3];
        wander(own);
      };
    }
    run(30'000);
    percent_lost = 0;
    for (machine &machine : machines) machine.stopped_until = 0, machine.on_frame = rest;
    run(10'000);
    texts.clear();
    run(100);
    EXPECT_LE(std::ranges::count_if(texts, names_room), std::ranges::count_if(machines, hosts))
        << "old rooms";
    EXPECT_TRUE(run(1500, [] { return std::ranges::all_of(machines, agrees); }));
    for (machine &machine : machines) machine.wish = be_home, machine.on_frame = play;
    EXPECT_TRUE(run(10'000, [] { return std::ranges::all_of(machines, menu_of); }));
    host.wish = start_match, guest.wish = join_room, guest.to_join = 0;
    EXPECT_TRUE(run(20'000, both_fight));
    texts.clear();
    percent_lost = 100;
    const int silence = 700 + static_cast<int>(seed) % 4 * 1600;
    run(silence);
    percent_lost = 0;
    run(500);
    EXPECT_EQ(texts.contains("Disconnecting"), silence > 1000);
    EXPECT_EQ(both_fight(), silence < 5000);
  }
}

}  // namespace
