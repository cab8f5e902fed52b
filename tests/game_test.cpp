// What the recorded matches do not come to.

#include "fight/game.h"

#include <gtest/gtest.h>

#include "core/context.h"
#include "screens/game_screen.h"
#include "tests/support/stage.h"

TEST(game, pauses_when_nobody_looks_and_ends_when_its_window_is_closed) {
  const struct {
    const char *keys;  // of push_keys()
    int mode = mode_two_players, paused_before = pause_none, paused = pause_local, next_screen = screen_none;
  } cases[] = {{.keys = "F"},
               {.keys = "MF"},
               {.keys = "EM"},
               {.keys = "F", .paused_before = pause_by_peer, .paused = pause_by_peer},
               {.keys = "E", .paused_before = pause_by_peer, .paused = pause_by_peer},
               {.keys = "FM", .mode = mode_lan, .paused = pause_none},
               {.keys = "X", .paused_before = pause_local},
               {.keys = "DR", .paused = pause_none},
               {.keys = "QE", .paused = pause_none, .next_screen = screen_quit}};
  for (const auto &c : cases) {
    bare_match match(c.mode);
    match.game.paused = c.paused_before;
    push_keys(c.keys);
    game_handle_input();
    EXPECT_EQ(std::tie(match.game.paused, match.machine.next_state), std::tie(c.paused, c.next_screen))
        << c.keys;
    EXPECT_EQ(context.sound_on, 1) << c.keys;
  }
}

TEST(game, end_screen_follows_whatever_the_clock_does) {
  bare_match match(mode_two_players);
  match.game.time_left = 0;
  const auto screen_after = [&match](int seconds, const char *keys) {
    world.seconds = seconds;
    match.machine.next_state = screen_none;
    push_keys(keys);
    game_handle_input();
    game_update();
    return match.machine.next_state;
  };
  EXPECT_EQ(screen_after(1000, ""), screen_none);
  EXPECT_EQ(screen_after(1002, "ED"), screen_none);
  EXPECT_EQ(std::tie(match.game.paused, match.game.fighter1->vel_y), std::make_tuple(0, 0));
  EXPECT_EQ(screen_after(1003, ""), screen_end);
  EXPECT_EQ(screen_after(999, ""), screen_end) << "set back";
  EXPECT_EQ(screen_after(1000, "Q"), screen_quit);
}
