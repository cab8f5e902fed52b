// The start, the frames and the end of the application record, with the network's share in each.

#include <SDL.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "app/context.h"
#include "app/state_machine.h"
#include "app/timer.h"
#include "app/window.h"
#include "net/message_interpreter.h"
#include "net/messages.h"
#include "net/net.h"

namespace {

template <typename record>
bool allocate(record **destination, const char *failure_line) {
  *destination = static_cast<record *>(std::calloc(1, sizeof(record)));
  if (*destination == nullptr) std::puts(failure_line);
  return *destination != nullptr;
}

bool open_network() {
  if (net_init(net_mode_multicast) == 0) {
    std::puts("Could not initiate networking stack.");
    return false;
  }
  context.net_info = &netInfo;
  return true;
}

void close_network() {
  context.net_info = nullptr;
  net_close();
}

void fill_settings() {
  context.frame_count = 0;
  context.sound_on = 1;
  context.difficulty = difficulty_easy;
  context.fight_time = 120;
  context.fighter1_color = 1;
  context.fighter2_color = 2;
}

void fill_geometry() {
  SDL_GetWindowSize(gWindow, &context.window_width, &context.window_height);
  context.font_size = context.window_height / 25;
  context_calc_units();
  context_calc_ring();
}

// What one side of a LAN match takes in during a frame: the peer's controls on the host, the host's match on
// the guest.
struct drain {
  char counted_letter;  // the peer's message once per frame
  bool waits;           // until shortly before the frame is over, so that the guest keeps the host's pace
};
constexpr drain host_drain = {message_key_press, false};
constexpr drain guest_drain = {message_game_state, true};
struct received {
  char text[receive_buffer_size];
  int length;  // bytes, as net_receive_from_peer returns them
};
constexpr int drain_limit = 2;   // counted messages read per frame, so that a backlog shrinks
constexpr int render_time = 10;  // ms of the frame that waiting leaves to the rendering
constexpr int flood = 200;       // other machines' datagrams in a frame; the system's queue holds some 250
constexpr int flood_nap = 2;     // ms of sleep in which a flood does not fill that queue

int strangers = 0;  // datagrams of other machines since the frame before began to sleep

bool in_lan_match(bool as_host) {
  return context.state_machine->current_state == screen_game && context.game_mode == mode_lan &&
         (netInfo.is_host != 0) == as_host;
}

int spent_in_frame() {
  return static_cast<int>(timer_get_ticks(context.cap_timer));
}

// ms that a drain may still wait in this frame.
int wait_left(const drain &drain) {
  return drain.waits ? std::max(screen_tick_per_frame - spent_in_frame() - render_time, 0) : 0;
}

bool receive(const drain &drain, received *datagram) {
  if ((net_check_descriptor(0, wait_left(drain) * 1000, net_readable) & net_readable) == 0) return false;
  datagram->length = net_receive_from_peer(datagram->text, sizeof datagram->text);
  return true;
}

// Reads what the peer has sent and interprets the datagram read last, if a counted one or a leave message
// was among them; any other is read and dropped. Datagrams of other machines neither count nor displace the
// peer's. Nothing that does not count, a failed receive included, holds the frame up beyond its budget.
void drain_socket(const drain &drain) {
  received last = {};
  int counted = 0;
  received datagram = {};
  while (counted < drain_limit && receive(drain, &datagram)) {
    const bool from_peer = datagram.length != from_stranger;
    if (from_peer) last = datagram;
    strangers += from_peer ? 0 : 1;
    if (from_peer && last.text[0] == message_leave_game) {
      counted = drain_limit;
    } else if (from_peer && last.text[0] == drain.counted_letter) {
      ++counted;
    } else if (spent_in_frame() >= screen_tick_per_frame) {
      break;
    }
  }
  if (counted != 0) interpret_message(last.text, last.length);
}

// Sleeps out the rest of the frame in short naps. In one long sleep a flood of other machines' datagrams
// would fill the system's queue, and the peer's would be lost.
void nap_through_flood(int rest) {
  for (; rest > 0; rest = std::min(rest - 1, screen_tick_per_frame - spent_in_frame())) {
    SDL_Delay(static_cast<Uint32>(std::min(rest, flood_nap)));
    strangers += net_discard_strangers();
  }
}

// Sleeps out the rest of the frame. A frame over its budget is not made up for later.
void cap_frame() {
  const int rest = screen_tick_per_frame - spent_in_frame();
  const bool flooded = strangers > flood && (in_lan_match(true) || in_lan_match(false));
  strangers = 0;
  if (rest <= 0) return;
  if (flooded) {
    nap_through_flood(rest);
  } else {
    SDL_Delay(static_cast<Uint32>(rest));
  }
}

void run_frame(state_object *state) {
  timer_start(context.cap_timer);
  state->handle_input();
  // Who closes the window is obeyed, whatever else the frame brings: a start, a bell, a leaving peer.
  const bool closing = state->next_state == screen_quit;
  if (in_lan_match(true)) drain_socket(host_drain);
  state->update();
  if (closing) state->next_state = screen_quit;
  state_change(state);
  if (in_lan_match(false)) drain_socket(guest_drain);
  state->render();
  ++context.frame_count;
  cap_frame();
}

}  // namespace

bool context_init() {
  if (!allocate(&context.fps_timer, "Could not allocate memory for timer.")) return false;
  if (!allocate(&context.cap_timer, "Could not allocate memory for cap timer.")) return false;
  if (!allocate(&context.state_machine, "Could not allocate memory for state.")) return false;
  if (!open_network()) return false;
  timer_init(context.fps_timer);
  timer_init(context.cap_timer);
  state_init(context.state_machine);
  fill_settings();
  fill_geometry();
  return true;
}

void context_loop() {
  state_object *state = context.state_machine;
  state_change(state);
  timer_start(context.fps_timer);
  while (state->current_state != screen_quit) run_frame(state);
}

void context_teardown() {
  state_object *state = context.state_machine;
  if (state != nullptr && state->screen != nullptr) {
    state->unload();
    std::free(state->screen);
    state->screen = nullptr;
  }
  std::free(state);
  context.state_machine = nullptr;
  std::free(context.fps_timer);
  std::free(context.cap_timer);
  context.fps_timer = nullptr;
  context.cap_timer = nullptr;
  close_network();
}
