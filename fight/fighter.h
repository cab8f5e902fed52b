#pragma once

// A fighter, seen from above: a head between two arms on a grid of 38 x 32 blocks. This header holds its
// record and the operations on it: place and movement (fighter.cpp), punches, hits and knock-back
// (fighter_punch.cpp) and drawing (fighter_render.cpp).
//
// Rows 0-10 of the grid hold the upper arm, rows 11-20 the head, rows 21-31 the lower arm. Head and shoulders
// fill the half away from the opponent; gloves reach into the other half.

#include <SDL.h>

#include <cstdint>

struct texture;

inline constexpr int fighter_columns = 38;       // blocks across
inline constexpr int fighter_rows = 32;          // blocks down
inline constexpr int fighter_body_columns = 19;  // blocks across the half that walls and fighters run into
inline constexpr int fighter_step = 4;           // blocks walked or knocked back per frame on an axis

enum fighter_side : int {
  side_left = 0,   // stands on the left, faces right
  side_right = 1,  // stands on the right, faces left
};

enum fighter_arm : int {
  arm_upper = 0,
  arm_lower = 1,
};

enum punch_phase : int {
  punch_none = 0,
  punch_started = 1,
  punch_half = 2,       // half extended, a hit scores 2
  punch_full = 3,       // fully extended, a hit scores 1
  punch_returning = 4,  // half extended on the way back
  punch_last = 6,
};

enum flex_pose : int {
  flex_upper = 0,  // also the number of the arm that is flexed
  flex_lower = 1,
  flex_both = 2,
  flex_none = 3,
};

struct fighter {
  int w;                    // pixels
  int h;                    // pixels
  int x;                    // left edge, pixels of the window
  int y;                    // top edge, pixels of the window
  int speed_x;              // pixels per frame of one held direction key
  int speed_y;              // pixels per frame of one held direction key
  int vel_x;                // pixels per frame asked for by keys, CPU or peer
  int vel_y;                // pixels per frame asked for by keys, CPU or peer
  int knock_vel_x;          // pixels per frame while knocked back
  int knock_vel_y;          // pixels per frame while knocked back
  int knock_speed_x;        // pixels of one knock-back step
  int knock_speed_y;        // pixels of one knock-back step
  int knock_arm;            // fighter_arm of the punch that knocked this fighter back
  int punch_phase;          // a punch_phase, 0 to 6
  int punching_arm;         // a fighter_arm
  int side;                 // a fighter_side
  int knock_frames;         // frames of knock-back to run, 7 down to 0
  int score;                // points in this match
  int punch_frames;         // frames of the punch in progress
  const SDL_Color *color;   // not owned; a colour of the palette
  int flex_pose;            // a flex_pose
  struct texture *texture;  // not owned; draws one block
};

// Fills every field: standing at (unit_x, unit_y) blocks from the ring's top-left corner, idle, score 0.
// Sizes, steps and place are computed from the units in force now. `color_index` is a colour id, 1 or 2.
void fighter_init(fighter *fighter, texture *texture, int unit_x, int unit_y, int side,
                  std::uint16_t color_index);
// A record on the heap, initialised the same way; ends the process when there is no memory.
fighter *fighter_create(texture *texture, int unit_x, int unit_y, int side, std::uint16_t color_index);
// Clears the texture reference.
void fighter_unload(fighter *fighter);
// Unloads and frees the record and clears the pointer to it.
void fighter_destroy(fighter **fighter);

// Places the fighter at (unit_x, unit_y) blocks from the ring's top-left corner.
void fighter_set_pos_from_unit(int unit_x, int unit_y, fighter *fighter);
// The same place back in blocks, fractions dropped towards zero.
void fighter_get_unit_from_pos(int *unit_x, int *unit_y, const fighter *fighter);
// Left edge, in pixels, of the half that walls and fighters run into.
int fighter_get_collision_x(const fighter *fighter);
// True when the collision boxes of two fighters overlap; touching edges do not.
bool fighter_collision(const fighter *a, const fighter *b);
// Moves the fighter by dx or dy pixels.
void fighter_set_x(fighter *fighter, int dx);
void fighter_set_y(fighter *fighter, int dy);
// One frame of movement: the knock-back's step while knocked back, else the step asked for. Each axis is
// tried by itself and undone whole when it would leave `ring` (pixels) or run into `other`.
void fighter_move(fighter *mover, const fighter *other, SDL_Rect ring);

// One frame of the attacker's punch: a hit scores and knocks the defender back; plays the sounds.
void fighter_punch(fighter *attacker, fighter *defender);
// Points the punch at the opponent whose top edge is at `opponent_y` pixels: the lower arm when it is level
// or lower on the screen.
void fighter_set_punching_arm(fighter *fighter, int opponent_y);
// True when the attacker's extended glove is on the defender's nose and the attacker is not knocked back.
bool fighter_check_punch(const fighter *attacker, const fighter *defender);
// Fills the three rectangles (pixels) that make up the glove of the punching arm.
void fighter_get_punch_rect(const fighter *fighter, SDL_Rect rects[3]);
// Fills the rectangle (pixels) that a punch must meet, the widest rows of the head.
void fighter_get_nose_rect(SDL_Rect *rect, const fighter *fighter);
// One frame of knock-back: counts it down and sets its movement.
void fighter_knock_back(fighter *fighter);
// One frame of idle flexing: some arm or both, at random, for the 6 frames after every 24th frame.
void fighter_flex(fighter *fighter, std::uint32_t frame_count);

// Draws the fighter in blocks of block_w x block_h pixels; 0 takes the unit in force.
void fighter_render(const fighter *fighter, int block_w, int block_h);
void fighter_draw_head(const fighter *fighter, int block_w, int block_h);
void fighter_draw_arm(const fighter *fighter, int arm, int block_w, int block_h);
