#pragma once

// A stopwatch over SDL's millisecond tick counter that can be paused. Differences are taken in unsigned
// 32-bit arithmetic, so a reading stays right when the counter wraps after 49.7 days.

#include <cstdint>

struct timer {
  std::uint32_t start_ticks;   // tick (ms) of the start, shifted by pauses; 0 while paused or stopped
  std::uint32_t paused_ticks;  // ms measured up to the pause; 0 while running or stopped
  bool paused;                 // implies started
  bool started;                // running or paused
};

// Leaves the stopwatch stopped at 0.
void timer_init(timer *timer);
// Runs from 0, whatever it did before.
void timer_start(timer *timer);
// Stops and clears the reading.
void timer_stop(timer *timer);
// Holds the reading of a running stopwatch; otherwise changes nothing.
void timer_pause(timer *timer);
// Runs on from the reading of a paused stopwatch; otherwise changes nothing.
void timer_unpause(timer *timer);
// The reading in ms; 0 when stopped.
std::uint32_t timer_get_ticks(const timer *timer);
// True while running or paused.
bool timer_is_started(const timer *timer);
// True while paused.
bool timer_is_paused(const timer *timer);
