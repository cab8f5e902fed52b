// Hundreds of matches from menu to menu at full speed, through the real main loop, with keys at random: alone
// and in pairs, paused, restarted, given up, with every option. The clock runs twenty times as fast. Every
// frame keeps the rules, nothing is left over, and the first matches go as they did when
// tests/recordings/matches.txt was made; build/matches.txt has them as they go now, to be copied over it when
// a change is meant.

#include <gtest/gtest.h>

#include <fstream>
#include <iomanip>
#include <sstream>

#include "app/main_loop.h"
#include "core/context.h"
#include "fight/cpu_logic.h"
#include "fight/fighter.h"
#include "fight/game_state.h"
#include "tests/support/random_player.h"
#include "tests/support/stage.h"

namespace {

constexpr int recorded = 100;
const int matches =
    std::max(recorded, std::atoi(SDL_getenv("PUGNADO_MATCHES") ? SDL_getenv("PUGNADO_MATCHES") : "300"));

// A number that every value since the start of the match has a share in.
struct trace {
  std::uint64_t sum = 0;
  template <typename... values>
  void add(values... all) {
    ((sum = (sum ^ static_cast<std::uint64_t>(all)) * 0x100000001B3u), ...);
  }
};

struct referee {
  std::ofstream record{"build/matches.txt"};
  random_player player{std::mt19937(7)};
  std::mt19937 dice{8};
  int played = 0, frames = 0, score1 = 0, score2 = 0, menu_textures = 0, entered[screen_quit + 1] = {};
  trace seen;
};

void add_fighter(trace &seen, const fighter &f) {
  seen.add(f.x, f.y, f.vel_x, f.vel_y, f.knock_vel_x, f.knock_vel_y, f.knock_arm, f.punch_phase,
           f.punching_arm, f.side, f.knock_frames, f.score, f.punch_frames, f.flex_pose);
}

SDL_Rect body_of(const fighter &f) {
  return {f.x + (f.side == side_right ? f.w / 2 : 0), f.y, f.w / 2, f.h};
}

void check_rules(const game_state &game) {
  const SDL_Rect first = body_of(*game.fighter1), second = body_of(*game.fighter2);
  for (const SDL_Rect &body : {first, second}) {
    SDL_Rect inside;
    SDL_IntersectRect(&body, &context.ring, &inside);
    EXPECT_TRUE(SDL_RectEquals(&inside, &body)) << "out of the ring";
  }
  EXPECT_FALSE(SDL_HasIntersection(&first, &second)) << "one in the other";
  for (const fighter *f : {game.fighter1, game.fighter2}) {
    EXPECT_TRUE(f->punch_phase >= 0 && f->punch_phase <= 6 && f->knock_frames >= 0 && f->knock_frames <= 7);
  }
  EXPECT_LE(game.time_left, context.fight_time);
  EXPECT_EQ(game.cpu != nullptr, context.game_mode == mode_one_player);
}

void watch_match(referee &referee, const game_state &game) {
  check_rules(game);
  add_fighter(referee.seen, *game.fighter1);
  add_fighter(referee.seen, *game.fighter2);
  referee.seen.add(game.paused, game.pause_selection, game.time_left, game.fighting, world.sounds.size(),
                   context.sound_on);
  if (game.cpu != nullptr)
    referee.seen.add(game.distance, game.cpu->plan, game.cpu->direction, game.cpu->next_punch_at);
  referee.score1 = game.fighter1->score;
  referee.score2 = game.fighter2->score;
  ++referee.frames;
}

void write_down(referee &referee) {
  if (++referee.played <= recorded) {
    referee.record << (context.game_mode == mode_one_player ? "CPU    " : "keys   ") << std::setw(5)
                   << referee.frames << " frames " << std::setw(3) << referee.score1 << " - " << std::setw(3)
                   << std::left << referee.score2 << std::right << std::hex << std::setw(17)
                   << referee.seen.sum << std::dec << "\n";
  }
  referee.frames = 0;
  referee.seen = {};
}

void end_frame(referee &referee) {
  state_object *state = context.state_machine;
  ++referee.entered[state->current_state];
  if (state->current_state == screen_game) {
    watch_match(referee, *static_cast<const game_state *>(state->screen));
  } else if (referee.frames > 0) {
    write_down(referee);
  }
  if (state->current_state == screen_main_menu) {
    EXPECT_TRUE(referee.menu_textures == 0 || referee.menu_textures == world.textures);
    referee.menu_textures = world.textures;
  }
  world.delays.clear();
  world.sounds.clear();
  world.texts.clear();
  world.calls.clear();
  world.seconds = 1000 + world.ticks / 50;
  random_player_type(&referee.player, state);
  if (referee.played == matches || testing::Test::HasFailure()) state->next_state = screen_quit;
}

std::string content(const char *path) {
  std::ostringstream text;
  text << std::ifstream(path).rdbuf();
  return text.str();
}

}  // namespace

TEST(matches, keep_the_rules_and_go_as_recorded) {
  open_game game(160, 128);
  referee referee;
  world.dice = &referee.dice;
  world.on_delay = [&referee] { end_frame(referee); };
  context_loop();
  for (const int screen : {screen_main_menu, screen_game, screen_end, screen_options}) {
    EXPECT_GT(referee.entered[screen], 100) << screen;
  }
  referee.record.close();
  EXPECT_TRUE(content("build/matches.txt") == content("tests/recordings/matches.txt"))
      << "see build/matches.txt";
}
