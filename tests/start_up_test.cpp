// The whole program from its entry to "Closing...".

#include <SDL.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "app/context.h"
#include "app/window.h"
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
  EXPECT_EQ(world.seed, 1000u);
  const std::string anywhere = std::to_string(SDL_WINDOWPOS_UNDEFINED) + " ";
  const std::string set_up =
      "SDL_Init 48 SDL_GetCurrentVideoDriver SDL_GetHint SDL_VIDEODRIVER SDL_SetHint "
      "SDL_RENDER_SCALE_QUALITY 1 "
      "SDL_CreateWindow Vantaro Pugnado " +
      anywhere + anywhere +
      "800 640 4 SDL_CreateRenderer -1 2 IMG_Init 2 TTF_Init Mix_OpenAudio 44100 32784 2 2048 ";
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
                    given_up = "Failed to initialize!\n";
  const std::string font = "SDL_ttf could not init! SDL_ttf error: *\n", no_game = "Failed to init game!\n";
  const std::string audio = "SDL_mixer could not initialize! SDL_Mixer Error: *\n";
  const std::pair<std::map<std::string, int>, std::string> cases[] = {
      {{{"SDL_Init", 1}}, "SDL could not init! SDL Error: *\n" + given_up},
      {{{"SDL_GetCurrentVideoDriver", 1}, {"SDL_GetHint", 1}},
       "SDL could not init! SDL Error: *\n" + given_up},
      {{{"SDL_GetCurrentVideoDriver", 1}}, ""},  // unseen, as was asked for
      {{{"SDL_SetHint", 1}}, "Warning: linear texture filtering is not enabled!\n"},
      {{{"SDL_CreateRenderer", 1}}, "Renderer could not be created! SDL Error: *\n" + given_up},
      {{{"IMG_Init", 1}}, image + given_up},
      {{{"IMG_Init", 1}, {"TTF_Init", 1}, {"Mix_OpenAudio", 1}}, image + font + audio + given_up},
      {{{"calloc", 1}}, "Could not allocate memory for timer.\n" + no_game},
      {{{"calloc", 2}}, "Could not allocate memory for cap timer.\n" + no_game},
      {{{"calloc", 3}}, "Could not allocate memory for state.\n" + no_game}};
  for (const auto &[failing, lines] : cases) {
    EXPECT_EQ(run(failing), lines + "Closing...\n");
  }
}

TEST(start_up, missing_asset_is_reported) {
  const std::string media = "Failed to load media!\n",
                    sound = "Failed to load sound chunk! SDL_mixer Error: *";
  std::string fonts, images;
  for (const char *size : {"normal", "big", "small"})
    fonts += std::string("Failed to load ") + size + " font! SDL_ttf Error: *\n";
  std::vector<std::pair<std::string, std::string>> cases = {{"8bit_block.ttf", fonts + media},
                                                            {"hit.wav", sound + "Failed to load sound!\n"},
                                                            {"miss.wav", sound},
                                                            {"end.wav", sound}};
  for (const std::string file : {"to_right.png", "to_left.png", "down.png", "up.png", "dot.png"}) {
    const std::string lines = "Unable to load image assets/" + file + "! SDL_image Error: *\n" +
                              "Failed to load texture image! " +
                              (file == "dot.png" ? "black head!\n" : "title!\n");
    cases.emplace_back(file, lines + media);
    images += lines;
  }
  cases.emplace_back("", fonts + images + media);
  namespace fs = std::filesystem;
  const fs::path home = fs::current_path(), away = home / "build" / "away";
  for (const auto &[file, lines] : cases) {
    fs::create_directories(away);
    fs::copy(home / "assets", away / "assets", fs::copy_options::recursive);
    fs::remove_all(away / "assets" / file);
    fs::current_path(away);
    EXPECT_EQ(run(), lines + "Closing...\n") << file;
    fs::current_path(home);
    fs::remove_all(away);
  }
}
