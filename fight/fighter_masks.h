#pragma once

// The six bitmaps that fighters are drawn from, as text art: '#' is a cell drawn as one block, '.' a cell
// left open. They show a boxer from above who faces left; the other side, and the lower arm, are mirrored
// when drawn. An arm lies above the head, row 10 of the arm directly over row 0 of the head, and the
// mirrored arm directly below it.
//
// The rules of the game stand on some of these cells, so a new drawing must keep them; in
// fight/fighter_punch.cpp the compiler sees to gloves and nose:
// - The glove is exactly the three rectangles of a punch: 10 columns on rows 2-5, 8 on rows 1 and 6,
//   6 on rows 0 and 7. It starts at column 19 at rest, 9 half extended, 0 fully extended. Nothing lies
//   left of it, and only the arm joins it on the right. (A flexed glove, at column 22, hits nothing.)
// - Rows 4 and 5 of the normal head, columns 22-35 with the nose, are exactly the rectangle that a punch
//   has to hit. Its other rows keep to columns 25-35, the head thrown back to columns 28-37.
// - Head and shoulders stay within columns 19-37, the box that keeps fighters apart.
// - All arms end in one shoulder: row 8 within columns 29-34, row 9 columns 29-33, row 10 columns 29-32,
//   nothing else on those rows. The top row of both heads lies under it, so that no pose comes apart.

#include <array>
#include <cstddef>
#include <string_view>

inline constexpr int mask_columns = 38;
inline constexpr int arm_mask_rows = 11;
inline constexpr int head_mask_rows = 10;

// Cells by row, then column; true is drawn.
template <std::size_t rows>
using mask = std::array<std::array<bool, mask_columns>, rows>;

namespace mask_art {

// Never defined: a drawing that reaches one of these calls does not compile, and the name says why.
void row_has_wrong_width();
void cell_is_neither_hash_nor_dot();

// The mask of a drawing, worked out by the compiler. A missing row counts as one of width 0.
template <std::size_t rows>
consteval mask<rows> parse(const std::array<std::string_view, rows> &art) {
  mask<rows> cells{};
  for (std::size_t row = 0; row < rows; ++row) {
    if (art[row].size() != mask_columns) {
      row_has_wrong_width();
    }
    for (std::size_t column = 0; column < mask_columns; ++column) {
      const char cell = art[row][column];
      if (cell != '#' && cell != '.') {
        cell_is_neither_hash_nor_dot();
      }
      cells[row][column] = cell == '#';
    }
  }
  return cells;
}

}  // namespace mask_art

// Arm at rest: the guard. The forearm runs back from the cuff to the elbow, the upper arm bends down from
// there to the shoulder.
inline constexpr mask<arm_mask_rows> upper_left_0 = mask_art::parse<arm_mask_rows>({{
    ".....................######...........",
    "....................########..........",
    "...................##########.######..",
    "...................##################.",
    "...................###################",
    "...................##########.########",
    "....................########....######",
    ".....................######....######.",
    ".............................######...",
    ".............................#####....",
    ".............................####.....",
}});

// Arm half extended: the elbow has come forward over the shoulder.
inline constexpr mask<arm_mask_rows> upper_left_1 = mask_art::parse<arm_mask_rows>({{
    "...........######.....................",
    "..........########....................",
    ".........##########.########..........",
    ".........#####################........",
    ".........#######################......",
    ".........##########.#############.....",
    "..........########.......#########....",
    "...........######..........########...",
    ".............................######...",
    ".............................#####....",
    ".............................####.....",
}});

// Arm fully extended: stretched straight from the shoulder, aslant.
inline constexpr mask<arm_mask_rows> upper_left_2 = mask_art::parse<arm_mask_rows>({{
    "..######..............................",
    ".########.............................",
    "##########.####.......................",
    "####################..................",
    "#########################.............",
    "##########.##################.........",
    ".########......##################.....",
    "..######............##############....",
    ".............................######...",
    ".............................#####....",
    ".............................####.....",
}});

// Arm flexed: the glove drawn in close, the arm folded up behind it.
inline constexpr mask<arm_mask_rows> flex = mask_art::parse<arm_mask_rows>({{
    "........................######........",
    ".......................########.......",
    "......................##########.####.",
    "......................################",
    "......................################",
    "......................##########.#####",
    ".......................########..#####",
    "........................######..#####.",
    ".............................######...",
    ".............................#####....",
    ".............................####.....",
}});

// Head in the fight: an oval, the nose pointing at the opponent.
inline constexpr mask<head_mask_rows> head_normal_left = mask_art::parse<head_mask_rows>({{
    "............................#####.....",
    "..........................#########...",
    ".........................###########..",
    ".........................###########..",
    "......................##############..",
    "......................##############..",
    ".........................###########..",
    ".........................###########..",
    "..........................#########...",
    "............................#####.....",
}});

// Head thrown back by a hit: the face is turned up, so no nose shows.
inline constexpr mask<head_mask_rows> head_back = mask_art::parse<head_mask_rows>({{
    "..............................#####...",
    ".............................########.",
    "............................##########",
    "............................##########",
    "............................##########",
    "............................##########",
    "............................##########",
    "............................##########",
    ".............................########.",
    "..............................#####...",
}});
