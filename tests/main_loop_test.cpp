// The loop, and the state machine below it, over screens that only keep a journal; the geometry of the ring.

#include <gtest/gtest.h>

#include "app/main_loop.h"
#include "core/context.h"
#include "core/state_machine.h"
#include "tests/support/stage.h"

namespace {

std::string journal;  // of screen numbers, each with a letter for what is called
std::function<void(char)> during;

template <int id, char what>
void note() {
  journal += std::to_string(id) + what + " ";
  during(what);
}

template <int id>
constexpr screen_entry fake = {id,
                               "fake",
                               64,  // bytes; enough for who asks a record for a field of its own
                               [](const void *, void *) { note<id, 'h'>(); },
                               [](void *) { note<id, 'l'>(); },
                               note<id, 'i'>,
                               note<id, 'u'>,
                               note<id, 'r'>,
                               note<id, 'x'>};
constexpr screen_entry fakes[] = {fake<1>, fake<2>, fake<4>};

// The journal of the whole life of a loop in which `action` happens at every letter.
std::string run(const std::function<void(char)> &action) {
  world = {};
  journal = "";
  during = action;
  EXPECT_TRUE(context_init());
  state_use_screens(context.state_machine, fakes);
  context_loop();
  context_teardown();
  return journal;
}

}  // namespace

TEST(main_loop, quit_renders_once_more_and_unloads_once) {
  for (const std::string requests : {"i6", "u6", "i6u2"}) {  // a later request does not hold a close up
    EXPECT_EQ(run([&requests](char now) {
                const auto request = requests.find(now);
                if (request != requests.npos) context.state_machine->next_state = requests[request + 1] - '0';
              }),
              "1h 1l 1i 1u 1r 1x ");
    EXPECT_EQ(context.frame_count, 1u);
  }
}

TEST(main_loop, screens_change_between_update_and_render) {
  const int requests[] = {2, 4, 4, 0, 6};
  const auto action = [&requests](char now) {
    if (now == 'i') context.state_machine->next_state = 1;  // the last request counts
    if (now == 'u') context.state_machine->next_state = requests[context.frame_count];
  };
  EXPECT_EQ(run(action), "1h 1l 1i 1u 2h 1x 2l 2r 2i 2u 4h 2x 4l 4r 4i 4u 4h 4x 4l 4r 4i 4u 4r 4i 4u 4r 4x ");
}

TEST(main_loop, frame_sleeps_out_the_rest_of_33_ms) {
  const Uint32 work[] = {0, 5, 32, 33, 40, 20};  // ms
  run([&work](char now) {
    if (now == 'u') world.ticks += work[context.frame_count];
    if (now == 'u' && context.frame_count == 5) context.state_machine->next_state = 6;
  });
  EXPECT_EQ(world.delays, (std::vector<Uint32>{33, 28, 1, 13}));
}

TEST(context, ring_fills_four_fifths_with_whole_blocks) {
  const struct {
    int width, height, unit_w, unit_h;
    SDL_Rect ring;
  } cases[] = {{800, 640, 4, 5, {132, 80, 536, 480}}, {1024, 768, 6, 6, {110, 96, 804, 576}},
               {100, 100, 1, 1, {-17, 2, 134, 96}},   {1, 1, 1, 1, {-66, -47, 134, 96}},
               {335, 240, 2, 2, {33, 24, 268, 192}},  {334, 239, 1, 1, {100, 71, 134, 96}}};
  for (const auto &c : cases) {
    context.window_width = c.width;
    context.window_height = c.height;
    context_calc_units();
    context_calc_ring();
    EXPECT_EQ(std::tie(context.unit_w, context.unit_h), std::tie(c.unit_w, c.unit_h));
    EXPECT_TRUE(SDL_RectEquals(&context.ring, &c.ring)) << context.ring.x << ", " << context.ring.y;
  }
}
