#include "lan/messages.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <tuple>

#include "core/context.h"
#include "core/state_machine.h"
#include "fight/fighter.h"
#include "fight/game_state.h"
#include "net/net.h"
#include "tests/support/stage.h"
#include "tests/support/udp_link.h"

namespace {

std::string datagram(std::string text) {
  text.resize(150, '\0');
  return text;
}

// A player in the room Rb4kT8mA, with a match on the game screen.
class messages : public testing::Test {
 protected:
  messages() {
    std::strcpy(netInfo.room_id, "Rb4kT8mA");
    netInfo.sent_msg_number = 412;
    game.fighter1 = &left;
    game.fighter2 = &right;
    machine.current_state = screen_game;
    machine.screen = &game;
    context.state_machine = &machine;
    context.unit_w = 4;
    context.unit_h = 5;
    context.ring = {132, 80, 536, 480};
  }
  ~messages() override { context = {}; }
  void start_match() {
    fighter_set_pos_from_unit(10, 10, &left);
    fighter_set_pos_from_unit(86, 54, &right);
    right.side = 1;
    left.flex_pose = right.flex_pose = 3;
    game.time_left = 120;
  }
  state_object machine = {};
  udp_link link;
  fighter left = {};
  fighter right = {};
  game_state game = {};
};

}  // namespace

TEST_F(messages, say_what_they_are_to_say) {
  std::strcpy(netInfo.username, "A b");
  std::strcpy(netInfo.peer_username, "tenletters");
  netInfo.fight_time = 60;
  context.fight_time = 105;
  netInfo.fighter1_color = 2;
  netInfo.fighter2_color = 11;
  right.vel_x = -8;
  right.vel_y = 15;
  right.punch_phase = 3;
  game.paused = 2;
  const std::tuple<int (*)(), char, const char *> cases[] = {
      {messages_game_create, 'a', "a8 Rb4kT8mA 3 A b 10 tenletters 3 105 1 2 2 11"},
      {messages_joined_game, 'b', "b8 Rb4kT8mA 3 A b"},
      {messages_starting_game, 'b', "c8 Rb4kT8mA 1 2 2 11"},
      {messages_starting_game_ack, 'b', "d8 Rb4kT8mA 3 A b"},
      {messages_key_press, 'b', "f8 Rb4kT8mA 3 412 2 -8 2 15 1 3 1 2"},
      {messages_kick_game, 'b', "g8 Rb4kT8mA 3 A b"},
      {messages_cancel_game, 'a', "h8 Rb4kT8mA 3 A b"},
      {messages_leave_game, 'b', "i8 Rb4kT8mA 3 A b"}};
  for (const auto &[build, destination, text] : cases) {
    netInfo.sent_msg_number = 412;
    EXPECT_EQ(build(), 1) << text;
    EXPECT_EQ(link.sent_to(destination), datagram(text));
    EXPECT_EQ(link.sent_to(destination == 'a' ? 'b' : 'a'), "");
  }
  netInfo.peer_username[0] = '\0';
  EXPECT_EQ(messages_game_create(), 1);
  EXPECT_EQ(link.sent_to('a'), datagram("a8 Rb4kT8mA 3 A b 0  3 105 1 2 2 11"));
}

TEST_F(messages, carry_the_whole_match) {
  left.x = 132 + 4 * 10 + 3;
  left.y = 80 + 5 * 11 + 4;
  right.x = 132 - 4 * 2 - 3;  // part of a block is dropped towards zero
  right.y = 80 - 5 * 3 - 4;
  int value = 12;
  for (fighter *fighter : {&left, &right}) {
    for (int fighter::*field :
         {&fighter::side, &fighter::punch_phase, &fighter::punching_arm, &fighter::punch_frames,
          &fighter::knock_frames, &fighter::flex_pose, &fighter::score}) {
      fighter->*field = value++;
    }
  }
  game.time_left = -1;
  game.paused = 1;
  EXPECT_EQ(messages_game_state(), 1);
  EXPECT_EQ(link.sent_to('b'), datagram("e8 Rb4kT8mA 3 412 2 10 2 11 2 12 2 13 2 14 2 15 2 16 2 17 2 18"
                                        " 2 -2 2 -3 2 19 2 20 2 21 2 22 2 23 2 24 2 25 2 -1 1 1"));
}

TEST_F(messages, are_not_sent_when_they_do_not_fit) {
  start_match();
  left.side = left.punch_phase = left.punching_arm = left.punch_frames = left.knock_frames = 999999999;
  left.flex_pose = 1234567;  // 149 characters
  EXPECT_EQ(messages_game_state(), 1);
  EXPECT_EQ(link.sent_to('b').substr(140), std::string("3 120 1 0\0", 10));
  left.flex_pose = 12345678;
  EXPECT_EQ(output_of([] { EXPECT_EQ(messages_game_state(), 0); }), "");
  // The most that any message can come to.
  left.x = left.y = right.x = right.y = 2000000000;
  right.side = right.punch_phase = right.punching_arm = right.punch_frames = right.knock_frames = -999999999;
  left.flex_pose = left.score = right.flex_pose = right.score = game.time_left = game.paused = -999999999;
  netInfo.sent_msg_number = 3294967295;
  EXPECT_EQ(output_of([] { EXPECT_EQ(messages_game_state(), 0); }), "");
  EXPECT_EQ(link.sent_to('b'), "");
  EXPECT_EQ(netInfo.sent_msg_number, 3294967295u);
}
