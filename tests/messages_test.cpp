#include "lan/messages.h"

#include <gtest/gtest.h>

#include <cstring>

#include "core/context.h"
#include "net/net.h"
#include "tests/support/stage.h"
#include "tests/support/udp_link.h"

namespace {

// A player in the room Rb4kT8mA, with a match on the game screen.
struct messages : testing::Test {
  messages() {
    std::strcpy(netInfo.room_id, "Rb4kT8mA");
    netInfo.sent_msg_number = 412;
  }
  std::string sent_to(char destination) {
    const std::string bytes = link.sent_to(destination);
    EXPECT_TRUE(bytes.empty() || bytes.size() == 150u);
    return bytes.c_str();
  }
  bare_match match{mode_two_players};
  udp_link link;
  fighter &left = *match.game.fighter1, &right = *match.game.fighter2;
};

}  // namespace

TEST_F(messages, say_what_they_are_to_say) {
  std::strcpy(netInfo.username, "A b");
  netInfo.fight_time = 60;
  context.fight_time = 105;
  netInfo.fighter1_color = 2;
  netInfo.fighter2_color = 11;
  right.vel_x = -8;
  right.vel_y = 15;
  right.punch_phase = 3;
  match.game.paused = 2;
  const struct {
    int (*build)();
    const char *peer, *to_group, *to_peer;
  } cases[] = {{messages_game_create, "tenletters", "a8 Rb4kT8mA 3 A b 10 tenletters 3 105 1 2 2 11", ""},
               {messages_game_create, "", "a8 Rb4kT8mA 3 A b 0  3 105 1 2 2 11", ""},
               {messages_joined_game, "", "", "b8 Rb4kT8mA 3 A b"},
               {messages_starting_game, "", "", "c8 Rb4kT8mA 1 2 2 11"},
               {messages_starting_game_ack, "", "", "d8 Rb4kT8mA 3 A b"},
               {messages_key_press, "", "", "f8 Rb4kT8mA 3 412 2 -8 2 15 1 3 1 2"},
               {messages_kick_game, "", "", "g8 Rb4kT8mA 3 A b"},
               {messages_cancel_game, "", "h8 Rb4kT8mA 3 A b", ""},
               {messages_leave_game, "", "", "i8 Rb4kT8mA 3 A b"}};
  for (const auto &c : cases) {
    netInfo.sent_msg_number = 412;
    std::strcpy(netInfo.peer_username, c.peer);
    EXPECT_EQ(c.build(), 1);
    EXPECT_EQ(sent_to('a'), c.to_group);
    EXPECT_EQ(sent_to('b'), c.to_peer);
  }
}

TEST_F(messages, carry_the_whole_match) {
  left.x = 132 + 4 * 10 + 3;
  left.y = 80 + 5 * 11 + 4;
  right.x = 132 - 4 * 2 - 3;  // part of a block is dropped towards zero
  right.y = 80 - 5 * 3 - 4;
  int value = 12;
  for (fighter *each : {&left, &right}) {
    for (int fighter::*field :
         {&fighter::side, &fighter::punch_phase, &fighter::punching_arm, &fighter::punch_frames,
          &fighter::knock_frames, &fighter::flex_pose, &fighter::score})
      each->*field = value++;
  }
  match.game.time_left = -1;
  match.game.paused = 1;
  EXPECT_EQ(messages_game_state(), 1);
  EXPECT_EQ(sent_to('b'),
            "e8 Rb4kT8mA 3 412 2 10 2 11 2 12 2 13 2 14 2 15 2 16 2 17 2 18"
            " 2 -2 2 -3 2 19 2 20 2 21 2 22 2 23 2 24 2 25 2 -1 1 1");
}

TEST_F(messages, are_not_sent_when_they_do_not_fit) {
  left.side = left.punch_phase = left.punching_arm = left.punch_frames = left.knock_frames = 999999999;
  left.flex_pose = 1234567;  // 149 characters
  EXPECT_EQ(messages_game_state(), 1);
  EXPECT_TRUE(sent_to('b').ends_with(" 3 120 1 0"));
  left.flex_pose = 12345678;
  EXPECT_EQ(messages_game_state(), 0);
  // The most that any message can come to.
  left.x = left.y = right.x = right.y = 2000000000;
  right.side = right.punch_phase = right.punching_arm = right.punch_frames = right.knock_frames = -999999999;
  left.flex_pose = left.score = right.flex_pose = right.score = match.game.time_left = -999999999;
  netInfo.sent_msg_number = 3294967295;
  EXPECT_EQ(messages_game_state(), 0);
  EXPECT_EQ(sent_to('b'), "");
  EXPECT_EQ(netInfo.sent_msg_number, 3294967295u);
}
