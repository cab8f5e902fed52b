#pragma once

// The pair of fighters that the options screen, the lobby and the end screen show as still pictures. The
// screen that is current owns them.

#include <cstdint>

struct fighter;

extern fighter *fighter1;  // faces right; null while no screen shows the pair
extern fighter *fighter2;  // faces left; null while no screen shows the pair

// Where a preview fighter stands, in blocks of the ring, and its colour id.
struct preview_place {
  int unit_x;
  int unit_y;
  std::uint16_t color;
};

// Makes the two fighters; ends the process when there is no memory.
void preview_create(const preview_place &place1, const preview_place &place2);
// Releases them and clears the pointers.
void preview_destroy();
// Draws them with the units in force.
void preview_render();

// Shrinks the units to a 300th of the window's height and the ring to one row of fighters, with its top at
// `row` of the window's height.
void preview_shrink_layout(double row);
// Brings back the units and the ring of a match.
void preview_restore_layout();
