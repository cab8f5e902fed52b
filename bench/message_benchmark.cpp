// What one game state message costs: taken in, from the receive buffer to the match record, and built, from
// the match record to the socket; each beside a hand-written single pass over the same bytes. Nothing is
// sent.

#include <arpa/inet.h>
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <initializer_list>

#include "core/context.h"
#include "core/state_machine.h"
#include "fight/fighter.h"
#include "fight/game_state.h"
#include "lan/message_interpreter.h"
#include "lan/messages.h"
#include "net/message_reader.h"
#include "net/net.h"
#include "net/net_socket.h"

namespace {

constexpr int batch = 1000;  // calls between two readings of the clock

fighter fighters[2];
game_state match;
state_object machine;
char sent[datagram_size];  // the datagram sent last
char received[receive_buffer_size];

void set_up_match() {
  context.window_width = 800;
  context.window_height = 640;
  context_calc_units();
  context_calc_ring();
  context.game_mode = mode_lan;
  context.state_machine = &machine;
  machine.current_state = screen_game;
  machine.screen = &match;
  match.fighter1 = &fighters[0];
  match.fighter2 = &fighters[1];
  match.time_left = 120;
  fighter_init(&fighters[0], nullptr, 10, 10, side_left, 1);
  fighter_init(&fighters[1], nullptr, 86, 54, side_right, 2);
  netInfo.ip_type = ip_type_v4;
  netInfo.sent_msg_number = 412;
  std::strcpy(netInfo.room_id, "Rb4kT8mA");
  std::strcpy(netInfo.peer_ip, "10.0.0.2");
  fromAddr.sin_addr.s_addr = inet_addr(netInfo.peer_ip);
}

// The numbers of the message behind room id and counter, in their order.
int *fields_of(fighter &fighter, int field) {
  int *const fields[] = {&fighter.x,
                         &fighter.y,
                         &fighter.side,
                         &fighter.punch_phase,
                         &fighter.punching_arm,
                         &fighter.punch_frames,
                         &fighter.knock_frames,
                         &fighter.flex_pose,
                         &fighter.score};
  return fields[field];
}

int read_number(const char **at) {
  char *end = nullptr;
  const long length = std::strtol(*at, &end, 10);
  const int value = static_cast<int>(std::strtol(end + 1, nullptr, 10));
  *at = end + 1 + length + 1;
  return value;
}

void interpret_by_hand() {
  if (received[0] != message_game_state || fromAddr.sin_addr.s_addr != inet_addr(netInfo.peer_ip)) return;
  if (std::memcmp(received + 1, "8 ", 2) != 0 || std::memcmp(received + 3, netInfo.room_id, 8) != 0) return;
  const char *at = received + 12;
  const std::uint32_t counter = static_cast<std::uint32_t>(read_number(&at));
  if (netInfo.received_msg_number >= counter) return;
  netInfo.received_msg_number = counter;
  for (fighter &fighter : fighters) {
    for (int field = 0; field < 9; ++field) *fields_of(fighter, field) = read_number(&at);
    fighter_set_pos_from_unit(fighter.x, fighter.y, &fighter);
  }
  match.time_left = read_number(&at);
  match.paused = read_number(&at);
}

void build_by_hand() {
  char buffer[datagram_size] = {};
  char *at = buffer + std::snprintf(buffer, sizeof buffer, "e8 %s", netInfo.room_id);
  const auto put = [&at](int value) {
    char text[12];
    const int length = std::snprintf(text, sizeof text, "%d", value);
    at += std::snprintf(at, 16, " %d %s", length, text);
  };
  put(static_cast<int>(netInfo.sent_msg_number));
  for (fighter &fighter : fighters) {
    int unit_x = 0;
    int unit_y = 0;
    fighter_get_unit_from_pos(&unit_x, &unit_y, &fighter);
    put(unit_x);
    put(unit_y);
    for (int field = 2; field < 9; ++field) put(*fields_of(fighter, field));
  }
  put(match.time_left);
  put(match.paused);
  if (socket_send(socket_in_out, buffer, datagram_size, toAddr) == datagram_size) ++netInfo.sent_msg_number;
}

void interpret() {
  interpret_message(received, datagram_size);
}

void build() {
  messages_game_state();
}

// Every call starts from the same counters, so that the message is news and has always the same bytes.
double batch_time(void (*call)()) {
  const std::clock_t start = std::clock();
  for (int i = 0; i < batch; ++i) {
    netInfo.received_msg_number = 0;
    netInfo.sent_msg_number = 412;
    call();
  }
  return static_cast<double>(std::clock() - start) * 1e9 / CLOCKS_PER_SEC / batch;
}

// Both work by turns, so that whatever else the machine does slows both alike.
void compare(benchmark::State &state, void (*product)(), void (*floor)()) {
  double product_time = 0;
  double floor_time = 0;
  for ([[maybe_unused]] auto iteration : state) {
    product_time += batch_time(product);
    floor_time += batch_time(floor);
  }
  state.counters["product_ns"] = {product_time, benchmark::Counter::kAvgIterations};
  state.counters["floor_ns"] = {floor_time, benchmark::Counter::kAvgIterations};
  state.counters["ratio"] = product_time / floor_time;
}

void require(bool same, const char *what) {
  if (same) return;
  std::fprintf(stderr, "%s by hand is not the product's.\n", what);
  std::exit(1);
}

// The floor must do the same work: the same bytes out, and the same match from them.
void check_floor() {
  build();
  std::memcpy(received, sent, sizeof sent);
  netInfo.sent_msg_number = 412;
  build_by_hand();
  require(std::memcmp(received, sent, sizeof sent) == 0, "Building");
  for (void (*take_in)() : {interpret, interpret_by_hand}) {
    fighters[1].x = fighters[1].score = match.time_left = 0;
    netInfo.received_msg_number = 0;
    take_in();
    require(fighters[1].x == 476 && fighters[1].side == side_right && match.time_left == 120, "Interpreting");
  }
}

}  // namespace

// The linker puts this in the place of the system's call.
extern "C" ssize_t __wrap_sendto(int, const void *bytes, std::size_t count, int, const sockaddr *,
                                 socklen_t) {
  std::memcpy(sent, bytes, sizeof sent);
  return static_cast<ssize_t>(count);
}

int main(int argc, char *argv[]) {
  set_up_match();
  check_floor();
  benchmark::Initialize(&argc, argv);
  const struct {
    const char *name;
    void (*product)();
    void (*floor)();
  } comparisons[] = {{"interpret_game_state", interpret, interpret_by_hand},
                     {"build_game_state", build, build_by_hand}};
  for (const auto &comparison : comparisons) {
    benchmark::RegisterBenchmark(comparison.name, compare, comparison.product, comparison.floor)
        ->Repetitions(15)
        ->MinTime(0.1)
        ->ReportAggregatesOnly();
  }
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
