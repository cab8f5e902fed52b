#include <gtest/gtest.h>

#include "core/timer.h"
#include "core/utility.h"
#include "tests/support/world.h"

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

TEST(utility, random_text_takes_a_class_and_a_character) {
  world.draws = {1, 8, 2, 24, 3, 24, 4, 9, 5, 25, 0, 26, 7, 0, 8, 1};
  char text[] = "..........";
  EXPECT_EQ(random_bytes(8, text), text);
  EXPECT_STREQ(text, "8yY0aB0b");
  EXPECT_EQ(text[9], '.');
  EXPECT_STREQ(random_bytes(0, text), "");
}
