// What the messages say, what a received one does to a machine, and which of them a match takes in.

#include "lan/messages.h"

#include <cstring>

#include "core/timer.h"
#include "fight/preview.h"
#include "lan/lan_room.h"
#include "lan/match_drain.h"
#include "lan/message_interpreter.h"
#include "media/graphics.h"
#include "net/linked_list.h"
#include "net/net.h"
#include "net/peer_list.h"
#include "screens/game_screen.h"
#include "tests/support/network.h"
#include "tests/support/stage.h"

namespace {

void receive(const std::string &text, const char *from = peer_ip) {
  network.inbox = {{from, text}};
  char buffer[receive_buffer_size];
  const int length = net_receive_udp(buffer, sizeof buffer);
  interpret_message(buffer, length);
}

std::string controls(int counter, const std::string &told = " 1 0 1 0 1 0 1 0") {
  return "f8 Rb4kT8mA 3 " + std::to_string(counter) + told;
}

// Bob on a screen, with Ada in his room or he in hers, seven seconds after the start.
struct messages : testing::Test {
  ~messages() override { delete_list(&creatorList); }
  void begin(int screen, bool hosting) {
    context.game_mode = mode_lan;
    enter(screen);
    world.ticks = 7000;
    timer_start(context.cap_timer);
    share_room();
    netInfo.is_host = netInfo.guest_joined = hosting;
    netInfo.received_msg_number = netInfo.sent_msg_number = 412;
    delete_list(&creatorList);
    for (const char *room : {"Rb4kT8mA", "Other123"})
      update_peer_list("a1 x 3 Eve", peer_ip, room, &creatorList);
  }
  // Whatever a message can change outside of a match.
  std::string pairing() {
    std::string all(reinterpret_cast<const char *>(&netInfo), sizeof netInfo);
    for (const list_node *node = creatorList; node != nullptr; node = node->next)
      all += std::to_string(get_peer_from_list(node)->heartbeat) + " ";
    return all + std::to_string(context.state_machine->next_state);
  }
  open_game game{800, 640};
};

const std::string full_state =
    " 2 10 2 11 1 1 1 2 1 1 1 3 1 4 1 2 1 5 2 -2 2 -3 1 0 1 6 1 0 1 8 1 9 1 1 2 12 2 -1 1 1";

}  // namespace

TEST_F(messages, say_what_they_are_to_say) {
  begin(screen_game, false);
  context.fight_time = 105;
  netInfo.fighter2_color = 11;
  current_game()->fighter2->vel_x = -8;
  current_game()->fighter2->vel_y = 15;
  current_game()->fighter2->punch_phase = 3;
  current_game()->paused = 2;
  std::strcpy(netInfo.username, "B b");
  const struct {
    int (*build)();
    const char *receiver, *text, *peer = "";
  } cases[] = {{messages_game_create, group_ip, "a8 Rb4kT8mA 3 B b 3 Ada 3 105 1 1 2 11|", "Ada"},
               {messages_game_create, group_ip, "a8 Rb4kT8mA 3 B b 0  3 105 1 1 2 11|"},
               {messages_joined_game, peer_ip, "b8 Rb4kT8mA 3 B b|"},
               {messages_starting_game, peer_ip, "c8 Rb4kT8mA 1 1 2 11|"},
               {messages_starting_game_ack, peer_ip, "d8 Rb4kT8mA 3 B b|"},
               {messages_key_press, peer_ip, "f8 Rb4kT8mA 3 412 2 -8 2 15 1 3 1 2|"},
               {messages_kick_game, peer_ip, "g8 Rb4kT8mA 3 B b|"},
               {messages_cancel_game, group_ip, "h8 Rb4kT8mA 3 B b|"},
               {messages_leave_game, peer_ip, "i8 Rb4kT8mA 3 B b|"}};
  for (const auto &c : cases) {
    netInfo.sent_msg_number = 412;
    std::strcpy(netInfo.peer_username, c.peer);
    EXPECT_EQ(c.build(), 1);
    EXPECT_EQ(network.sent.back().bytes.size(), 150u);
    EXPECT_EQ(sent_to(c.receiver), c.text);
  }
}

// A fighter's part of a block is dropped towards zero; what does not fit a datagram is not sent.
TEST_F(messages, carry_the_whole_match) {
  begin(screen_game, false);
  for (const int counter : {412, 0}) receive("e8 Rb4kT8mA 3 " + std::to_string(counter) + full_state);
  EXPECT_EQ(current_game()->time_left, 120) << "that was no news";
  receive("e8 Rb4kT8mA 3 500" + full_state);
  EXPECT_EQ(netInfo.received_msg_number, 500u);
  game_state &match = *current_game();
  fighter *left = match.fighter1, *right = match.fighter2;
  EXPECT_EQ(std::tie(left->x, left->y, right->x, right->y), std::make_tuple(172, 135, 124, 65));
  EXPECT_TRUE(match.time_left == -1 && match.paused == pause_by_peer && netInfo.heartbeat == 7000);
  left->x += 3;
  right->y -= 4;
  match.paused = pause_local;
  EXPECT_EQ(messages_game_state(), 1);
  EXPECT_EQ(sent_to(peer_ip), "e8 Rb4kT8mA 3 412" + full_state + "|");
  left->side = left->punch_phase = left->punching_arm = left->punch_frames = left->knock_frames = 999999999;
  left->flex_pose = 1234567;  // 149 characters
  EXPECT_EQ(messages_game_state(), 1);
  left->flex_pose = 12345678;
  EXPECT_EQ(messages_game_state(), 0);
}

TEST_F(messages, count_only_where_they_belong) {
  const struct {
    std::string message;
    int screen;
    bool hosting;
    std::string needs;  // what of its circumstances must not be otherwise
  } cases[] = {{"a8 Rb4kT8mA 3 Ada 3 Bob 2 60 1 1 1 2", screen_lan, false, "screen role"},
               {"b8 Rb4kT8mA 3 Bob", screen_lan, true, "screen role sender room"},
               {"c8 Rb4kT8mA 1 2 1 1", screen_lan, false, "screen sender room"},
               {"d8 Rb4kT8mA 3 Bob", screen_lan, true, "screen sender room start"},
               {"e8 Rb4kT8mA 3 413" + full_state, screen_game, false, "screen sender room longer id"},
               {controls(413), screen_game, true, "sender room longer id"},
               {controls(413), screen_lan, true, "sender room start longer id"},
               {"g8 Rb4kT8mA 3 Ada", screen_lan, false, "screen role sender room"},
               {"h8 Rb4kT8mA 3 Ada", screen_lan, false, "screen"},
               {"i8 Rb4kT8mA 3 Bob", screen_lan, true, "sender room"},
               {"i8 Rb4kT8mA 3 Bob", screen_game, false, "sender room"}};
  for (const auto &c : cases) {
    for (const std::string other :
         {"nothing", "screen", "role", "sender", "room", "longer id", "start", "length", "letter"}) {
      const int screen = other == "screen" ? screen_lan + screen_game - c.screen : c.screen;
      begin(screen, c.hosting != (other == "role"));
      if (screen == screen_lan) current_lobby()->start_requested = other != "start";
      std::string message = c.message;
      if (other == "room") message.replace(3, 8, "Other123");
      if (other == "longer id") message.replace(1, 10, "9 Rb4kT8mAx");
      if (other == "length") message.resize(message.rfind(' '));
      if (other == "letter") message[0] = 'z';
      const std::string before = pairing();
      receive(message, other == "sender" ? stranger_ip : peer_ip);
      const bool refused = other == "length" || other == "letter" || c.needs.find(other) != std::string::npos;
      EXPECT_EQ(pairing() == before, refused) << message << " with another " << other;
    }
  }
}

TEST_F(messages, make_host_and_guest_a_pair) {
  begin(screen_lan, false);
  receive("a8 Rb4kT8mA 3 Eve 2 Bo 2 75 1 2 1 1", stranger_ip);
  EXPECT_EQ(std::string(netInfo.username) + netInfo.peer_username + current_lobby()->guest_name, "BobEveBo");
  EXPECT_EQ(std::tie(netInfo.fight_time, netInfo.fighter1_color, netInfo.fighter2_color, netInfo.heartbeat),
            std::make_tuple(75, 2, 1, 7000));
  EXPECT_EQ(fighter1->color, graphics_get_color(2));
  EXPECT_TRUE(world.texts.ends_with("Time: 01:15|"));
  EXPECT_EQ(count_list(creatorList), 2) << "one row of the list for a room, whichever way it is heard";
  netInfo.peer_username[0] = '\0';
  receive("c8 Rb4kT8mA 1 1 1 3");
  EXPECT_STREQ(netInfo.peer_username, "Eve") << "as the list of rooms has it";
  EXPECT_EQ(std::tie(netInfo.fighter1_color, netInfo.fighter2_color), std::make_tuple(1, 3));
  EXPECT_EQ(sent_to(peer_ip), "d8 Rb4kT8mA 3 Bob|");
  begin(screen_lan, true);
  netInfo.guest_joined = 0;
  receive("b8 Other123 3 Cid", stranger_ip);
  EXPECT_EQ(netInfo.peer_username + std::string(netInfo.peer_ip), std::string("Cid") + stranger_ip);
  EXPECT_TRUE(netInfo.guest_joined == 1 && netInfo.heartbeat == 7000);
  current_lobby()->start_requested = 1;
  receive("d8 Rb4kT8mA 3 Cid", stranger_ip);
  EXPECT_TRUE(current_lobby()->start_requested == 0 && context.state_machine->next_state == screen_game);
  current_lobby()->start_requested = 1;
  receive("i8 Rb4kT8mA 3 Cid", stranger_ip);
  EXPECT_EQ(current_lobby()->start_requested + netInfo.guest_joined, 0);
}

TEST_F(messages, move_the_guest_by_the_hosts_own_blocks_and_pause) {
  for (const auto &[width, height] : {std::pair{400, 320}, {1280, 1024}, {800, 640}}) {
    context.window_width = width;
    context.window_height = height;
    context_calc_units();
    begin(screen_game, true);
    const fighter &guest = *current_game()->fighter2;
    const int step_x = 4 * context.unit_w, step_y = 4 * context.unit_h;
    for (int counter = 413;
         const char *told : {" 1 8 2 -8 1 0 1 0", " 2 28 3 -32 1 1 1 0"}) {  // other windows'
      receive(controls(counter++, told));
      EXPECT_EQ(std::tie(guest.vel_x, guest.vel_y), std::make_tuple(step_x, -step_y)) << width;
    }
    EXPECT_EQ(guest.punch_phase, punch_started);
  }
  constexpr std::tuple<int, int, int> cases[] = {
      {pause_none, pause_by_peer, pause_none},    {pause_none, pause_local, pause_by_peer},
      {pause_local, pause_none, pause_local},     {pause_by_peer, pause_none, pause_none},
      {pause_by_peer, pause_by_peer, pause_none}, {pause_by_peer, pause_local, pause_by_peer}};
  for (int counter = 500; const auto &[own, told, after] : cases) {
    current_game()->paused = own;
    current_game()->peer_silent = 1;
    receive(controls(counter++, " 1 0 1 0 1 0 1 " + std::to_string(told)));
    EXPECT_TRUE(current_game()->paused == after && current_game()->peer_silent == 0) << own << told;
  }
}

TEST_F(messages, are_drained_in_time_and_end_with_a_leave) {
  begin(screen_game, true);
  network.inbox = {{peer_ip, controls(413)},
                   {stranger_ip, controls(999)},
                   {peer_ip, controls(414)},
                   {peer_ip, controls(415)}};
  match_drain_host();
  match_drain_guest();
  EXPECT_EQ(netInfo.received_msg_number, 414u);
  EXPECT_EQ(network.inbox.size(), 1u);
  world.ticks += 33;  // too late for what does not count
  network.inbox = {{peer_ip, "b"}, {peer_ip, controls(416)}};
  match_drain_host();
  EXPECT_EQ(network.inbox.size(), 1u);
  network.inbox = {{peer_ip, "i8 Rb4kT8mA 3 Bob"}, {peer_ip, controls(417)}};
  match_drain_host();
  EXPECT_EQ(context.state_machine->next_state, screen_end);
  EXPECT_EQ(netInfo.peer_ip + std::to_string(netInfo.heartbeat), "0") << "nobody is there for the end screen";
  begin(screen_game, true);
  match_drain_host();
  EXPECT_EQ(world.ticks, 7000u) << "a host does not wait";
  begin(screen_game, false);
  for (int i = 0; i < 2; ++i) match_drain_guest();
  EXPECT_EQ(world.ticks, 7023u) << "a guest waits until shortly before the frame is over";
  for (const char *keys : {"Q", "EUR"}) {  // closes the window; quits by the menu
    push_keys(keys);
    game_handle_input();
    const std::string leave = "i8 Rb4kT8mA 3 Bob|";
    EXPECT_TRUE(sent_to(peer_ip).starts_with(leave + leave + leave)) << keys;
  }
  context.game_mode = mode_two_players;
  network.inbox = {{peer_ip, controls(413)}};
  match_drain_guest();
  push_keys("R");  // on "Quit" still
  game_handle_input();
  EXPECT_EQ(network.inbox.size(), 1u) << "a local match hears nothing";
  EXPECT_TRUE(network.sent.empty()) << "and says nothing";
}

TEST_F(messages, tell_of_a_press_for_four_frames_unless_it_is_seen_or_late) {
  const std::tuple<unsigned, int, const char *> cases[] = {
      // ms of a frame; when the host answers; what is told
      {20, 9, "111100"},
      {70, 9, "110000"},
      {33, 2, "116666"}};
  for (const auto &[frame_time, answered, told] : cases) {
    begin(screen_game, false);
    push_key(SDLK_SPACE);
    for (int frame = 0; frame < 6; ++frame) {
      if (frame == answered) receive("e8 Rb4kT8mA 3 500" + full_state);
      game_handle_input();
      const std::string text = sent_to(peer_ip);
      EXPECT_EQ(text[text.size() - 6], told[frame]) << told << frame;  // the phase of its punch
      world.ticks += frame_time;
    }
  }
}

TEST_F(messages, of_a_flood_are_thrown_away_while_a_frame_sleeps) {
  begin(screen_game, true);
  for (const auto &[strangers, naps, left] : {std::tuple{200u, 1u, 3u}, {201u, 17u, 1u}}) {
    match_sleep(0);  // so that the count begins
    network.inbox.assign(strangers, {stranger_ip, "x"});
    match_drain_host();
    world.delays.clear();
    world.on_delay = [] { network.inbox = {{stranger_ip, "x"}, {stranger_ip, "x"}, {peer_ip, "x"}}; };
    timer_start(context.cap_timer);
    match_sleep(32);
    EXPECT_EQ(world.delays.size(), naps);
    EXPECT_EQ(network.inbox.size(), left) << "the peer's stays";
  }
}
