#include "lan/match_drain.h"

#include <SDL.h>

#include <algorithm>

#include "core/context.h"
#include "core/state_machine.h"
#include "core/timer.h"
#include "lan/message_interpreter.h"
#include "net/message_reader.h"
#include "net/net.h"

namespace {

struct drain {
  char counted_letter;  // the peer's message once per frame
  bool waits;           // until shortly before the frame is over
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

bool in_match() {
  return context_is_lan() && context_state_machine()->current_state == screen_game;
}

int spent_in_frame() {
  return static_cast<int>(timer_get_ticks(context_get()->cap_timer));
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

void nap_through_flood(int rest) {
  for (; rest > 0; rest = std::min(rest - 1, screen_tick_per_frame - spent_in_frame())) {
    SDL_Delay(static_cast<Uint32>(std::min(rest, flood_nap)));
    strangers += net_discard_strangers();
  }
}

}  // namespace

void match_drain_host() {
  if (in_match() && netInfo.is_host != 0) drain_socket(host_drain);
}

void match_drain_guest() {
  if (in_match() && netInfo.is_host == 0) drain_socket(guest_drain);
}

void match_sleep(int rest) {
  const bool flooded = strangers > flood && in_match();
  strangers = 0;
  if (rest <= 0) return;
  if (flooded) {
    nap_through_flood(rest);
  } else {
    SDL_Delay(static_cast<Uint32>(rest));
  }
}
