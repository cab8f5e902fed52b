"""Draws the program's icons: PNG files of 16 to 256 pixels, one SVG file, and all sizes in one ICO file.

The icon shows a punch landing in the ring. The large one is put together from the fighters' own bitmaps in
fight/fighter_masks.h; the small ones are drawn by hand, since no bitmap survives being shrunk to 16 pixels.
Every size is a whole multiple of one of these drawings, so that all pixels stay square.
"""

import re
from pathlib import Path

from PIL import Image

from make_images import image_of

MASKS = Path(__file__).resolve().parents[1] / "fight" / "fighter_masks.h"
NAME = "vantaro-pugnado"

CLEAR = "."
# Materials have a light, a plain and a shaded tone.
COLOURS = {
    CLEAR: "#00000000",
    "k": "#0c0c11",  # outline
    "g": "#14aa28", "G": "#0e8420",  # the ring, and the shadows on it
    "w": "#ffffff", "s": "#b8c0cc",
    "B": "#4a4c60", "b": "#1a1a24",
    "R": "#ee5650", "r": "#c41e26", "d": "#800a1a",
    "U": "#70a8ff", "u": "#2c68d6", "v": "#16388c",
    "Y": "#fff0a0", "y": "#ffcd28",
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


def paint_parts(picture, parts, tones):
    """Paints parts of a boxer, lit from the upper left."""
    light, plain, shade = tones
    for cells in parts:
        for x, y in cells:
            thick = (x, y - 3) in cells
            if (x, y + 1) not in cells or (thick and ((x, y + 2) not in cells or (x + 1, y) not in cells)):
                picture[y][x] = shade
            elif (x, y - 1) not in cells or (x - 1, y) not in cells:
                picture[y][x] = light
            else:
                picture[y][x] = plain


def read_mask(name):
    """The rows of one of the fighters' bitmaps, as text."""
    drawing = re.search(rf"> {name} = .*?\(\{{\{{(.*?)\}}\}}\)", MASKS.read_text(), re.DOTALL)
    return re.findall(r'"([.#]+)"', drawing.group(1))


def boxer(place, faces_right, arm, glove_end, head):
    """The parts of a boxer from above as sets of cells: arms and head, and gloves. The upper arm is as in the
    bitmap `arm`, whose glove are the columns before `glove_end`; the lower one rests."""
    def cells(rows, top, columns):
        return {(place[0] + (len(text) - 1 - column if faces_right else column), place[1] + y)
                for y, text in enumerate(rows, top) for column in columns if text[column] == "#"}

    upper, lower = read_mask(arm), read_mask("upper_left_0")[::-1]
    return ([cells(upper, 0, range(glove_end, 38)), cells(lower, 21, range(29, 38)),
             cells(read_mask(head), 11, range(38))],
            [cells(upper, 0, range(glove_end)), cells(lower, 21, range(29))])


def draw_scene(size):
    punching_arm, glove_end, punching_place, hit_place, flash_place = SCENES[size]
    picture = blank(size)
    paint_frame(picture)
    hit, blue_gloves = boxer(hit_place, False, "upper_left_0", 29, "head_back")
    punching, red_gloves = boxer(punching_place, True, punching_arm, glove_end, "head_normal_left")
    for part in hit + blue_gloves + punching + red_gloves:
        paint_shadow(picture, part, ((1, 1), (1, 2)))
    paint_parts(picture, hit, BLACK)
    paint_parts(picture, blue_gloves, BLUE)
    paint_art(picture, FLASH, *flash_place)
    paint_parts(picture, punching, WHITE)
    paint_parts(picture, red_gloves, RED)
    return picture


def draw_by_hand(size, art, left, top):
    picture = blank(size)
    paint_frame(picture)
    cells = [(x, y) for y, row in enumerate(art.split(), top) for x, colour in enumerate(row, left)
             if colour not in (CLEAR, "y", "Y")]
    paint_shadow(picture, cells, ((1, 1),))
    paint_art(picture, art, left, top)
    return picture


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
    for colour, code in COLOURS.items():
        bars = "".join(f"M{x} {y}h{length}v1h-{length}z" for x, y, length in runs(picture, colour))
        if bars and colour != CLEAR:
            lines.append(f'<path fill="{code}" d="{bars}"/>')
    return "\n".join(lines) + "\n</svg>\n"


def make_window_icon(folder):
    image_of(draw_scene(64), COLOURS).save(folder / "icon.png")


def make_icons(folder):
    large = draw_scene(64)
    pictures = (draw_by_hand(16, TINY, 1, 1), draw_by_hand(24, SMALL, 2, 2), draw_by_hand(32, MEDIUM, 4, 3),
                draw_scene(48), large)
    images = [image_of(picture, COLOURS) for picture in pictures]
    images += [images[-1].resize((size, size), Image.Resampling.NEAREST) for size in (128, 256)]
    for image in images:
        place = folder / "hicolor" / f"{image.width}x{image.width}" / "apps"
        place.mkdir(parents=True)
        image.save(place / f"{NAME}.png")
    (folder / "hicolor" / "scalable" / "apps").mkdir(parents=True)
    (folder / "hicolor" / "scalable" / "apps" / f"{NAME}.svg").write_text(svg(large))
    frames = [image.convert("RGBA") for image in images]  # the one kind that Windows takes
    frames[-1].save(folder / f"{NAME}.ico", sizes=[frame.size for frame in frames], append_images=frames)
