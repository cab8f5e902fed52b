"""Draws the game's images: the four arrows and the block.

The menus stretch the two side arrows to a twentieth of the window's width and the height of a line of text,
40 x 33 pixels at the default window size. They are drawn at twice that size on a grid of cells that halves to
whole pixels, so they come out crisp there and stay so in larger windows. The up and down arrows are shown at
their own size, on the grid of the text around them.
"""

from PIL import Image, ImageColor, ImageOps

EMPTY, OUTLINE, FILL = ".", "#", "o"

# The clear colour equals that of the outline: smoothing mixes it in at the edges, and any other would show there
# as a fringe.
COLOURS = {EMPTY: "#00331900", OUTLINE: "#003319", FILL: "#ffcd28"}

# As high as a line of text, 11 cells; the shaft lies at the middle of its capitals.
RIGHT_ARROW = """
............
.....###....
.....#o##...
######oo##..
#oooooooo##.
#ooooooooo##
#oooooooo##.
######oo##..
.....#o##...
.....###....
............
"""
SIDE_CELL = 6  # pixels
SIDE_MARGIN = 4  # pixels, left and right

DOWN_ARROW = """
....#####....
....#ooo#....
....#ooo#....
#####ooo#####
##ooooooooo##
.##ooooooo##.
..##ooooo##..
...##ooo##...
....##o##....
.....###.....
......#......
"""
VERTICAL_CELL = 3  # pixels
VERTICAL_MARGIN = 1

BLOCK_SIDE = 8  # pixels


def image_of(rows, colours):
    """An image with a pixel for every character of the rows."""
    image = Image.new("RGBA", (len(rows[0]), len(rows)))
    image.putdata([ImageColor.getcolor(colours[character], "RGBA") for row in rows for character in row])
    return image


def _arrow(art, cell, margin):
    """Turns every character into cell x cell pixels, with clear sides."""
    small = image_of(art.split(), COLOURS)
    large = small.resize((small.width * cell, small.height * cell), Image.Resampling.NEAREST)
    return ImageOps.expand(large, (margin, 0), COLOURS[EMPTY])


def make_images(folder):
    right = _arrow(RIGHT_ARROW, SIDE_CELL, SIDE_MARGIN)
    right.save(folder / "to_right.png")
    ImageOps.mirror(right).save(folder / "to_left.png")
    down = _arrow(DOWN_ARROW, VERTICAL_CELL, VERTICAL_MARGIN)
    down.save(folder / "down.png")
    ImageOps.flip(down).save(folder / "up.png")
    # A plain white square: it takes any tint, and has no edge to smooth.
    Image.new("RGB", (BLOCK_SIDE, BLOCK_SIDE), "white").save(folder / "dot.png")
