// The fight, compared frame by frame with a second account of it: in whole blocks of the ring, with gloves
// and noses as cells instead of rectangles.

#include "fight/fighter.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

#include "app/context.h"
#include "fight/game.h"
#include "tests/support/stage.h"

namespace {

struct boxer {
  int body, y, side;                        // the body's left column and top row in the ring
  int held_x = 0, held_y = 0;               // direction asked for by the keys held
  int knocked = 0, push_x = 0, push_y = 0;  // frames and direction of the knock-back
  int hit_by = 0;                           // arm
  int phase = 0, frames = 0, arm = 0;       // of the punch
  int score = 0, flex = 3;
};

// The attacker's round glove, wherever its phase has it, shares a cell with the defender's nose.
bool glove_on_nose(const boxer &attacker, const boxer &defender) {
  const int roundness[] = {2, 1, 0, 0, 0, 0, 1, 2};
  const int glove = attacker.phase == 3 ? 0 : attacker.phase == 2 ? 9 : 19;
  for (int row = 0; row < 8; ++row) {
    const int nose_row = attacker.y + (attacker.arm == 1 ? 31 - row : row) - defender.y;
    if (nose_row != 15 && nose_row != 16) continue;
    for (int column = glove + roundness[row]; column < glove + 10 - roundness[row]; ++column) {
      const int in_ring = attacker.side == 1 ? attacker.body - 19 + column : attacker.body + 37 - column;
      const int from_front = defender.side == 1 ? in_ring - defender.body - 3 : defender.body + 15 - in_ring;
      if (from_front >= 0 && from_front < 14) return true;
    }
  }
  return false;
}

bool stuck(const boxer &me, const boxer &other) {
  const bool outside = me.body < 0 || me.body > 134 - 19 || me.y < 0 || me.y > 96 - 32;
  return outside || (std::abs(me.body - other.body) < 19 && std::abs(me.y - other.y) < 32);
}

void walk(boxer &me, const boxer &other) {
  const int dx = 4 * (me.knocked > 0 ? me.push_x : me.held_x);
  const int dy = 4 * (me.knocked > 0 ? me.push_y : me.held_y);
  me.body += dx;
  if (stuck(me, other)) me.body -= dx;
  me.y += dy;
  if (stuck(me, other)) me.y -= dy;
}

std::string punch(boxer &me, boxer &other) {
  const bool out = me.phase == 2 || me.phase == 3;
  const bool hit = out && me.knocked == 0 && other.knocked == 0 && glove_on_nose(me, other);
  if (me.phase == 0) return "";
  if (hit) {
    other.knocked = 7;
    other.hit_by = me.arm;
    me.score += me.phase == 2 ? 2 : 1;
    me.phase = 3;
  }
  const bool in_the_air = me.phase == 3 && other.knocked == 0;
  if (in_the_air && me.frames % 3 != 0) {
    ++me.frames;
    return "";
  }
  me.frames = me.phase == 6 ? 0 : me.frames + 1;
  me.phase = me.phase == 6 ? 0 : me.phase + 1;
  return hit ? "hit " : in_the_air ? "miss " : "";
}

void flex(boxer &me, unsigned frame, std::deque<int> &draws) {
  if (me.knocked > 0 && me.phase > 0) me.flex = 3;
  if (me.knocked > 0 || me.phase > 0 || frame % 6 != 0) return;
  me.flex = 3;
  if (frame % 24 != 0) return;
  me.flex = draws.front() % 3;
  draws.pop_front();
}

void stagger(boxer &me) {
  const bool pushed = me.knocked > 0;
  if (pushed) --me.knocked;
  me.push_x = !pushed ? 0 : me.side == 1 ? 1 : -1;
  me.push_y = !pushed ? 0 : me.hit_by == 1 ? -1 : 1;
  if (!pushed) me.hit_by = 0;
}

// One frame; gives the sounds.
std::string fight(boxer &first, boxer &second, unsigned frame, std::deque<int> &draws) {
  walk(first, second);
  walk(second, first);
  if (first.phase < 2) first.arm = first.y <= second.y ? 1 : 0;
  if (second.phase < 2) second.arm = second.y <= first.y ? 1 : 0;
  std::string sounds = punch(first, second);
  sounds += punch(second, first);
  flex(first, frame, draws);
  flex(second, frame, draws);
  stagger(first);
  stagger(second);
  const bool passed = first.side == 0 ? first.body > second.body : first.body < second.body;
  if (passed && first.phase == 0 && second.phase == 0) std::swap(first.side, second.side);
  return sounds;
}

struct keyboard {
  SDL_Keycode left, right, up, down, punch;
};

// Lets go of the key of an axis and holds another, or none: towards the opponent more often than not.
void turn(int &held, int distance, SDL_Keycode back, SDL_Keycode forth, std::mt19937 &random) {
  const int wanted[] = {-1, 0, 1, distance > 0 ? 1 : -1, distance > 0 ? 1 : -1};
  if (held != 0) push_key(held < 0 ? back : forth, SDL_KEYUP);
  held = wanted[random() % 5];
  if (held != 0) push_key(held < 0 ? back : forth);
}

void play(boxer &me, const boxer &other, const keyboard &keys, std::mt19937 &random) {
  if (random() % 4 == 0) turn(me.held_x, other.body - me.body, keys.left, keys.right, random);
  if (random() % 4 == 0) turn(me.held_y, other.y - me.y, keys.up, keys.down, random);
  if (random() % 2 != 0) return;
  push_key(keys.punch);
  if (me.phase == 0) me.phase = 1;
}

void expect_equal(const fighter &f, const boxer &b) {
  EXPECT_EQ(std::tie(f.x, f.y, f.side, f.vel_x, f.vel_y, f.score, f.flex_pose),
            std::make_tuple(132 + 4 * (b.body - 19 * b.side), 80 + 5 * b.y, b.side, 16 * b.held_x,
                            20 * b.held_y, b.score, b.flex));
  EXPECT_EQ(std::tie(f.knock_frames, f.knock_arm, f.knock_vel_x, f.knock_vel_y),
            std::make_tuple(b.knocked, b.hit_by, 16 * b.push_x, 20 * b.push_y));
  EXPECT_EQ(std::tie(f.punch_phase, f.punch_frames, f.punching_arm), std::tie(b.phase, b.frames, b.arm));
}

struct tally {
  int turns = 0, knock_outs = 0;
};

// Plays a match up to the end screen.
void play_match(unsigned seed, tally &tally) {
  bare_match match(1);
  std::mt19937 random(seed);
  boxer first = {.body = static_cast<int>(random() % 40), .y = static_cast<int>(random() % 65), .side = 0};
  boxer second = {
      .body = static_cast<int>(60 + random() % 56), .y = static_cast<int>(random() % 65), .side = 1};
  fighter_set_pos_from_unit(first.body, first.y, match.game.fighter1);
  fighter_set_pos_from_unit(second.body - 19, second.y, match.game.fighter2);
  bool fighting = true;
  for (unsigned frame = 0; !testing::Test::HasFailure(); ++frame) {
    SCOPED_TRACE(testing::Message() << "match " << seed << ", frame " << frame);
    context.frame_count = frame;
    world.seconds = 1000 + frame / 30;
    world.draws = {static_cast<int>(random() % 1000), static_cast<int>(random() % 1000)};
    world.sounds = "";
    std::deque<int> draws = world.draws;
    if (fighting) play(first, second, {SDLK_LEFT, SDLK_RIGHT, SDLK_UP, SDLK_DOWN, SDLK_SPACE}, random);
    if (fighting) play(second, first, {SDLK_a, SDLK_d, SDLK_w, SDLK_s, SDLK_TAB}, random);
    game_handle_input();
    game_update();
    if (match.machine.next_state != 0) break;

    const bool knock_out = first.score >= 99 || second.score >= 99;
    const bool ends = fighting && (knock_out || frame > 120 * 30);
    fighting = fighting && !ends;
    if (!fighting) first.held_x = first.held_y = second.held_x = second.held_y = 0;
    const int side = first.side;
    const std::string sounds = (ends ? "bell " : "") + fight(first, second, frame, draws);
    expect_equal(*match.game.fighter1, first);
    expect_equal(*match.game.fighter2, second);
    EXPECT_EQ(world.sounds, sounds);
    EXPECT_EQ(world.draws, draws);
    EXPECT_EQ(match.game.time_left, 120 - static_cast<int>(frame / 30));
    tally.turns += first.side != side;
    tally.knock_outs += ends && knock_out;
  }
  EXPECT_EQ(match.machine.next_state, 4);
}

}  // namespace

TEST(fighter, random_matches_run_as_in_the_second_account) {
  tally tally;
  for (unsigned seed = 1; seed <= 8 && !HasFailure(); ++seed) play_match(seed, tally);
  EXPECT_GT(tally.turns, 20) << "the matches exercise too little";
  EXPECT_TRUE(tally.knock_outs > 2 && tally.knock_outs < 8) << tally.knock_outs;
}

TEST(fighter, punch_lands_where_the_glove_meets_the_nose) {
  bare_match match(1);
  fighter &attacker = *match.game.fighter1, &defender = *match.game.fighter2;
  for (int pose = 0; pose < 56; ++pose) {  // phases 0 to 6, arms, sides of both
    attacker.punch_phase = pose / 8;
    attacker.punching_arm = pose / 4 % 2;
    attacker.side = pose / 2 % 2;
    defender.side = pose % 2;
    boxer model = {.body = 60 + 19 * attacker.side, .y = 40, .side = attacker.side};
    model.phase = attacker.punch_phase;
    model.arm = attacker.punching_arm;
    fighter_set_pos_from_unit(60, 40, &attacker);
    for (int i = 0; i < 73 * 121; ++i) {
      const int x = i % 121, y = 4 + i / 121;
      fighter_set_pos_from_unit(x, y, &defender);
      const boxer target = {.body = x + 19 * defender.side, .y = y, .side = defender.side};
      const bool lands = (model.phase == 2 || model.phase == 3) && glove_on_nose(model, target);
      ASSERT_EQ(fighter_check_punch(&attacker, &defender), lands)
          << "pose " << pose << " at " << x << ", " << y;
    }
  }
}

TEST(fighter, place_in_blocks_drops_fractions_towards_zero) {
  bare_match match(1);
  fighter &fighter = *match.game.fighter1;
  const int cases[][4] = {{129, 76, 0, 0}, {127, 75, -1, -1}, {139, 89, 1, 1}, {140, 90, 2, 2}};
  for (const auto &[x, y, unit_x, unit_y] : cases) {
    int place[2];
    fighter.x = x;
    fighter.y = y;
    fighter_get_unit_from_pos(&place[0], &place[1], &fighter);
    EXPECT_TRUE(place[0] == unit_x && place[1] == unit_y) << x << ", " << y;
  }
}
