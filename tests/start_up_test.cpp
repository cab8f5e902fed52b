// The whole program from its entry to "Closing...".

#include <SDL.h>
#include <gmock/gmock.h>

#include "core/context.h"
#include "core/window.h"
#include "tests/support/stage.h"

int game_main(int argc, char *argv[]);

namespace {

// The output of the program when some calls fail, `look` happens and the window is closed in its first frame.
std::string run(std::map<std::string, int> failing, std::function<void()> look,
                std::vector<const char *> arguments = {}) {
  world = {};
  world.failing = failing;
  world.on_delay = [&look] {
    look();
    push_keys("Q");
  };
  arguments.insert(arguments.begin(), "");
  const std::string output = output_of([&arguments] {
    EXPECT_EQ(game_main(static_cast<int>(arguments.size()), const_cast<char **>(arguments.data())), 0);
  });
  EXPECT_TRUE(gWindow == nullptr && gRenderer == nullptr && world.textures == 0);
  return output;
}

}  // namespace

TEST(start_up, sets_up_window_and_renderer_and_releases_in_order) {
  run({}, [] {
    SDL_BlendMode mode;
    SDL_GetRenderDrawBlendMode(gRenderer, &mode);
    EXPECT_EQ(mode, SDL_BLENDMODE_BLEND);
    EXPECT_STREQ(SDL_GetWindowTitle(gWindow), "Vantaro Pugnado");
    EXPECT_STREQ(SDL_GetHint(SDL_HINT_RENDER_SCALE_QUALITY), "1");
  });
  EXPECT_THAT(world.calls, testing::HasSubstr(" SDL_SetWindowIcon "));
  EXPECT_EQ(world.seed, 1000u);
  EXPECT_EQ(
      world.calls.substr(world.calls.find("TTF_CloseFont")),
      "TTF_CloseFont TTF_CloseFont TTF_CloseFont SDL_DestroyTexture SDL_DestroyTexture SDL_DestroyTexture "
      "SDL_DestroyTexture SDL_DestroyTexture Mix_FreeChunk Mix_FreeChunk Mix_FreeChunk SDL_DestroyRenderer "
      "SDL_DestroyWindow TTF_Quit IMG_Quit Mix_Quit SDL_Quit ");
}

TEST(start_up, failing_call_is_reported) {
  const std::string image = "SDL_image could not init! SDL_image error: *\n",
                    given_up = "Failed to initialize!\n";
  const std::string font = "SDL_ttf could not init! SDL_ttf error: *\n", no_game = "Failed to init game!\n";
  const std::string named = "Sound driver dummy could not be opened! SDL Error: *\n";
  const std::string audio = named + "SDL_mixer could not initialize! SDL_Mixer Error: *\n";
  const std::pair<std::map<std::string, int>, std::string> cases[] = {
      {{{"SDL_Init", 1}}, "SDL could not init! SDL Error: *\n" + given_up},
      {{{"SDL_SetHint", 1}}, "Warning: linear texture filtering is not enabled!\n"},
      {{{"SDL_CreateWindow", 1}}, "Window could not be created! SDL ERROR: *\n" + given_up},
      {{{"SDL_CreateRenderer", 1}}, ""},  // any other will do
      {{{"SDL_CreateRenderer", 0}}, "Renderer could not be created! SDL Error: *\n" + given_up},
      {{{"IMG_Init", 1}}, image + given_up},
      {{{"TTF_Init", 1}}, font + given_up},
      {{{"Mix_OpenAudio", 1}}, named},
      {{{"Mix_OpenAudio", 0}}, audio + given_up},
      {{{"IMG_Init", 1}, {"TTF_Init", 1}, {"Mix_OpenAudio", 0}}, image + font + audio + given_up},
      {{{"calloc", 1}}, "Could not allocate memory for timer.\n" + no_game},
      {{{"calloc", 2}}, "Could not allocate memory for cap timer.\n" + no_game},
      {{{"calloc", 3}}, "Could not allocate memory for state.\n" + no_game}};
  for (const auto &[failing, lines] : cases) {
    EXPECT_EQ(run(failing, [] {}), lines + "Closing...\n");
    EXPECT_EQ(world.box, "");
  }
}

TEST(start_up, options_say_what_is_shown_and_where) {
  EXPECT_EQ(run({}, [] {}, {"--version"}), "Vantaro Pugnado 1.0.1\n");
  EXPECT_THAT(run({}, [] {}, {"--help"}), testing::StartsWith("Usage: vantaro-pugnado "));
  run({}, [] { EXPECT_EQ(context.window_width, 333); }, {"--message-box", "333"});
  EXPECT_EQ(world.box, "");
  run({{"TTF_Init", 1}}, [] {}, {"--message-box"});
  EXPECT_THAT(world.box, testing::EndsWith("on demand\nFailed to initialize!\n"));
  run({}, [] { EXPECT_EQ(context.window_width, 1024); },
      {"--nonesuch", "5", "--fullscreen", "7"});  // all of the display
  full_screen = false;
}
