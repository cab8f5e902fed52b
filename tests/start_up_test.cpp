// The whole program from its entry to "Closing...".

#include <gmock/gmock.h>

#include <cstring>

#include "core/version.h"
#include "core/window.h"
#include "media/sounds.h"
#include "tests/support/network.h"
#include "tests/support/stage.h"

int game_main(int argc, char *argv[]);

namespace {

// The output of the program, started with these arguments; `look` happens and the window is closed in its
// first frame.
std::string run(std::vector<const char *> arguments, std::function<void()> look = {},
                std::map<std::string, int> failing = {}) {
  world = {};
  world.failing = failing;
  world.on_delay = [&look] {
    if (look) look();
    push_keys("Q");
  };
  screen_width = 800;
  screen_height = 640;
  full_screen = false;
  arguments.insert(arguments.begin(), "vantaro-pugnado");
  const std::string output = output_of([&arguments] {
    const int status = game_main(static_cast<int>(arguments.size()), const_cast<char **>(arguments.data()));
    EXPECT_EQ(status, network.fails.empty() ? 0 : 1);  // nothing else that fails changes it
  });
  EXPECT_TRUE(gWindow == nullptr && gRenderer == nullptr && world.textures == 0);
  return output;
}

}  // namespace

TEST(start_up, sets_everything_up_and_releases_it_in_order) {
  run({}, [] {
    SDL_BlendMode mode;
    SDL_GetRenderDrawBlendMode(gRenderer, &mode);
    EXPECT_EQ(mode, SDL_BLENDMODE_BLEND);
    EXPECT_TRUE(SDL_IsTextInputActive() == SDL_FALSE && SDL_WasInit(SDL_INIT_GAMECONTROLLER) != 0);
    for (const auto &[sound, file] : {std::pair{gPunchHit, "hit"}, {gPunch, "miss"}, {gBell, "end"}}) {
      Mix_Chunk *expected = Mix_LoadWAV((std::string("assets/") + file + ".wav").c_str());
      EXPECT_EQ(std::memcmp(sound->abuf, expected->abuf, expected->alen), 0) << file;
      Mix_FreeChunk(expected);
    }
  });
  EXPECT_THAT(world.calls,
              testing::StartsWith("srand 1000 SDL_Init 32 "  // video
                                  "SDL_GetCurrentVideoDriver SDL_GetHint SDL_VIDEODRIVER "
                                  "SDL_SetHint SDL_RENDER_SCALE_QUALITY 1 "
                                  "SDL_CreateWindow Vantaro Pugnado 536805376 536805376 800 640 4 "  // shown
                                  "SDL_CreateRenderer -1 2 "  // accelerated
                                  "IMG_Init 2 TTF_Init "      // PNG
                                  "SDL_GetHint SDL_AUDIODRIVER "
                                  "Mix_OpenAudio 44100 32784 2 2048 "  // 16 bits, stereo
                                  "IMG_Load assets/icon.png SDL_SetWindowIcon "));
  const std::string release =
      "TTF_CloseFont TTF_CloseFont TTF_CloseFont SDL_DestroyTexture SDL_DestroyTexture SDL_DestroyTexture "
      "SDL_DestroyTexture SDL_DestroyTexture Mix_FreeChunk Mix_FreeChunk Mix_FreeChunk SDL_DestroyRenderer "
      "SDL_DestroyWindow TTF_Quit IMG_Quit Mix_Quit SDL_Quit ";
  EXPECT_THAT(world.calls, testing::EndsWith(release));
}

TEST(start_up, ring_fills_four_fifths_of_the_window_that_was_asked_for) {
  const struct {
    std::vector<const char *> arguments;
    SDL_Point window;
    SDL_Rect ring;
  } cases[] = {{{"335"}, {335, 640}, {33, 80, 268, 480}},
               {{"334abc", " +239.9", "more"}, {334, 239}, {100, 71, 134, 96}},
               {{"wide", "--nonesuch", "0x10"}, {800, 640}, {132, 80, 536, 480}},
               {{"99999999999999999999", "2147483648"}, {800, 640}, {132, 80, 536, 480}},
               {{"1", "-5"}, {1, 1}, {-66, -47, 134, 96}},
               {{"--fullscreen", "7"}, {1024, 768}, {110, 96, 804, 576}}};
  for (const auto &c : cases) {
    run(c.arguments, [&c] {
      EXPECT_EQ(std::tie(context.window_width, context.window_height), std::tie(c.window.x, c.window.y));
      EXPECT_TRUE(SDL_RectEquals(&context.ring, &c.ring)) << context.ring.x << ", " << context.ring.y;
      EXPECT_EQ(SDL_ShowCursor(SDL_QUERY), full_screen ? SDL_DISABLE : SDL_ENABLE);
    });
    EXPECT_EQ(world.box, "");
  }
  EXPECT_THAT(world.calls, testing::HasSubstr(" 1024 768 4101 "));  // shown, and as large as the display
}

TEST(start_up, options_and_a_missing_network_say_something) {
  EXPECT_EQ(run({"--version"}), std::string("Vantaro Pugnado ") + program_version + "\n");
  EXPECT_THAT(run({"--help"}), testing::HasSubstr("in a window of 800 x 640 pixels or of the size given.\n"));
  run({"--message-box"}, {}, {{"TTF_Init", 1}});
  EXPECT_THAT(world.box, testing::EndsWith("on demand\nFailed to initialize!\n"));
  network.fails = {"start"};
  EXPECT_EQ(run({"--message-box"}), "WS could not be init\n");
  EXPECT_THAT(world.box, testing::EndsWith("WS could not be init\n"));
  network = {};
}

TEST(start_up, failing_call_is_reported) {
  const std::string no_sdl = "SDL could not init! SDL Error: *\nFailed to initialize!\n",
                    no_driver = "Sound driver dummy could not be opened! SDL Error: *\n",
                    no_sound = "Failed to load sound chunk! SDL_mixer Error: *";  // without a line break
  const std::pair<std::map<std::string, int>, std::string> cases[] = {
      // 0: all calls of the function fail
      {{{"SDL_Init", 1}}, no_sdl},
      {{{"SDL_GetCurrentVideoDriver", 1}, {"SDL_GetHint", 1}}, no_sdl},
      {{{"SDL_GetCurrentVideoDriver", 1}}, ""},  // unseen, as was asked for
      {{{"SDL_SetHint", 1}}, "Warning: linear texture filtering is not enabled!\n"},
      {{{"SDL_CreateWindow", 1}}, "Window could not be created! SDL ERROR: *\nFailed to initialize!\n"},
      {{{"SDL_CreateRenderer", 1}}, ""},  // any other will do
      {{{"SDL_CreateRenderer", 0}}, "Renderer could not be created! SDL Error: *\nFailed to initialize!\n"},
      {{{"IMG_Init", 1}}, "SDL_image could not init! SDL_image error: *\nFailed to initialize!\n"},
      {{{"Mix_OpenAudio", 1}}, no_driver},  // the game goes on in silence
      {{{"TTF_Init", 1}, {"Mix_OpenAudio", 0}},
       "SDL_ttf could not init! SDL_ttf error: *\n" + no_driver +
           "SDL_mixer could not initialize! SDL_Mixer Error: *\nFailed to initialize!\n"},
      {{{"calloc", 1}}, "Could not allocate memory for timer.\nFailed to init game!\n"},
      {{{"calloc", 2}}, "Could not allocate memory for cap timer.\nFailed to init game!\n"},
      {{{"calloc", 3}}, "Could not allocate memory for state.\nFailed to init game!\n"},
      {{{"TTF_OpenFont", 0}, {"IMG_Load", 5}},
       "Failed to load normal font! SDL_ttf Error: *\nFailed to load big font! SDL_ttf Error: *\n"
       "Failed to load small font! SDL_ttf Error: *\nUnable to load image assets/up.png! SDL_image Error: *\n"
       "Failed to load texture image! title!\nFailed to load media!\n"},
      {{{"SDL_CreateTextureFromSurface", 5}},
       "Unable to create texture from assets/dot.png! SDL Error: *\n"
       "Failed to load texture image! black head!\nFailed to load media!\n"},
      {{{"SDL_RWFromFile", 1}}, no_sound + "Failed to load sound!\n"},
      {{{"SDL_RWFromFile", 2}}, no_sound},
      {{{"SDL_RWFromFile", 3}}, no_sound}};
  for (const auto &[failing, lines] : cases) EXPECT_EQ(run({}, {}, failing), lines + "Closing...\n");
}
