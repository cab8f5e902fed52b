// The loop and its timers.

#include "app/main_loop.h"

#include "core/timer.h"
#include "tests/support/stage.h"

TEST(main_loop, changes_screens_before_it_draws_sleeps_out_33_ms_and_closes_whatever_happens) {
  open_game game(800, 640);
  enter(screen_main_menu);
  context.state_machine->update = [] {
    constexpr Uint32 work[] = {0, 5, 33, 40, 32};  // ms, by frame
    world.ticks += work[context.frame_count];
    if (context.frame_count == 4) context.state_machine->next_state = screen_game;
  };
  context.state_machine->render = [] { EXPECT_LT(context.frame_count, 4u); };
  world.on_delay = [] {  // in the sixth frame the window is closed and another screen asked for
    if (context.frame_count < 5) return;
    push_keys("Q");
    context.state_machine->update = [] {
      if (context.frame_count == 5) context.state_machine->next_state = screen_end;
    };
  };
  context_loop();
  EXPECT_EQ(world.delays, (std::vector<Uint32>{33, 28, 1, 33}));
}

TEST(timer, measures_what_runs_between_pauses) {
  const struct {
    void (*operation)(timer *);
    Uint32 wait, reading;  // ms after the operation
    bool started = true, paused = false;
  } steps[] = {{timer_init, 7, 0, false}, {timer_unpause, 1, 0, false},     {timer_pause, 1, 0, false},
               {timer_start, 10, 10},     {timer_unpause, 0, 10},           {timer_pause, 50, 10, true, true},
               {timer_unpause, 5, 15},    {timer_pause, 4, 15, true, true}, {timer_pause, 1, 15, true, true},
               {timer_start, 6, 6},       {timer_pause, 1, 6, true, true},  {timer_stop, 2, 0, false}};
  for (const Uint32 start : {100u, 0xFFFFFFF0u, 0xFFFFFFC0u}) {  // the counter wraps under way
    timer timer = {.start_ticks = 1, .paused_ticks = 2, .paused = true, .started = true};
    world.ticks = start;
    for (const auto &step : steps) {
      step.operation(&timer);
      world.ticks += step.wait;
      EXPECT_EQ(std::make_tuple(timer_get_ticks(&timer), timer_is_started(&timer), timer_is_paused(&timer)),
                std::tie(step.reading, step.started, step.paused))
          << "from " << start << ", step " << &step - steps;
    }
  }
}
