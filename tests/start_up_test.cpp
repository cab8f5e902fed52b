// The whole program from its entry to "Closing...".

#include <SDL.h>
#include <gmock/gmock.h>

#include "core/context.h"
#include "core/window.h"
#include "media/sounds.h"
#include "tests/support/stage.h"

int game_main(int argc, char *argv[]);

namespace {

// The output of the program, started with these arguments; `look` happens and the window is closed in its
// first frame.
std::string run(std::map<std::string, int> failing = {}, std::function<void()> look = {},
                std::vector<const char *> arguments = {}) {
  world = {};
  world.failing = failing;
  world.on_delay = [&look] {
    if (look) look();
    push_keys("Q");
  };
  screen_width = 800;
  screen_height = 640;
  arguments.insert(arguments.begin(), "vantaro-pugnado");
  const std::string output = output_of([&arguments] {
    EXPECT_EQ(game_main(static_cast<int>(arguments.size()), const_cast<char **>(arguments.data())), 0);
  });
  EXPECT_TRUE(gWindow == nullptr && gRenderer == nullptr && world.textures == 0);
  return output;
}

std::string samples(const Mix_Chunk *chunk) {
  return {reinterpret_cast<const char *>(chunk->abuf), chunk->alen};
}

}  // namespace

TEST(start_up, sets_everything_up_and_releases_it_in_order) {
  run({}, [] {
    SDL_BlendMode mode;
    SDL_GetRenderDrawBlendMode(gRenderer, &mode);
    EXPECT_EQ(mode, SDL_BLENDMODE_BLEND);
    for (const auto &[sound, file] : {std::pair{gPunchHit, "hit"}, {gPunch, "miss"}, {gBell, "end"}}) {
      Mix_Chunk *expected = Mix_LoadWAV((std::string("assets/") + file + ".wav").c_str());
      EXPECT_EQ(samples(sound), samples(expected)) << file;
      Mix_FreeChunk(expected);
    }
  });
  EXPECT_THAT(world.calls, testing::HasSubstr(" SDL_SetWindowIcon "));
  EXPECT_EQ(world.seed, 1000u);
  const std::string set_up =  // video; a window anywhere, shown; accelerated; PNG; 16 bits, stereo
      "SDL_Init 32 SDL_GetCurrentVideoDriver SDL_GetHint SDL_VIDEODRIVER SDL_SetHint "
      "SDL_RENDER_SCALE_QUALITY 1 "
      "SDL_CreateWindow Vantaro Pugnado 536805376 536805376 800 640 4 SDL_CreateRenderer -1 2 "
      "IMG_Init 2 TTF_Init SDL_GetHint SDL_AUDIODRIVER Mix_OpenAudio 44100 32784 2 2048 ";
  EXPECT_EQ(world.calls.substr(0, set_up.size()), set_up);
  EXPECT_EQ(
      world.calls.substr(world.calls.find("TTF_CloseFont")),
      "TTF_CloseFont TTF_CloseFont TTF_CloseFont SDL_DestroyTexture SDL_DestroyTexture SDL_DestroyTexture "
      "SDL_DestroyTexture SDL_DestroyTexture Mix_FreeChunk Mix_FreeChunk Mix_FreeChunk SDL_DestroyRenderer "
      "SDL_DestroyWindow TTF_Quit IMG_Quit Mix_Quit SDL_Quit ");
}

TEST(start_up, window_has_the_size_of_the_command_line) {
  const struct {
    std::vector<const char *> arguments;
    SDL_Point size;
  } cases[] = {{{}, {800, 640}},
               {{"1024"}, {1024, 640}},
               {{"1000abc", " +700.9", "more"}, {1000, 700}},
               {{"wide", "0x10"}, {800, 640}},
               {{"99999999999999999999", "2147483648"}, {800, 640}},
               {{"-2147483649", "-5"}, {800, 1}}};
  for (const auto &c : cases) {
    run(
        {},
        [&c] {
          EXPECT_EQ(std::tie(context.window_width, context.window_height), std::tie(c.size.x, c.size.y));
        },
        c.arguments);
  }
  EXPECT_EQ(run({}, {}, {"20000", "1"}),
            "Window could not be created! SDL ERROR: *\nFailed to initialize!\nClosing...\n");
}

TEST(start_up, failing_call_is_reported) {
  const std::string image = "SDL_image could not init! SDL_image error: *\n",
                    media = "Failed to load media!\n";
  const std::string font = "SDL_ttf could not init! SDL_ttf error: *\n", given_up = "Failed to initialize!\n";
  const std::string named = "Sound driver dummy could not be opened! SDL Error: *\n";
  const std::string audio = named + "SDL_mixer could not initialize! SDL_Mixer Error: *\n";
  const std::string no_sdl = "SDL could not init! SDL Error: *\n", no_game = "Failed to init game!\n";
  const std::string sound =
      "Failed to load sound chunk! SDL_mixer Error: *";  // the one line without a line break
  const std::string no_image = "Unable to load image assets/";
  std::string fonts, arrows;
  const std::string head =
      no_image + "dot.png! SDL_image Error: *\nFailed to load texture image! black head!\n";
  for (const std::string size : {"normal", "big", "small"})
    fonts += "Failed to load " + size + " font! SDL_ttf Error: *\n";
  for (const std::string file : {"to_right", "to_left", "down", "up"})
    arrows += no_image + file + ".png! SDL_image Error: *\nFailed to load texture image! title!\n";
  const std::pair<std::map<std::string, int>, std::string> cases[] = {
      {{{"SDL_Init", 1}}, no_sdl + given_up},
      {{{"SDL_GetCurrentVideoDriver", 1}, {"SDL_GetHint", 1}}, no_sdl + given_up},
      {{{"SDL_GetCurrentVideoDriver", 1}}, ""},  // unseen, as was asked for
      {{{"SDL_SetHint", 1}}, "Warning: linear texture filtering is not enabled!\n"},
      {{{"SDL_CreateRenderer", 1}}, ""},  // any other will do
      {{{"SDL_CreateRenderer", 0}}, "Renderer could not be created! SDL Error: *\n" + given_up},
      {{{"IMG_Init", 1}}, image + given_up},
      {{{"Mix_OpenAudio", 1}}, named},
      {{{"IMG_Init", 1}, {"TTF_Init", 1}, {"Mix_OpenAudio", 0}}, image + font + audio + given_up},
      {{{"calloc", 1}}, "Could not allocate memory for timer.\n" + no_game},
      {{{"calloc", 2}}, "Could not allocate memory for cap timer.\n" + no_game},
      {{{"calloc", 3}}, "Could not allocate memory for state.\n" + no_game},
      {{{"TTF_OpenFont", 0}, {"IMG_Load", 0}}, fonts + arrows + head + media},
      {{{"IMG_Load", 6}}, head + media},
      {{{"SDL_RWFromFile", 1}}, sound + "Failed to load sound!\n"},
      {{{"SDL_RWFromFile", 2}}, sound},
      {{{"SDL_RWFromFile", 3}}, sound}};
  for (const auto &[failing, lines] : cases) {
    EXPECT_EQ(run(failing), lines + "Closing...\n");
    EXPECT_EQ(world.box, "");
  }
}

TEST(start_up, options_say_what_is_shown_and_where) {
  EXPECT_EQ(run({}, {}, {"--version"}), "Vantaro Pugnado 1.0.1\n");
  EXPECT_THAT(run({}, {}, {"--help"}), testing::StartsWith("Usage: vantaro-pugnado "));
  run({}, [] { EXPECT_EQ(context.window_width, 333); }, {"--message-box", "333"});
  EXPECT_EQ(world.box, "");
  run({{"TTF_Init", 1}}, {}, {"--message-box"});
  EXPECT_THAT(world.box, testing::EndsWith("on demand\nFailed to initialize!\n"));
  run({}, [] { EXPECT_EQ(context.window_width, 1024); },
      {"--nonesuch", "5", "--fullscreen", "7"});  // all of the display
  full_screen = false;
}
