// What every screen shows at two window sizes, compared with pictures painted straight through SDL.

#include <gtest/gtest.h>

#include "app/context.h"
#include "app/window.h"
#include "fight/fighter.h"
#include "media/graphics.h"
#include "tests/support/stage.h"

namespace {

// Draws the current screen's frame and paints the expected one.
void expect_picture(const layout &layout, const std::function<void()> &paint) {
  context.state_machine->render();
  paint();
  EXPECT_EQ(difference(world.shown, read_picture()), "") << layout.width << " x " << layout.height;
}

void press(const char *keys) {
  world.texts = "";
  push_keys(keys);
  context.state_machine->handle_input();
}

void paint_main_menu(const layout &layout, int selected) {
  const char *labels[] = {"1 Player", "2 Player", "LAN", "Options", "Exit"};
  const SDL_Color shadow = {0, 59, 30, 155};
  const bool large = layout.width == 800;
  const double middle = layout.width * 0.5, shadow_middle = large ? 404 : 168.165;
  paint_fill({0, 0, layout.width, layout.height}, menu_green);
  paint_text("Vantaro", layout.heading, shadow, shadow_middle, large ? 67 : 26);
  paint_text("Pugnado", layout.heading, shadow, shadow_middle, large ? 131 : 52);
  paint_text("Vantaro", layout.heading, dark, middle, layout.tenth[1]);
  paint_text("Pugnado", layout.heading, dark, middle, layout.tenth[2]);
  paint_menu_arrows("1 Player", layout, layout.tenth[selected + 3]);
  for (int i = 0; i < 5; ++i) {
    paint_text(labels[i], layout.points, i + 1 == selected ? red : dark, middle, layout.tenth[i + 4]);
  }
  const SDL_Point size = text_size("Version: 1.0", layout.small);
  paint_text("Version: 1.0", layout.small, dark, (large ? 12 : 5) + size.x * 0.5,
             (large ? 627 : 251) - size.y);
}

struct options_step {
  const char *keys;
  int row;
  const char *sound, *difficulty, *time;
  bool swapped;
  const char *rendered;  // on this step
};
constexpr const char *on = "Sound: On", *off = "Sound: Off";
constexpr const char *easy = "Difficulty: Easy", *hard = "Difficulty: Hard";
constexpr options_step options_steps[] = {
    {"", 1, on, easy, "Time: 02:00", false, ""},
    {"R", 1, off, easy, "Time: 02:00", false, "Sound: Off|"},
    {"rR", 1, on, easy, "Time: 02:00", false, "Sound: On|"},
    {"DR", 2, on, hard, "Time: 02:00", false, "Difficulty: Hard|"},
    {"R", 2, on, easy, "Time: 02:00", false, "Difficulty: Easy|"},
    {"DR", 3, on, easy, "Time: 01:00", false, "Time: 01:00|"},
    {"RRR", 3, on, easy, "Time: 01:45", false, "Time: 01:15|Time: 01:30|Time: 01:45|"},
    {"R", 3, on, easy, "Time: 02:00", false, "Time: 02:00|"},
    {"DR", 4, on, easy, "Time: 02:00", true, ""},
    {"D", 1, on, easy, "Time: 02:00", true, ""},
    {"UR", 4, on, easy, "Time: 02:00", false, ""}};

void paint_options(const layout &layout, const options_step &step) {
  const double middle = layout.width * 0.5;
  const bool large = layout.width == 800;
  const int unit = large ? 2 : 1;
  paint_fill({0, 0, layout.width, layout.height}, menu_green);
  paint_text("Options", layout.heading, dark, middle, layout.twentieth);
  paint_text(step.sound, layout.points, dark, middle, layout.tenth[3]);
  paint_text(step.difficulty, layout.points, dark, middle, layout.tenth[4]);
  paint_text(step.time, layout.points, dark, middle, layout.tenth[5]);
  paint_fighter(large ? 324 : 128, layout.tenth[6], step.swapped ? black : white, {0}, unit, unit);
  paint_fighter(large ? 400 : 166, layout.tenth[6], step.swapped ? white : black, {1}, unit, unit);
  paint_menu_arrows(step.difficulty, layout, layout.tenth[step.row + 2]);
}

void paint_end(const layout &layout, int score1, int score2, int selected) {
  const double middle = layout.width * 0.5;
  const bool large = layout.width == 800;
  const int won = (score1 > score2) - (score1 < score2), unit_w = large ? 4 : 1, unit_h = large ? 5 : 2;
  const int tops[] = {large ? 190 : 76, large ? 220 : 88, large ? 250 : 100};
  const pose winner = {0, 3}, loser = {0, 0, 7};
  pose first = won == 0  ? pose{0}
               : won > 0 ? winner
                         : loser,
       second = won == 0  ? pose{1}
                : won > 0 ? loser
                          : winner;
  second.side = 1;
  paint_fill({0, 0, layout.width, layout.height}, menu_green);
  paint_text("Game Over", layout.heading, dark, middle, layout.twentieth);
  paint_text(std::to_string(score1) + " - " + std::to_string(score2), layout.points, dark, middle,
             layout.tenth[2]);
  paint_fighter(large ? 300 : 141, tops[1 + won], black, first, unit_w, unit_h);
  paint_fighter(large ? 340 : 151, tops[1 - won], white, second, unit_w, unit_h);
  // As a double, 0.1 + 0.7 is a little less than 0.8, which shows where 0.8 of the height is a whole number.
  paint_menu_arrows("Restart Game", layout, large && selected == 2 ? 511 : layout.tenth[selected + 6]);
  paint_text("Restart Game", layout.points, selected == 1 ? red : dark, middle, layout.tenth[7]);
  paint_text("Main Menu", layout.points, selected == 2 ? red : dark, middle, layout.tenth[8]);
}

struct game_step {
  int time_left;
  const char *clock;
  int score1, score2;
  const char *keys;
  int pause_selection;  // 0 when not paused
  const char *sound;
};
constexpr game_step game_steps[] = {{120, "02:00", 0, 0, "", 0, on},    {75, "01:15", 99, 7, "", 0, on},
                                    {-2, "00:00", 101, 98, "", 0, on},  {59, "00:59", 3, 12, "E", 1, on},
                                    {59, "00:59", 3, 12, "RD", 2, off}, {59, "00:59", 3, 12, "D", 3, off}};

void paint_pause(const layout &layout, const SDL_Rect &ring, const game_step &step) {
  const double middle = layout.width * 0.5;
  const bool large = layout.width == 800;
  paint_fill(ring, ring_green);
  paint_text("Game Paused", layout.heading, dark, middle, layout.tenth[2]);
  paint_text(step.sound, layout.points, dark, middle, layout.tenth[4]);
  paint_text("Restart", layout.points, dark, middle, layout.tenth[5]);
  paint_text("Quit", layout.points, dark, middle, layout.tenth[6]);
  paint_text("Press ESC to resume", layout.points, red, middle, layout.tenth[8]);
  paint_arrows(large ? 200 : 83, large ? 560 : 233, layout.tenth[step.pause_selection + 3], layout.arrow,
               text_size("Quit", layout.points).y);
}

void paint_game(const layout &layout, const game_step &step, const game_state &game) {
  const SDL_Rect ring = layout.width == 800 ? SDL_Rect{132, 80, 536, 480} : SDL_Rect{99, 32, 134, 192};
  const int top = static_cast<int>((layout.height - text_size("0", layout.points).y) * 0.05);
  paint_fill({0, 0, layout.width, layout.height}, {12, 12, 17, 255});
  paint_fill(ring, ring_green);
  SDL_SetRenderDrawColor(gRenderer, 0, 90, 100, 255);
  SDL_RenderDrawRect(gRenderer, &ring);
  fighter_render(game.fighter1, 0, 0);
  fighter_render(game.fighter2, 0, 0);
  paint_text(step.clock, layout.points, white, layout.width * 0.5, top);
  paint_text(std::to_string(step.score1), layout.points, white, layout.width * 0.25, top);
  paint_text(std::to_string(step.score2), layout.points, white, layout.width * 0.75, top);
  if (step.pause_selection != 0) paint_pause(layout, ring, step);
}

}  // namespace

TEST(pictures, main_menu) {
  for (const layout &layout : layouts) {
    open_game game(layout.width, layout.height);
    enter(1);
    for (const int selected : {1, 2, 3, 4, 5, 1}) {
      expect_picture(layout, [&] { paint_main_menu(layout, selected); });
      press("D");
      EXPECT_TRUE(selected != 2 || world.texts == "LAN|2 Player|")
          << "only two are rendered, the new one first";
    }
  }
}

TEST(pictures, options) {
  for (const layout &layout : layouts) {
    open_game game(layout.width, layout.height);
    enter(5);
    for (const options_step &step : options_steps) {
      press(step.keys);
      EXPECT_EQ(world.texts, step.rendered);
      EXPECT_EQ(context.fighter1_color, step.swapped ? 2 : 1);
      expect_picture(layout, [&] { paint_options(layout, step); });
    }
  }
}

TEST(pictures, options_leave_the_settings_and_the_ring) {
  open_game game(800, 640);
  enter(5);
  EXPECT_EQ(std::tie(context.ring.x, context.ring.y, context.ring.h), std::make_tuple(266, 384, 64));
  press("RDRDRDR");
  for (const int screen : {1, 5, 1}) enter(screen);
  EXPECT_EQ(std::tie(context.sound_on, context.difficulty, context.fight_time, context.fighter1_color),
            std::make_tuple(0, 2, 60, 2));
  EXPECT_EQ(std::tie(context.unit_w, context.unit_h, context.ring.x, context.ring.y, context.ring.h),
            std::make_tuple(4, 5, 132, 80, 480));
}

TEST(pictures, end) {
  for (const layout &layout : layouts) {
    open_game open(layout.width, layout.height);
    context.fighter1_color = 2;
    context.fighter2_color = 1;
    for (const auto &[score1, score2] : {std::pair{3, 1}, {0, 2}, {2, 2}, {101, 98}}) {
      const game_state *game = static_cast<game_state *>(enter(2));
      game->fighter1->score = score1;
      game->fighter2->score = score2;
      enter(4);
      expect_picture(layout, [&, first = score1, second = score2] { paint_end(layout, first, second, 1); });
      press("D");
      expect_picture(layout, [&, first = score1, second = score2] { paint_end(layout, first, second, 2); });
    }
  }
}

TEST(pictures, game) {
  for (const layout &layout : layouts) {
    open_game open(layout.width, layout.height);
    game_state &game = *static_cast<game_state *>(enter(2));
    fighter_set_pos_from_unit(60, 30, game.fighter1);  // the second is drawn over the first
    fighter_set_pos_from_unit(45, 34, game.fighter2);
    for (const game_step &step : game_steps) {
      game.time_left = step.time_left;
      game.fighter1->score = step.score1;
      game.fighter2->score = step.score2;
      press(step.keys);
      expect_picture(layout, [&] { paint_game(layout, step, game); });
      EXPECT_EQ(gTemp.handle, nullptr);
    }
  }
}
