// What a frame of a match costs. game_render is compared with a floor that draws the same picture straight
// through SDL: the same fills, the same blocks at places worked out beforehand, the same texts. The two draw
// by turns in one process, on the software renderer and, where DISPLAY names a display, on the accelerated
// one. game_update is measured alone.
//
// Run it from the project's root, where assets/ is; it takes Google Benchmark's arguments.

#include <SDL.h>
#include <SDL_ttf.h>
#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <map>
#include <string>
#include <vector>

#include "app/application.h"
#include "app/main_loop.h"
#include "core/context.h"
#include "core/state_machine.h"
#include "core/window.h"
#include "fight/fighter.h"
#include "fight/fighter_masks.h"
#include "fight/game.h"
#include "media/graphics.h"
#include "media/sounds.h"
#include "screens/game_screen.h"

namespace {

constexpr int repetitions = 15;
constexpr double repetition_time = 0.4;   // s
constexpr int endless_match = 1'000'000;  // s

Uint32 played_ms = 0;  // what the game gets from SDL_GetTicks

// Starts a match in a picture: fighter 1 at full reach with its upper arm, fighter 2 hit and flexing its
// lower arm.
void pose_match() {
  game_state *game = current_game();
  game_unload();
  game_load(game);
  game->time_left = 75;
  game->fighter1->score = 42;
  game->fighter1->punch_phase = punch_full;
  game->fighter1->punching_arm = arm_upper;
  game->fighter1->flex_pose = flex_none;
  game->fighter2->score = 7;
  game->fighter2->knock_frames = 7;
  game->fighter2->flex_pose = flex_lower;
}

// The floor

std::vector<SDL_Rect> white_blocks;  // pixels; fighter 1
std::vector<SDL_Rect> black_blocks;  // pixels; fighter 2

struct {
  const char *text;
  double column;    // its centre, of the window's width
  SDL_Point place;  // its top-left corner, pixels
} floor_texts[] = {{"01:15", 0.5, {}}, {"42", 0.25, {}}, {"7", 0.75, {}}};

template <std::size_t rows>
void place_blocks(const mask<rows> &mask, const fighter *fighter, int first_row, int row_step,
                  std::vector<SDL_Rect> &blocks) {
  for (std::size_t row = 0; row < rows; ++row) {
    for (std::size_t column = 0; column < mask_columns; ++column) {
      if (!mask[row][column]) continue;
      const int across = static_cast<int>(fighter->side == side_right ? column : mask_columns - 1 - column);
      const int down = first_row + static_cast<int>(row) * row_step;
      blocks.push_back({fighter->x + context.unit_w * across, fighter->y + context.unit_h * down,
                        context.unit_w, context.unit_h});
    }
  }
}

std::vector<SDL_Rect> place_fighter(const fighter *fighter, const mask<arm_mask_rows> &upper_arm,
                                    const mask<head_mask_rows> &head, const mask<arm_mask_rows> &lower_arm) {
  std::vector<SDL_Rect> blocks;
  place_blocks(upper_arm, fighter, 0, 1, blocks);
  place_blocks(head, fighter, arm_mask_rows, 1, blocks);
  place_blocks(lower_arm, fighter, fighter_rows - 1, -1, blocks);
  return blocks;
}

void prepare_floor() {
  white_blocks = place_fighter(current_game()->fighter1, upper_left_2, head_normal_left, upper_left_0);
  black_blocks = place_fighter(current_game()->fighter2, upper_left_0, head_back, flex);
  for (auto &[text, column, place] : floor_texts) {
    int width = 0;
    int height = 0;
    TTF_SizeUTF8(gFont, text, &width, &height);
    place.x = static_cast<int>(context.window_width * column - width * 0.5);
    place.y = static_cast<int>((context.window_height - height) * 0.05);
  }
}

void draw_floor_text(const char *text, const SDL_Point &place) {
  SDL_Surface *surface = TTF_RenderUTF8_Solid(gFont, text, {255, 255, 255, 255});
  SDL_Texture *texture = SDL_CreateTextureFromSurface(gRenderer, surface);
  const SDL_Rect area = {place.x, place.y, surface->w, surface->h};
  SDL_FreeSurface(surface);
  SDL_RenderCopy(gRenderer, texture, nullptr, &area);
  SDL_DestroyTexture(texture);
}

void draw_floor() {
  SDL_RenderClear(gRenderer);
  SDL_SetRenderDrawColor(gRenderer, 12, 12, 17, 255);
  SDL_RenderFillRect(gRenderer, nullptr);
  SDL_SetRenderDrawColor(gRenderer, 20, 170, 40, 220);
  SDL_RenderFillRect(gRenderer, &context.ring);
  SDL_SetRenderDrawColor(gRenderer, 0, 90, 100, 255);
  SDL_RenderDrawRect(gRenderer, &context.ring);
  SDL_Texture *block = commet_texture.handle;
  SDL_SetTextureColorMod(block, 255, 255, 255);
  for (const SDL_Rect &place : white_blocks) SDL_RenderCopy(gRenderer, block, nullptr, &place);
  SDL_SetTextureColorMod(block, 0, 0, 0);
  for (const SDL_Rect &place : black_blocks) SDL_RenderCopy(gRenderer, block, nullptr, &place);
  for (const auto &[text, column, place] : floor_texts) draw_floor_text(text, place);
  SDL_RenderPresent(gRenderer);
}

// The pixels of a frame; empty on failure. They are drawn into a texture, since those of a window can no
// longer be read once it has been presented.
std::vector<Uint32> picture_of(void (*draw)()) {
  const int width = context.window_width;
  const int height = context.window_height;
  std::vector<Uint32> pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  constexpr Uint32 format = SDL_PIXELFORMAT_ARGB8888;
  SDL_Texture *target = SDL_CreateTexture(gRenderer, format, SDL_TEXTUREACCESS_TARGET, width, height);
  if (target == nullptr || SDL_SetRenderTarget(gRenderer, target) != 0) return {};
  draw();
  if (SDL_RenderReadPixels(gRenderer, nullptr, format, pixels.data(), width * 4) != 0) pixels.clear();
  SDL_SetRenderTarget(gRenderer, nullptr);
  SDL_DestroyTexture(target);
  return pixels;
}

// The benchmarks

// CPU time of one frame in us, that of all threads: OpenGL without a graphics card draws on several.
double frame_time(void (*draw)()) {
  const std::clock_t start = std::clock();
  draw();
  return static_cast<double>(std::clock() - start) * 1e6 / CLOCKS_PER_SEC;
}

// Both draw by turns, so that whatever else the machine does slows both alike.
void compare_frames(benchmark::State &state) {
  pose_match();
  prepare_floor();
  const std::vector<Uint32> picture = picture_of(game_render);
  if (picture.empty() || picture != picture_of(draw_floor)) {
    std::fputs("The floor does not draw the game's picture.\n", stderr);
    std::exit(1);
  }
  double game = 0;
  double floor = 0;
  for ([[maybe_unused]] auto iteration : state) {
    game += frame_time(game_render);
    floor += frame_time(draw_floor);
  }
  state.counters["game_render_us"] = {game, benchmark::Counter::kAvgIterations};
  state.counters["floor_us"] = {floor, benchmark::Counter::kAvgIterations};
  state.counters["ratio"] = game / floor;
}

// A match that never ends, fighter 1 throwing punch after punch. Frames follow each other without a pause,
// while the CPU opponent's timers see them at the game's pace.
void update_match(benchmark::State &state) {
  game_state *game = current_game();
  game_unload();
  game_load(game);
  played_ms = 0;
  for ([[maybe_unused]] auto iteration : state) {
    game->fighter1->score = 0;
    game->fighter2->score = 0;
    if (game->fighter1->punch_phase == punch_none) game->fighter1->punch_phase = punch_started;
    played_ms += screen_tick_per_frame;
    ++context.frame_count;
    game_update();
  }
}

// Prints the usual table and keeps the medians.
class median_reporter : public benchmark::ConsoleReporter {
 public:
  std::map<std::string, Run> medians;  // by benchmark

  median_reporter() : ConsoleReporter(OO_Tabular) {}

  void ReportRuns(const std::vector<Run> &runs) override {
    for (const Run &run : runs) {
      if (run.aggregate_name == "median") medians[run.run_name.function_name] = run;
    }
    ConsoleReporter::ReportRuns(runs);
  }
} reporter;

// Runs the benchmark in a match against the CPU, on SDL's drivers of these names ("" leaves the choice to
// SDL).
void measure(const char *name, void (*benchmark)(benchmark::State &state), const char *video_driver,
             const char *render_driver) {
  SDL_setenv("SDL_AUDIODRIVER", "dummy", 1);
  SDL_setenv("SDL_VIDEODRIVER", video_driver, 1);
  SDL_setenv("SDL_RENDER_DRIVER", render_driver, 1);
  if (!init() || !context_init() || !graphics_load() || !sounds_load()) std::exit(1);
  context.game_mode = mode_one_player;
  context.fight_time = endless_match;
  context.state_machine->next_state = screen_game;
  state_change(context.state_machine);
  benchmark::ClearRegisteredBenchmarks();
  benchmark::RegisterBenchmark(name, benchmark)
      ->Unit(benchmark::kMicrosecond)
      ->MinTime(repetition_time)
      ->Repetitions(repetitions)
      ->UseRealTime()
      ->DisplayAggregatesOnly();
  benchmark::RunSpecifiedBenchmarks(&reporter);
  context_teardown();
  close_sdl_window();
}

void print_render(const char *renderer) {
  auto &counters = reporter.medians[renderer].counters;
  std::printf("%s renderer: game_render %.0f us, floor %.0f us, ratio %.2f\n", renderer,
              counters["game_render_us"].value, counters["floor_us"].value, counters["ratio"].value);
}

}  // namespace

// The linker puts this in the place of SDL_GetTicks for the game's own calls. The real one is called all the
// same, so that its cost stays in the measurement.
extern "C" Uint32 __real_SDL_GetTicks();
extern "C" Uint32 __wrap_SDL_GetTicks() {
  benchmark::DoNotOptimize(__real_SDL_GetTicks());
  return played_ms;
}

int main(int argc, char *argv[]) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  const bool display = std::getenv("DISPLAY") != nullptr;
  measure("software", compare_frames, "dummy", "software");
  if (display) measure("accelerated", compare_frames, "x11", "");
  measure("game_update", update_match, "dummy", "software");
  print_render("software");
  if (display) print_render("accelerated");
  std::printf("game_update: %.3f us per frame\n", reporter.medians["game_update"].GetAdjustedCPUTime());
  return 0;
}
