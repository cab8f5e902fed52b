#pragma once

// What stands in for the world around the game while tests run: clocks that stand still, scripted random
// numbers, calls that fail on demand, and records of what was called, played, written and shown. The linker
// puts it in place (--wrap, the list is in tests/support/CMakeLists.txt).

#include <SDL.h>

#include <ctime>
#include <deque>
#include <functional>
#include <map>
#include <random>
#include <string>
#include <vector>

struct world_record {
  Uint32 ticks = 0;                    // ms, the tick counter; SDL_Delay moves it on
  std::time_t seconds = 1000;          // s, the system clock
  std::deque<int> draws;               // what rand gives; a draw beyond them fails the test
  std::mt19937 *dice = nullptr;        // what rand gives instead, where it is set
  std::map<std::string, int> failing;  // the call of a function that is to fail from now on, 0 for all
  std::function<void()> on_delay;      // runs in every SDL_Delay
  std::vector<Uint32> delays;          // ms of every SDL_Delay
  std::string calls;                   // the wrapped functions that succeeded, with their numbers and texts
  int textures = 0;                    // made and not yet destroyed
  long blocks = 0;                     // of calloc, not yet freed
  std::string sounds;                  // "hit ", "miss ", "bell " as they were played
  std::string box;                     // what the message boxes said
  std::string texts;                   // every rendered text and a bar
};
extern world_record world;
