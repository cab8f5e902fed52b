#include "core/timer.h"

#include <SDL.h>

void timer_init(timer *timer) {
  *timer = {};
}

void timer_start(timer *timer) {
  *timer = {.start_ticks = SDL_GetTicks(), .paused_ticks = 0, .paused = false, .started = true};
}

void timer_stop(timer *timer) {
  *timer = {};
}

void timer_pause(timer *timer) {
  if (!timer->started || timer->paused) return;
  timer->paused = true;
  timer->paused_ticks = SDL_GetTicks() - timer->start_ticks;
  timer->start_ticks = 0;
}

void timer_unpause(timer *timer) {
  if (!timer->started || !timer->paused) return;
  timer->paused = false;
  timer->start_ticks = SDL_GetTicks() - timer->paused_ticks;
  timer->paused_ticks = 0;
}

std::uint32_t timer_get_ticks(const timer *timer) {
  if (!timer->started) return 0;
  return timer->paused ? timer->paused_ticks : SDL_GetTicks() - timer->start_ticks;
}

bool timer_is_started(const timer *timer) {
  return timer->started;
}

bool timer_is_paused(const timer *timer) {
  return timer->paused && timer->started;
}
