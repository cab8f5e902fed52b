// A hundred matches from menu to menu at full speed, through the real main loop, with keys at random: alone
// and in pairs, paused, restarted, given up, with every option. The clock runs twenty times as fast; every
// third match begins at 95 points, and the clock is set back after some. They go as they did when
// tests/recordings/matches.txt was made; build/matches.txt has them as they go now, to be copied over it when
// a change is meant.

#include <fstream>
#include <sstream>

#include "app/main_loop.h"
#include "fight/cpu_logic.h"
#include "tests/support/random_player.h"
#include "tests/support/stage.h"

namespace {

constexpr int matches = 100;

struct referee {
  std::ifstream recorded{"tests/recordings/matches.txt"};
  std::ofstream record{"build/matches.txt"};
  random_player player;
  std::mt19937 dice{11};
  bool set_back = false;  // the clock
  int played = 0, frames = 0, score1 = 0, score2 = 0;
  std::uint64_t seen = 0;  // a number that every value since the match before has a share in

  template <typename... values>
  void add(values... all) {
    ((seen = (seen ^ static_cast<std::uint64_t>(all)) * 0x100000001B3u), ...);
  }

  void watch(const game_state &game) {
    if (frames++ == 0 && played % 3 == 0) game.fighter1->score = game.fighter2->score = 95;  // ends by points
    for (const fighter *f : {game.fighter1, game.fighter2}) {
      add(f->x, f->y, f->vel_x, f->vel_y, f->knock_vel_x, f->knock_vel_y, f->knock_arm, f->punch_phase);
      add(f->punching_arm, f->side, f->knock_frames, f->score, f->punch_frames, f->flex_pose);
    }
    add(game.paused, game.pause_selection, game.time_left, game.fighting);
    if (game.cpu != nullptr) add(game.distance, game.cpu->plan, game.cpu->direction, game.cpu->next_punch_at);
    set_back = played % 4 == 1 && game.fighting == 0;
    score1 = game.fighter1->score;
    score2 = game.fighter2->score;
  }

  void write_down() {
    std::ostringstream line;
    line << (context.game_mode == mode_one_player ? "CPU" : "keys") << ", " << frames << " frames, " << score1
         << " - " << score2 << std::hex << ", " << seen;
    record << line.str() << "\n";
    std::string expected;
    std::getline(recorded, expected);
    EXPECT_TRUE(testing::Test::HasFailure() || line.str() == expected)
        << line.str() << "; see build/matches.txt";
    ++played;
    frames = 0;
    seen = 0;
  }

  void end_frame() {
    state_object *state = context.state_machine;
    for (const char letter : world.sounds) add(letter);
    add(context.sound_on, context.difficulty, context.fight_time, context.fighter1_color, world.textures);
    if (state->current_state == screen_game) {
      watch(*static_cast<const game_state *>(state->screen));
    } else if (frames > 0) {
      write_down();
    }
    world.sounds.clear();
    world.seconds = (set_back ? 0 : 1000) + world.ticks / 50;
    player.play(*state);
    if (played == matches) state->next_state = screen_quit;
  }
};

}  // namespace

TEST(matches, go_as_recorded) {
  open_game game(335, 128);  // for blocks of 2 x 1 pixels
  referee referee;
  world.dice = &referee.dice;
  world.on_delay = [&referee] { referee.end_frame(); };
  context_loop();
  EXPECT_EQ(referee.played, matches);
}
