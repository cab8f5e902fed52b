"""Reads pictures of the game at its default window size, 800 x 640, and plays by what they show: texts in the
game's own font, the marked row of a menu, the places of the fighters."""

import time
from collections import namedtuple
from functools import lru_cache
from typing import NamedTuple

from PIL import Image, ImageChops, ImageDraw, ImageFont

from game_driver import ROOT

WIDTH, HEIGHT = 800, 640
NORMAL, BIG = 25, 42  # font sizes in points

MENU_GREEN = (20, 170, 40)
RING_GREEN = (19, 149, 37)  # translucent over the match's dark background
DARK = (0, 51, 25)
RED = (102, 0, 0)
WHITE = (255, 255, 255)
BLACK = (0, 0, 0)

UNIT_W, UNIT_H = 4, 5  # one block of the ring, pixels
RING = (132, 80, 668, 560)
FIGHTER_COLUMNS = 38
TOP_ROW = 30  # of clock and scores, pixels
SCORE_CENTRES = (200, 600)


# Texts

def colour_mask(picture, colour):
    """White where the picture has exactly this colour, black elsewhere."""
    bands = [band.point([255 if value == wanted else 0 for value in range(256)])
             for band, wanted in zip(picture.split(), colour)]
    return ImageChops.darker(ImageChops.darker(bands[0], bands[1]), bands[2])


@lru_cache(maxsize=None)
def font(points):
    return ImageFont.truetype(str(ROOT / "assets" / "8bit_block.ttf"), points, layout_engine=ImageFont.Layout.BASIC)


@lru_cache(maxsize=None)
def text_mask(text, points):
    canvas = Image.new("L", (WIDTH, 2 * points))
    pen = ImageDraw.Draw(canvas)
    pen.fontmode = "1"
    pen.text((4, 4), text, font=font(points), fill=255)
    return canvas.crop(canvas.getbbox())


def ink(picture, top, colour, *, half=160, points=NORMAL, centre=WIDTH // 2):
    """The pixels of this colour in a text row `half` pixels to either side of a column, as a mask; None when
    there are none or when they are not centred."""
    bottom = top + sum(font(points).getmetrics())
    row = colour_mask(picture.crop((centre - half, top, centre + half, bottom)), colour)
    box = row.getbbox()
    if box is None or abs((box[0] + box[2]) / 2 - half) > 4:
        return None
    return row.crop(box)


def shows(picture, text, top, colour, *, points=NORMAL, centre=WIDTH // 2):
    """True when this text, no longer and no shorter one, stands in the row that begins `top` pixels down,
    centred on a column, in exactly this colour."""
    expected = text_mask(text, points)
    seen = ink(picture, top, colour, half=expected.width // 2 + 8, points=points, centre=centre)
    return seen is not None and seen.size == expected.size and seen.tobytes() == expected.tobytes()


@lru_cache(maxsize=None)
def numbers(layout):
    """From what a number looks like to the number."""
    masks = [text_mask(layout.format(number // 60, number % 60, number), NORMAL) for number in range(121)]
    return {(mask.size, mask.tobytes()): number for number, mask in enumerate(masks)}


def read(picture, layout, centre):
    """The number in the top row of a match; None when it cannot be read."""
    seen = ink(picture, TOP_ROW, WHITE, half=80, centre=centre)
    return seen and numbers(layout).get((seen.size, seen.tobytes()))


def clock(picture):
    return read(picture, "{:02}:{:02}", WIDTH // 2)  # s


def score(picture, player):
    return read(picture, "{2}", SCORE_CENTRES[player - 1])


# The fight

class Place(NamedTuple):
    """Where a fighter stands, in blocks of the ring."""
    x: int       # left edge of its 38 columns
    y: int       # top edge of its 32 rows
    faces: str   # the X key towards which it looks


def fighter_box(picture, colour):
    """The smallest box, in blocks of the ring, around everything in this colour."""
    box = colour_mask(picture.crop(RING), colour).getbbox()
    return box and (box[0] // UNIT_W, box[1] // UNIT_H, box[2] // UNIT_W, box[3] // UNIT_H)


def places(picture):
    """The places of the white and the black fighter, or None while one cannot be seen whole. A fighter's back
    and its gloves' outer rows are drawn in every pose, so they tell where it stands."""
    white, black = fighter_box(picture, WHITE), fighter_box(picture, BLACK)
    if white is None or black is None:
        return None
    if white[0] < black[0]:
        return Place(white[0], white[1], "Right"), Place(black[2] - FIGHTER_COLUMNS, black[1], "Left")
    return Place(white[2] - FIGHTER_COLUMNS, white[1], "Left"), Place(black[0], black[1], "Right")


Controls = namedtuple("Controls", "up down left right punch")
PLAYER_1 = Controls("Up", "Down", "Left", "Right", "space")
PLAYER_2 = Controls("w", "s", "a", "d", "Tab")

FRAME = 0.033   # s
PUNCH = 0.3     # s that a punch takes at most
STEP = 4        # blocks walked in a frame
REACH = 4       # blocks across at which a punch arrives half extended
OFFSET = 12     # blocks down at which the glove meets the nose
LEEWAY = 4      # blocks by which it may be off


def next_move(controls, me, opponent):
    """The key that brings `me` into punching distance and the frames to hold it; the punch when there."""
    down = opponent.y - me.y
    across = abs(opponent.x - me.x)
    towards = controls.right if me.faces == "Right" else controls.left
    if abs(abs(down) - OFFSET) > LEEWAY:
        # Stand above the opponent, or below it where there is no room above.
        wanted = opponent.y - OFFSET if opponent.y >= OFFSET else opponent.y + OFFSET
        return (controls.up if wanted < me.y else controls.down), abs(wanted - me.y) / STEP
    if across > REACH:
        return towards, (across - REACH) / STEP + 1
    return controls.punch, 0


def land_punch(game, controls, player, colour):
    """Walks one fighter up to the other and punches until the player's score grows. Returns the new score and
    the first picture that shows it. `colour` is that of the player's fighter."""
    start = game.wait_until("the score", lambda picture: score(picture, player) is not None and picture)
    before = score(start, player)
    me = (WHITE, BLACK).index(colour)

    def watch():
        end = time.monotonic() + PUNCH
        while time.monotonic() < end:
            picture = game.screenshot()
            now = score(picture, player) or 0
            if now > before:
                return now, picture
        return None

    def approach_or_punch(picture):
        seen = places(picture)
        if seen is None:
            return None
        key, frames = next_move(controls, seen[me], seen[1 - me])
        if key == controls.punch:
            game.press(key)
            return watch()
        game.hold_for(max(frames, 1) * FRAME, key)
        return None

    return game.wait_until(f"a punch of player {player} scores", approach_or_punch, 20)
