#!/usr/bin/python3
"""Draws the program's icons into packaging/icons/: PNG files of 16 to 256 pixels and one SVG file.

Without an option the files are written anew; with --check they are compared, byte for byte, with what would be
written, and a difference ends with status 1.

The icon shows a punch landing in the ring. The large one is put together from the fighters' own bitmaps in
fight/fighter_masks.h; the small ones are drawn by hand, since no bitmap survives being shrunk to 16 pixels.
Every size is a whole multiple of one of these drawings, so that all pixels stay square.
"""

import argparse
import re
import struct
import sys
from pathlib import Path

sys.dont_write_bytecode = True  # leave no caches beside the sources

from make_images import chunk_bytes, stored

ROOT = Path(__file__).resolve().parent.parent
MASKS = ROOT / "fight" / "fighter_masks.h"
ICONS = ROOT / "packaging" / "icons" / "hicolor"
NAME = "vantaro-pugnado"

CLEAR = "."
# At most 16, which a pixel of half a byte can tell apart. Materials have a light, a plain and a shaded tone.
COLOURS = {
    CLEAR: (0, 0, 0),
    "k": (12, 12, 17),  # outline
    "g": (20, 170, 40), "G": (14, 132, 32),  # the ring, and the shadows on it
    "w": (255, 255, 255), "s": (184, 192, 204),
    "B": (74, 76, 96), "b": (26, 26, 36),
    "R": (238, 86, 80), "r": (196, 30, 38), "d": (128, 10, 26),
    "U": (112, 168, 255), "u": (44, 104, 214), "v": (22, 56, 140),
    "Y": (255, 240, 160), "y": (255, 205, 40),
}
WHITE, BLACK, RED, BLUE = "wws", "Bbk", "Rrd", "Uuv"  # tones of a material

# The frame around the ring by drawing size: for each layer its distance from the edge, the radius of its
# corners in pixels, and its colour.
FRAMES = {
    64: ((0, 7, "k"), (1, 6, "r"), (3, 5, "w"), (4, 4, "k"), (5, 3, "g")),
    48: ((0, 5, "k"), (1, 4, "r"), (2, 3, "k"), (3, 3, "g")),
    32: ((0, 4, "k"), (1, 3, "r"), (2, 2, "k"), (3, 2, "g")),
    24: ((0, 3, "k"), (1, 2, "r"), (2, 1, "g")),
    16: ((0, 2, "r"), (1, 1, "g")),
}

# What the masks are put together to: the size, the bitmap of the punching arm and the columns of its glove,
# and where the punching boxer, the one that is hit, and the flash lie in pixels.
SCENES = {
    64: ("upper_left_2", 10, (8, 23), (19, 11), (35, 17)),
    48: ("upper_left_1", 19, (4, 12), (6, 3), (22, 6)),
}
FLASH = """
..........y.........
..........y.........
.....y....y....y....
.....yy..yYy..yy....
......yy.yYy.yy.....
......yYyyYyyYy.....
.......yYYYYYYy.....
....yyyyYYYYYYyyyy..
..yyYYYYYwwwwYYYYYyy
....yYYYYwwwwYYYYy..
......yyYYwwYYyy....
.......yYYYYYYy.....
......yYyyYyyYy.....
......yy.yYy.yy.....
.....yy..yYy..yy....
.....y....y....y....
..........y.........
..........y.........
"""

MEDIUM = """
........................
.............UUuu.......
............UUuuuuBBBb..
............Uuuuuvbbbbb.
............uuuuvv.kbbb.
.............vvvv..Bbbk.
................y.BBbb..
...........RRrryy.Bbybb.
......wwwwRRrrrryyYybbbb
...wwwwwwwRrrrrdYYYybbbb
..wwwwwsssrrrrddwwwYYybb
..wwss.....dddd.YYYybbbk
..www..........yyyYybbbk
...www.........y.ykbybk.
...wwwww.....UUuy..kbb..
..wwwwwww...UUuuuu.Bbbb.
.wwwwwwwwww.UuuuuvBbbbb.
.swwwwwwwss..vvvv.kkkk..
..swwwwws...............
...swwws................
..wws.RRrr..............
.wwwwRRrrrr.............
.wwwwRrrrrd.............
.swwsrrrrdd.............
..ss..dddd..............
"""

SMALL = """
....................
...........UUuu.....
..........UUuuuuBBb.
..........Uuuuuvbbbb
...........vvvv.kbbb
...............BBbk.
.......RRrry.y.Bbbb.
......RRrrrryyYbybbb
....wwRrrrrrdYYYbbbb
...wwwrrrrrrdwwYYybb
..wwwsrrrrrddYYYbbbb
.wwws..ddddyyYbybbbk
.www.......y.y.kbbk.
wwwww..........BBb..
wwwwwww....UUuu.kbbb
wwwwwwww..UUuuuubbbb
wwwwwwwww.uuuuuvbbbk
wwwwwwws...vvvv.kkk.
wwwwwws.............
wwwwss..............
"""

TINY = """
..............
.......UUu....
.......UuuvBb.
........vv.bbb
....RRr.y.Bbbk
...RrrrryYbbbb
.wwrrrrrYwYbbb
wwsrrrrdYYbbbb
ww..ddd.y.bbbk
www......y.bb.
wwww...UUu.bbb
wwwwww.Uuuvbbk
wwwws...vv....
.wws..........
"""


def blank(size):
    return [[CLEAR] * size for _ in range(size)]


def paint_frame(picture):
    """Paints the rounded layers of the frame, the ring's floor last."""
    size = len(picture)
    for inset, radius, colour in FRAMES[size]:
        near, far = inset + radius, size - 1 - inset - radius
        for y in range(inset, size - inset):
            for x in range(inset, size - inset):
                across, down = max(near - x, x - far, 0), max(near - y, y - far, 0)
                if across**2 + down**2 <= (radius + 0.3) ** 2:
                    picture[y][x] = colour


def paint_shadow(picture, cells, offsets):
    """Darkens the floor beside the cells."""
    for x, y in cells:
        for across, down in offsets:
            if picture[y + down][x + across] == "g":
                picture[y + down][x + across] = "G"


def paint_art(picture, art, left, top):
    for y, row in enumerate(art.split(), top):
        for x, colour in enumerate(row, left):
            if colour != CLEAR:
                picture[y][x] = colour


def paint_part(picture, cells, tones):
    """Paints one part of a boxer, lit from the upper left."""
    light, plain, shade = tones
    for x, y in cells:
        thick = (x, y - 3) in cells
        if (x, y + 1) not in cells or (thick and ((x, y + 2) not in cells or (x + 1, y) not in cells)):
            tone = shade
        elif (x, y - 1) not in cells or (x - 1, y) not in cells:
            tone = light
        else:
            tone = plain
        picture[y][x] = tone


def read_mask(name):
    """The rows of one of the fighters' bitmaps, as text."""
    drawing = re.search(rf"> {name} = .*?\(\{{\{{(.*?)\}}\}}\)", MASKS.read_text(), re.DOTALL)
    return re.findall(r'"([.#]+)"', drawing.group(1))


def boxer(place, faces_right, upper, lower, head, glove_ends):
    """The parts of a boxer from above as sets of cells: arms, head and gloves. The gloves of the upper and the
    lower arm are the columns of the bitmaps before the two in `glove_ends`."""
    def cells(mask, row, columns):
        rows = read_mask(mask)
        return {(place[0] + (len(text) - 1 - column if faces_right else column), place[1] + y)
                for y, text in row(rows) for column in columns if text[column] == "#"}

    def down(rows):
        return enumerate(rows)

    def up(rows):
        return enumerate(reversed(rows), 21)

    def at_head(rows):
        return enumerate(rows, 11)

    arms = cells(upper, down, range(glove_ends[0], 38)), cells(lower, up, range(glove_ends[1], 38))
    gloves = cells(upper, down, range(glove_ends[0])), cells(lower, up, range(glove_ends[1]))
    return [*arms, cells(head, at_head, range(38))], list(gloves)


def draw_scene(size):
    punching_arm, glove_end, punching_place, hit_place, flash_place = SCENES[size]
    picture = blank(size)
    paint_frame(picture)
    hit, hit_gloves = boxer(hit_place, False, "upper_left_0", "upper_left_0", "head_back", (29, 29))
    punching, red_gloves = boxer(punching_place, True, punching_arm, "upper_left_0", "head_normal_left",
                                 (glove_end, 29))
    for part in hit + hit_gloves + punching + red_gloves:
        paint_shadow(picture, part, ((1, 1), (1, 2)))
    for parts, tones in ((hit, BLACK), (hit_gloves, BLUE)):
        for part in parts:
            paint_part(picture, part, tones)
    paint_art(picture, FLASH, *flash_place)
    for parts, tones in ((punching, WHITE), (red_gloves, RED)):
        for part in parts:
            paint_part(picture, part, tones)
    return picture


def draw_by_hand(size, art, left, top):
    picture = blank(size)
    paint_frame(picture)
    cells = [(x, y) for y, row in enumerate(art.split(), top) for x, colour in enumerate(row, left)
             if colour not in (CLEAR, "y", "Y")]
    paint_shadow(picture, cells, ((1, 1),))
    paint_art(picture, art, left, top)
    return picture


def enlarge(picture, factor):
    return [[colour for colour in row for _ in range(factor)] for row in picture for _ in range(factor)]


def png(picture):
    """A PNG file with a palette of at most 16 colours, the first of them clear."""
    keys = list(COLOURS)
    lines = b""
    for row in picture:
        indices = [keys.index(colour) for colour in row]
        packed = bytes(left << 4 | right for left, right in zip(indices[::2], indices[1::2]))
        lines += b"\0" + packed  # 0: the line is not filtered
    chunks = [
        (b"IHDR", struct.pack(">IIBBBBB", len(picture), len(picture), 4, 3, 0, 0, 0)),
        (b"PLTE", b"".join(bytes(colour) for colour in COLOURS.values())),
        (b"tRNS", b"\0"),
        (b"IDAT", stored(lines)),
        (b"IEND", b""),
    ]
    return b"\x89PNG\r\n\x1a\n" + b"".join(chunk_bytes(*chunk) for chunk in chunks)


def runs(picture, colour):
    """The horizontal runs of a colour as (x, y, length)."""
    for y, row in enumerate(picture):
        for match in re.finditer(re.escape(colour) + "+", "".join(row)):
            yield match.start(), y, match.end() - match.start()


def svg(picture):
    """An SVG file with one path of unit-high bars per colour."""
    size = len(picture)
    lines = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{size}" height="{size}" viewBox="0 0 {size} {size}" '
             'shape-rendering="crispEdges">']
    for colour, (red, green, blue) in COLOURS.items():
        bars = "".join(f"M{x} {y}h{length}v1h-{length}z" for x, y, length in runs(picture, colour))
        if bars and colour != CLEAR:
            lines.append(f'<path fill="#{red:02x}{green:02x}{blue:02x}" d="{bars}"/>')
    return ("\n".join(lines) + "\n</svg>\n").encode()


def build_icons():
    """Returns {path below the icons' folder: bytes}."""
    large = draw_scene(64)
    medium = draw_by_hand(32, MEDIUM, 4, 3)
    small = draw_by_hand(24, SMALL, 2, 2)
    tiny = draw_by_hand(16, TINY, 1, 1)
    pictures = [tiny, small, medium, draw_scene(48), large, enlarge(large, 2), enlarge(large, 4)]
    icons = {f"{len(picture)}x{len(picture)}/apps/{NAME}.png": png(picture) for picture in pictures}
    return {**icons, f"scalable/apps/{NAME}.svg": svg(large)}


def check(icons):
    """Names every file that differs; returns whether all are the same."""
    differing = [name for name, data in icons.items()
                 if not (ICONS / name).is_file() or (ICONS / name).read_bytes() != data]
    for name in differing:
        print(f"{ICONS / name} differs from its source")
    return not differing


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--check", action="store_true", help="compare, write nothing")
    options = parser.parse_args()
    icons = build_icons()
    if options.check:
        return 0 if check(icons) else 1
    for name, data in icons.items():
        (ICONS / name).parent.mkdir(parents=True, exist_ok=True)
        (ICONS / name).write_bytes(data)
    return 0


if __name__ == "__main__":
    sys.exit(main())
