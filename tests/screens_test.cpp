// What the screens have in common: their keys, and the report of what fails.

#include <gtest/gtest.h>
#include <unistd.h>

#include "core/context.h"
#include "tests/support/stage.h"

TEST(screens, keys_of_menus) {
  const struct {
    int screen;
    const char *keys;
    int selected, next_state, game_mode;
  } cases[] = {{1, "U", 5, 0, 9},       {1, "UD", 1, 0, 9},  {1, "Dddu", 2, 0, 9}, {1, "xXEr", 1, 0, 9},
               {1, "R", 1, 2, 0},       {1, "DN", 2, 2, 1},  {1, "DDR", 3, 3, 2},  {1, "UUR", 4, 5, 9},
               {1, "UR", 5, 6, 9},      {1, "RDR", 2, 2, 1}, {1, "DQD", 2, 6, 9},  {4, "D", 2, 0, 9},
               {4, "DD", 1, 0, 9},      {4, "Ud", 2, 0, 9},  {4, "UU", 1, 0, 9},   {4, "xXEr", 1, 0, 9},
               {4, "R", 1, 2, 9},       {4, "DR", 2, 1, 9},  {4, "DQD", 2, 6, 9},  {5, "U", 4, 0, 9},
               {5, "DDDDdux", 1, 0, 9}, {5, "DDE", 3, 1, 9}, {5, "DQE", 2, 6, 9}};
  open_game game(800, 640);
  for (const auto &c : cases) {
    enter(2);
    const int &selected = *static_cast<int *>(enter(c.screen));  // every menu's record begins with it
    context.game_mode = 9;
    push_keys(c.keys);
    context.state_machine->handle_input();
    EXPECT_EQ(std::tie(selected, context.state_machine->next_state, context.game_mode),
              std::tie(c.selected, c.next_state, c.game_mode))
        << "screen " << c.screen << ", keys " << c.keys;
  }
}

TEST(screens, without_texts_are_reported_and_go_on) {
  const std::string loader = "Unable to render text suraface! SDL_ttf Error: *\n";
  const std::string item = loader + "Unable to load texture from text!\n";
  const std::string title = loader + "Unable to render title texture!\n";
  const std::string options = loader + "Unable to create option",
                    top = loader + "Unable to load texture from text (";
  const std::string rows =
      options + " sound texture!\n" + options + " difficulty texture!\n" + options + " time texture!\n";
  const struct {
    int screen;
    const char *keys;
    std::string lines;
  } cases[] = {
      {1, "D", title + title + title + title + item + item + item + item + item + item + item + item},
      {5, "RrDRDR", options + "s title texture!\n" + rows + rows},
      {2, "E",
       top + "Time)!\n" + top + "Score)!\n" + top + "Score)!\n" + top + "Pause title)!\n" + top +
           "pause sound)!\n" + loader + loader + loader},
      {4, "",
       loader + "Unable to create game over texture!\n" + loader + "Unable to create score texture!\n" +
           item + item}};
  open_game game(800, 640);
  for (const auto &c : cases) {
    world.failing = {{"TTF_RenderUTF8_Solid", 0}};
    EXPECT_EQ(output_of([&c] {
                enter(c.screen);
                push_keys(c.keys);
                context.state_machine->handle_input();
                context.state_machine->render();
              }),
              c.lines);
  }
  EXPECT_EQ(std::tie(context.difficulty, context.fight_time), std::make_tuple(2, 60))
      << "options change all the same";
  world.failing = {{"SDL_CreateTextureFromSurface", 1}};
  EXPECT_EQ(output_of([] { enter(1); }),
            "Unable to create texture from rendered text! SDL Error: *\nUnable to render title texture!\n");
}

TEST(screens, missing_memory_ends_the_process_with_a_line) {
  const struct {
    int screen, call;
    const char *record;
  } cases[] = {{1, 1, "main menu state"},
               {1, 2, "texture"},
               {2, 1, "game state"},
               {2, 3, "fighter"},
               {2, 4, "cpu"},
               {4, 1, "end menu state"},
               {5, 1, "options menu state"},
               {5, 2, "fighter"}};
  bare_match match(0);
  for (const auto &c : cases) {
    const auto change = [&c] {
      dup2(STDERR_FILENO, STDOUT_FILENO);
      context.state_machine->current_state = screen_none;
      world.failing = {{"calloc", c.call}};
      enter(c.screen);
    };
    const std::string line = std::string("Could not allocat memory for ") + c.record + "!\n$";
    EXPECT_EXIT(change(), testing::ExitedWithCode(1), line);
  }
}
