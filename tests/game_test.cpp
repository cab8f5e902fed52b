#include "fight/game.h"
#include "screens/game_screen.h"

#include <gtest/gtest.h>

#include "core/context.h"
#include "fight/fighter.h"
#include "tests/support/stage.h"

namespace {

void run_frame() {
  game_handle_input();
  game_update();
}

}  // namespace

TEST(game, letter_keys_belong_to_two_players_and_repeats_to_nobody) {
  for (const int mode : {0, 1}) {
    bare_match match(mode);
    const fighter &first = *match.game.fighter1, &second = *match.game.fighter2;
    for (const SDL_Keycode key : {SDLK_RIGHT, SDLK_DOWN, SDLK_SPACE, SDLK_d, SDLK_s, SDLK_TAB}) {
      push_key(key);
      push_key(key, SDL_KEYDOWN, 1);
      push_key(key, SDL_KEYUP, 1);
    }
    game_handle_input();
    EXPECT_EQ(std::tie(first.vel_x, first.vel_y, first.punch_phase), std::make_tuple(16, 20, 1));
    EXPECT_EQ(std::tie(second.vel_x, second.vel_y, second.punch_phase),
              std::make_tuple(16 * mode, 20 * mode, mode));
    EXPECT_EQ(match.game.pause_selection, 1);
  }
}

TEST(game, direction_keys_count_in_pairs) {
  const struct {
    const char *keys;  // "r" and "R" press and release Right, "l" and "L" Left, "!" restarts
    int vel_x;
  } cases[] = {{"R", 0},     {"rR", 0},  {"rr", 16},  {"rRR", 0},
               {"rlR", -16}, {"r!R", 0}, {"r!rl", 0}, {"r!l", -16}};
  for (const auto &c : cases) {
    bare_match match(1);
    for (const char key : std::string(c.keys)) {
      if (key != '!')
        push_key(key == 'l' || key == 'L' ? SDLK_LEFT : SDLK_RIGHT, key < 'a' ? SDL_KEYUP : SDL_KEYDOWN);
      game_handle_input();
      if (key != '!') continue;
      game_unload();
      game_load(&match.game);
    }
    EXPECT_EQ(match.game.fighter1->vel_x, c.vel_x) << c.keys;
  }
}

TEST(game, pause_menu) {
  const struct {
    const char *keys;
    int paused_before, paused, selection, next_state, sound_on;
  } cases[] = {
      {"E", 0, 1, 1, 0, 1},    {"EE", 0, 0, 1, 0, 1},   {"E", 2, 2, 1, 0, 1},    {"Ee", 0, 1, 1, 0, 1},
      {"DUR", 0, 0, 1, 0, 1},  {"ED", 0, 1, 2, 0, 1},   {"EDDD", 0, 1, 1, 0, 1}, {"EU", 0, 1, 3, 0, 1},
      {"EUU", 0, 1, 2, 0, 1},  {"EDdu", 0, 1, 2, 0, 1}, {"ER", 0, 1, 1, 0, 0},   {"ERR", 0, 1, 1, 0, 1},
      {"ERrX", 0, 1, 1, 0, 0}, {"EUN", 0, 1, 3, 1, 1},  {"DDR", 2, 2, 3, 1, 1},  {"EDR", 0, 0, 1, 0, 1},
      {"QE", 0, 0, 1, 6, 1},   {"EQ", 0, 1, 1, 6, 1},   {"F", 0, 1, 1, 0, 1},    {"MF", 0, 1, 1, 0, 1},
      {"EM", 0, 1, 1, 0, 1},   {"F", 2, 2, 1, 0, 1}};
  for (const auto &c : cases) {
    bare_match match(1);
    match.game.paused = c.paused_before;
    push_keys(c.keys);
    game_handle_input();
    EXPECT_EQ(
        std::tie(match.game.paused, match.game.pause_selection, match.machine.next_state, context.sound_on),
        std::tie(c.paused, c.selection, c.next_state, c.sound_on))
        << c.keys;
  }
  bare_match lan(2);
  push_keys("FM");
  game_handle_input();
  EXPECT_EQ(lan.game.paused, 0);
}

TEST(game, ends_at_99_points_or_at_the_end_of_time) {
  const struct {
    int score1, score2, time_left;
    Uint8 sound_on;
    int fighting, end_at, vel;
    const char *sounds;
  } cases[] = {{98, 98, 1, 1, 1, 0, 4, ""},        {99, 0, 1, 1, 0, 1002, 0, "bell "},
               {0, 99, 1, 1, 0, 1002, 0, "bell "}, {0, 100, 1, 0, 0, 1002, 0, ""},
               {0, 0, 0, 1, 0, 1002, 0, "bell "},  {0, 0, -1, 1, 0, 1002, 0, "bell "}};
  for (const auto &c : cases) {
    bare_match match(1);
    fighter &first = *match.game.fighter1, &second = *match.game.fighter2;
    context.sound_on = c.sound_on;
    first.score = c.score1;
    second.score = c.score2;
    match.game.time_left = c.time_left;
    first.vel_x = first.vel_y = second.vel_x = second.vel_y = 4;
    game_check_for_end(&match.game);
    game_check_for_end(&match.game);  // the bell rings once
    EXPECT_EQ(std::tie(match.game.fighting, match.game.end_at, world.sounds),
              std::tie(c.fighting, c.end_at, c.sounds));
    EXPECT_EQ(std::tie(first.vel_x, first.vel_y, second.vel_x, second.vel_y),
              std::tie(c.vel, c.vel, c.vel, c.vel));
  }
}

TEST(game, end_screen_follows_after_two_seconds_of_dropped_events) {
  bare_match match(1);
  match.game.end_time = 1060;
  const struct {
    int seconds;
    const char *keys;
    int fighting, time_left, next_state;
  } frames[] = {{1059, "", 1, 1, 0},  {1060, "", 1, 0, 0},  {1060, "", 0, 0, 0},   {1062, "ED", 0, -2, 0},
                {1063, "", 0, -2, 4}, {1057, "", 0, -2, 4}, {1062, "EQ", 0, -2, 6}};
  for (const auto &frame : frames) {
    world.seconds = frame.seconds;
    match.machine.next_state = 0;
    match.game.paused = match.game.fighting == 0 ? 2 : 0;
    push_keys(frame.keys);
    run_frame();
    EXPECT_EQ(std::tie(match.game.fighting, match.game.time_left, match.machine.next_state),
              std::tie(frame.fighting, frame.time_left, frame.next_state));
    EXPECT_EQ(match.game.fighter1->vel_y, 0);
  }
}
