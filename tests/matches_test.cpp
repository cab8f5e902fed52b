// A hundred matches from menu to menu at full speed, through the real main loop, with keys at random: alone
// and in pairs, paused, restarted, given up, with every option. The clock runs twenty times as fast. They go
// as they did when tests/recordings/matches.txt was made, and nothing is left over; build/matches.txt has
// them as they go now, to be copied over it when a change is meant.

#include <gtest/gtest.h>

#include <fstream>
#include <iomanip>
#include <set>
#include <sstream>

#include "app/context.h"
#include "fight/cpu_logic.h"
#include "fight/fighter.h"
#include "fight/game_state.h"
#include "screens/main_menu.h"
#include "tests/support/stage.h"

namespace {

constexpr int matches = 100;
constexpr int lan_item = 3;  // of the main menu

// Somebody who plays every screen but the LAN lobby: fights, now and then pauses; in menus moves, changes,
// enters and leaves, but never exits.
struct random_player {
  std::mt19937 dice{7};
  int held[4] = {};  // -1, 0 or 1: the direction keys held on each player's axes

  bool one_in(unsigned frames) { return dice() % frames == 0; }

  void tap(SDL_Keycode key) {
    push_key(key);
    push_key(key, SDL_KEYUP);
  }

  // Lets go of an axis' key and holds another, or none: towards the opponent more often than not.
  void turn(int &axis, int distance, SDL_Keycode back, SDL_Keycode forth) {
    const int towards = distance > 0 ? 1 : -1;
    const int wanted[] = {-1, 0, 1, towards, towards};
    if (axis != 0) push_key(axis < 0 ? back : forth, SDL_KEYUP);
    axis = wanted[dice() % std::size(wanted)];
    if (axis != 0) push_key(axis < 0 ? back : forth);
  }

  void fight(const game_state &game) {
    const int across = game.fighter2->x - game.fighter1->x, down = game.fighter2->y - game.fighter1->y;
    if (one_in(5)) turn(held[0], across, SDLK_LEFT, SDLK_RIGHT);
    if (one_in(5)) turn(held[1], down, SDLK_UP, SDLK_DOWN);
    if (one_in(5)) turn(held[2], -across, SDLK_a, SDLK_d);
    if (one_in(5)) turn(held[3], -down, SDLK_w, SDLK_s);
    if (one_in(4)) tap(SDLK_SPACE);
    if (one_in(4)) tap(SDLK_TAB);
    if (one_in(250)) tap(SDLK_ESCAPE);
  }

  void use_menu(int item) {
    if (!one_in(5)) return;
    constexpr SDL_Keycode keys[] = {SDLK_UP, SDLK_DOWN, SDLK_ESCAPE, SDLK_RETURN};
    const SDL_Keycode key = keys[dice() % std::size(keys)];
    if (key != SDLK_RETURN || (item != main_menu_item_count && item != lan_item)) tap(key);
  }

  void play(const state_object &state) {
    const auto *game = static_cast<const game_state *>(state.screen);
    const auto *menu = static_cast<const main_menu_screen *>(state.screen);
    if (state.current_state == screen_game && game->paused == pause_none) return fight(*game);
    use_menu(state.current_state == screen_main_menu ? menu->selected : 0);
  }
};

struct referee {
  std::ifstream recorded{"tests/recordings/matches.txt"};
  std::ofstream record{"build/matches.txt"};
  random_player player;
  std::mt19937 dice{8};
  int played = 0, frames = 0, score1 = 0, score2 = 0;
  std::set<int> menu_textures = {};
  std::uint64_t seen = 0;  // a number that every value since the start of the match has a share in

  template <typename... values>
  void add(values... all) {
    ((seen = (seen ^ static_cast<std::uint64_t>(all)) * 0x100000001B3u), ...);
  }

  void watch(const game_state &game) {
    for (const fighter *f : {game.fighter1, game.fighter2}) {
      add(f->x, f->y, f->vel_x, f->vel_y, f->knock_vel_x, f->knock_vel_y, f->knock_arm, f->punch_phase);
      add(f->punching_arm, f->side, f->knock_frames, f->score, f->punch_frames, f->flex_pose);
    }
    add(game.paused, game.pause_selection, game.time_left, game.fighting, world.sounds.size(),
        context.sound_on);
    if (game.cpu != nullptr) add(game.distance, game.cpu->plan, game.cpu->direction, game.cpu->next_punch_at);
    score1 = game.fighter1->score;
    score2 = game.fighter2->score;
    ++frames;
  }

  void write_down() {
    std::ostringstream line;
    line << (context.game_mode == mode_one_player ? "CPU    " : "keys   ") << std::setw(5) << frames
         << " frames " << std::setw(3) << score1 << " - " << std::setw(3) << std::left << score2 << std::right
         << std::hex << std::setw(17) << seen;
    record << line.str() << "\n";
    std::string expected;
    std::getline(recorded, expected);
    if (!testing::Test::HasFailure()) EXPECT_EQ(line.str(), expected) << "see build/matches.txt";
    ++played;
    frames = 0;
    seen = 0;
  }

  void end_frame() {
    state_object *state = context.state_machine;
    if (state->current_state == screen_game) {
      watch(*static_cast<const game_state *>(state->screen));
    } else if (frames > 0) {
      write_down();
    }
    if (state->current_state == screen_main_menu) menu_textures.insert(world.textures);
    world.delays.clear();
    world.sounds.clear();
    world.texts.clear();
    world.calls.clear();
    world.seconds = 1000 + world.ticks / 50;
    player.play(*state);
    if (played == matches) state->next_state = screen_quit;
  }
};

}  // namespace

TEST(matches, go_as_recorded) {
  open_game game(160, 128);
  referee referee;
  world.dice = &referee.dice;
  world.on_delay = [&referee] { referee.end_frame(); };
  context_loop();
  EXPECT_EQ(referee.menu_textures.size(), 1u) << "left over from other screens";
}
