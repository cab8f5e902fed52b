// Fighters as they come out on the picture, read back block by block.

#include <gtest/gtest.h>

#include <algorithm>

#include "app/context.h"
#include "tests/support/stage.h"

namespace {

using rows = std::vector<std::string>;

// The drawn blocks: 'o' for one of the fighter's colour, '.' for the ground. Anything else drawn fails the
// test.
rows blocks_of(const pose &pose, const SDL_Color &color = {200, 100, 50, 255}, int unit_w = 0,
               int unit_h = 0) {
  const SDL_Rect everything = {0, 0, context.window_width, context.window_height};
  paint_fill(everything, {1, 2, 3, 255});
  paint_fighter(60, 70, color, pose, unit_w, unit_h);
  const picture drawn = read_picture();

  const int w = unit_w == 0 ? context.unit_w : unit_w, h = unit_h == 0 ? context.unit_h : unit_h;
  rows blocks(32, std::string(38, '.'));
  paint_fill(everything, {1, 2, 3, 255});
  for (std::size_t i = 0; i < 38 * 32; ++i) {
    const SDL_Rect block = {60 + static_cast<int>(i % 38) * w, 70 + static_cast<int>(i / 38) * h, w, h};
    const int middle = (block.y + h / 2) * drawn.width + block.x + w / 2;
    if (drawn.pixels[static_cast<std::size_t>(middle)] == 0x010203) continue;
    blocks[i / 38][i % 38] = 'o';
    paint_fill(block, color);
  }
  EXPECT_EQ(difference(drawn, read_picture()), "") << "not all blocks are crisp and of the fighter's colour";
  return blocks;
}

}  // namespace

TEST(fighter_render, arms_and_heads_keep_their_anchors) {
  open_game game(800, 640);
  const std::pair<pose, std::size_t> gloves[] = {{{1}, 19}, {{1, 2}, 9}, {{1, 3}, 0}, {{1, 0, 7, 0, 0}, 22}};
  for (const auto &[pose, glove] : gloves) {  // with its first column
    const rows blocks = blocks_of(pose);
    for (const std::size_t row : {0u, 1u, 2u, 3u, 4u, 5u, 6u, 7u}) {
      const std::size_t inset = row % 7 == 0 ? 2 : row == 1 || row == 6 ? 1 : 0;
      EXPECT_EQ(blocks[row].substr(0, glove + 10 - inset),
                std::string(glove + inset, '.') + std::string(10 - 2 * inset, 'o'));
    }
    EXPECT_TRUE(blocks[8].find('o') >= 29 && blocks[8].rfind('o') <= 34);
    EXPECT_EQ(blocks[9], ".............................ooooo....");
    EXPECT_EQ(blocks[10], ".............................oooo.....");
    for (const std::size_t row : {11u, 12u, 13u, 14u, 17u, 18u, 19u, 20u}) {
      EXPECT_GE(blocks[row].find('o'), pose.knock_frames == 7 ? 28u : 25u);
      EXPECT_LE(blocks[row].rfind('o'), pose.knock_frames == 7 ? 37u : 35u);
    }
  }
  EXPECT_EQ(blocks_of({1})[15], "......................oooooooooooooo..");
  EXPECT_EQ(blocks_of({1})[16], "......................oooooooooooooo..");
}

TEST(fighter_render, state_chooses_the_pose) {
  open_game game(800, 640);
  const struct {
    pose figure;                     // phase, knock-back, arm, flex
    std::size_t upper, lower, head;  // first drawn column
  } cases[] = {{{1, 0, 0, 0, 3}, 19, 19, 22}, {{1, 1, 0, 0, 3}, 19, 19, 22}, {{1, 2, 0, 0, 3}, 9, 19, 22},
               {{1, 2, 0, 1, 3}, 19, 9, 22},  {{1, 3, 0, 0, 3}, 0, 19, 22},  {{1, 3, 0, 1, 3}, 19, 0, 22},
               {{1, 4, 0, 1, 3}, 19, 9, 22},  {{1, 5, 0, 1, 3}, 19, 19, 22}, {{1, 6, 0, 0, 3}, 19, 19, 22},
               {{1, 0, 0, 0, 0}, 22, 19, 22}, {{1, 0, 0, 0, 1}, 19, 22, 22}, {{1, 0, 0, 0, 2}, 22, 22, 22},
               {{1, 3, 0, 1, 2}, 22, 0, 22},  {{1, 4, 0, 0, 1}, 9, 22, 22},  {{1, 2, 0, 0, 0}, 9, 19, 22},
               {{1, 5, 0, 0, 0}, 22, 19, 22}, {{1, 0, 1, 0, 3}, 19, 19, 22}, {{1, 0, 2, 0, 3}, 19, 19, 28},
               {{1, 3, 7, 0, 1}, 0, 22, 28}};
  for (const auto &c : cases) {
    const rows blocks = blocks_of(c.figure);
    EXPECT_EQ(std::make_tuple(blocks[3].find('o'), blocks[28].find('o'), blocks[15].find('o')),
              std::tie(c.upper, c.lower, c.head))
        << "case " << &c - cases;
  }
}

TEST(fighter_render, sides_and_arms_are_mirror_images) {
  open_game game(333, 257);
  for (const int phase : {0, 2, 3}) {
    rows mirrored = blocks_of({1, phase});
    for (std::string &row : mirrored) std::reverse(row.begin(), row.end());
    EXPECT_EQ(blocks_of({0, phase}, white, 3, 2), mirrored);
    const rows lower = blocks_of({0, phase, 0, 1});
    EXPECT_TRUE(std::equal(lower.begin(), lower.begin() + 11, mirrored.rbegin()));
    EXPECT_TRUE(std::equal(lower.end() - 11, lower.end(), mirrored.rend() - 11));
  }
}
