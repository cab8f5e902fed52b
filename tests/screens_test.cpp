// Keys of the screens, as far as the recorded matches do not press them, and the report of what fails.

#include <unistd.h>

#include "app/main_loop.h"
#include "tests/support/stage.h"

TEST(screens, keys) {
  const struct {
    int screen;
    const char *keys;  // of push_keys()
    int selected = 1, next_screen = screen_none, paused = pause_none, mode = mode_two_players;
  } cases[] = {{screen_main_menu, "xXEr"},
               {screen_main_menu, "DDR", 3, screen_lan},
               {screen_main_menu, "UN", 5, screen_quit},
               {screen_main_menu, "DQD", 2, screen_quit},
               {screen_options, "UQE", 4, screen_quit},
               {screen_game, "DXR"},
               {screen_game, "EX", 1, screen_none, pause_local},
               {screen_game, "QE", 1, screen_quit},
               {screen_game, "F", 1, screen_none, pause_local},
               {screen_game, "MF", 1, screen_none, pause_local},
               {screen_game, "EUM", 3, screen_none, pause_local},
               {screen_game, "FM", 1, screen_none, pause_none, mode_lan}};
  open_game game(800, 640);
  for (const auto &c : cases) {
    context.game_mode = static_cast<Uint8>(c.mode);
    const int &selected = *static_cast<int *>(enter(c.screen));  // every screen's record begins with it
    push_keys(c.keys);
    context.state_machine->handle_input();
    const int paused = c.screen == screen_game ? current_game()->paused : pause_none;
    EXPECT_EQ(std::tie(selected, context.state_machine->next_state, paused),
              std::tie(c.selected, c.next_screen, c.paused))
        << "screen " << c.screen << ", keys " << c.keys;
    EXPECT_EQ(context.game_mode, c.next_screen == screen_lan ? mode_lan : c.mode);
  }
}

TEST(screens, without_a_text_are_reported_and_go_on) {
  const struct {
    int screen, text;  // the latter counted as they are made
    const char *line;
  } cases[] = {{screen_main_menu, 1, "Unable to render title texture!\n"},
               {screen_main_menu, 5, "Unable to load texture from text!\n"},
               {screen_options, 1, "Unable to create options title texture!\n"},
               {screen_options, 2, "Unable to create option sound texture!\n"},
               {screen_options, 6, "Unable to create option difficulty texture!\n"},
               {screen_options, 7, "Unable to create option time texture!\n"},
               {screen_game, 1, "Unable to load texture from text (Time)!\n"},
               {screen_game, 3, "Unable to load texture from text (Score)!\n"},
               {screen_game, 4, "Unable to load texture from text (Pause title)!\n"},
               {screen_game, 5, "Unable to load texture from text (pause sound)!\n"},
               {screen_game, 7, ""},
               {screen_end, 1, "Unable to create game over texture!\n"},
               {screen_end, 2, "Unable to create score texture!\n"}};
  open_game game(800, 640);
  for (const auto &c : cases) {
    enter(screen_game);
    world.failing = {{"TTF_RenderUTF8_Solid", c.text}};
    EXPECT_EQ(output_of([&c] {
                enter(c.screen);
                push_keys("RDRDRE");
                context.state_machine->handle_input();
                context.state_machine->render();
              }),
              "Unable to render text suraface! SDL_ttf Error: *\n" + std::string(c.line));
  }
  world.failing = {{"SDL_CreateTextureFromSurface", 1}};
  EXPECT_EQ(output_of([] { enter(screen_main_menu); }),
            "Unable to create texture from rendered text! SDL Error: *\nUnable to render title texture!\n");
}

TEST(screens, missing_memory_ends_the_process_with_a_line) {
  world = {};
  context = {};
  EXPECT_TRUE(context_init());
  const auto change = [] {
    dup2(STDERR_FILENO, STDOUT_FILENO);
    world.failing = {{"calloc", 2}};
    enter(screen_game);
  };
  EXPECT_EXIT(change(), testing::ExitedWithCode(1), "Could not allocat memory for fighter!\n$");
  context_teardown();
}
