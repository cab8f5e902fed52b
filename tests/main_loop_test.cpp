// The loop, and the state machine below it, over screens that only keep a journal.

#include <gtest/gtest.h>

#include "app/main_loop.h"
#include "core/context.h"
#include "core/state_machine.h"
#include "tests/support/stage.h"

namespace {

// Of screen numbers, each with a letter for what is called: h hand_over, l load, i handle_input, u update,
// r render, x unload.
std::string journal;
std::function<void(char)> during;

template <int id, char what>
void note() {
  journal += std::to_string(id) + what + " ";
  during(what);
}

template <int id>
constexpr screen_entry fake = {.id = id,
                               .record_name = "fake",
                               .record_size = 64,  // for who asks a record for a field of its own
                               .hand_over = [](const void *, void *) { note<id, 'h'>(); },
                               .load = [](void *) { note<id, 'l'>(); },
                               .handle_input = note<id, 'i'>,
                               .update = note<id, 'u'>,
                               .render = note<id, 'r'>,
                               .unload = note<id, 'x'>};
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

TEST(main_loop, screens_change_between_update_and_render) {
  // By frame; the later request counts, but does not hold up a close.
  const int in_input[] = {1, 1, 1, 1, screen_quit}, in_update[] = {2, 4, 4, screen_none, 2};
  const auto action = [&](char now) {
    if (now == 'i') context.state_machine->next_state = in_input[context.frame_count];
    if (now == 'u') context.state_machine->next_state = in_update[context.frame_count];
  };
  EXPECT_EQ(run(action), "1h 1l 1i 1u 2h 1x 2l 2r 2i 2u 4h 2x 4l 4r 4i 4u 4h 4x 4l 4r 4i 4u 4r 4i 4u 4r 4x ");
  EXPECT_EQ(context.frame_count, 5u);
}

TEST(main_loop, frame_sleeps_out_the_rest_of_33_ms) {
  const Uint32 work[] = {0, 5, 32, 33, 40, 20};  // ms, by frame
  run([&work](char now) {
    if (now == 'u') world.ticks += work[context.frame_count];
    if (now == 'u' && context.frame_count == 5) context.state_machine->next_state = screen_quit;
  });
  EXPECT_EQ(world.delays, (std::vector<Uint32>{33, 28, 1, 13}));
}
