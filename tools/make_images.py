"""Draws the game's images: the four arrows and the block, as PNG files.

The menus stretch the two side arrows to a twentieth of the window's width and
the height of a line of text, 40 x 33 pixels at the default window size. They
are drawn at twice that size on a grid of cells that halves to whole pixels, so
they come out crisp there and stay so in larger windows. The up and down arrows
are shown at their own size, on the grid of the text around them.
"""

import struct
import zlib

EMPTY, OUTLINE, FILL = ".", "#", "o"

# The clear colour equals that of the outline: smoothing mixes it in at the
# edges, and any other would show there as a fringe.
COLOURS = {
    EMPTY: (0, 51, 25, 0),
    OUTLINE: (0, 51, 25, 255),
    FILL: (255, 205, 40, 255),
}

# As high as a line of text, 11 cells; the shaft lies at the middle of its
# capitals.
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


def build_images():
    """Returns {file name: bytes} of the five images."""
    right = _enlarge(RIGHT_ARROW.split(), SIDE_CELL, SIDE_MARGIN)
    left = [row[::-1] for row in right]
    down = _enlarge(DOWN_ARROW.split(), VERTICAL_CELL, VERTICAL_MARGIN)
    up = down[::-1]
    return {
        "to_right.png": _arrow_png(right),
        "to_left.png": _arrow_png(left),
        "down.png": _arrow_png(down),
        "up.png": _arrow_png(up),
        "dot.png": _block_png(),
    }


def _enlarge(rows, cell, margin):
    """Turns every character into cell x cell pixels, with clear sides."""
    side = EMPTY * margin
    return [
        side + "".join(character * cell for character in row) + side
        for row in rows
        for _ in range(cell)
    ]


def _arrow_png(rows):
    pixels = [b"".join(bytes(COLOURS[pixel]) for pixel in row) for row in rows]
    return _png(len(rows[0]), pixels, with_alpha=True)


def _block_png():
    """A plain white square: it takes any tint, and has no edge to smooth."""
    return _png(BLOCK_SIDE, [b"\xff" * 3 * BLOCK_SIDE] * BLOCK_SIDE, with_alpha=False)


def _png(width, rows, with_alpha):
    """Returns a PNG file of 8 bits per channel; rows hold each line's bytes."""
    colour_type = 6 if with_alpha else 2
    header = struct.pack(">IIBBBBB", width, len(rows), 8, colour_type, 0, 0, 0)
    lines = b"".join(b"\0" + row for row in rows)  # 0: the line is not filtered
    chunks = [(b"IHDR", header), (b"IDAT", stored(lines)), (b"IEND", b"")]
    return b"\x89PNG\r\n\x1a\n" + b"".join(chunk_bytes(*chunk) for chunk in chunks)


def chunk_bytes(name, data):
    body = name + data
    return struct.pack(">I", len(data)) + body + struct.pack(">I", zlib.crc32(body))


def stored(data):
    """Wraps data as one uncompressed zlib block of at most 65535 bytes.

    Compressed bytes would depend on the zlib at hand; these never change.
    """
    block = struct.pack("<BHH", 1, len(data), len(data) ^ 0xFFFF)
    return b"\x78\x01" + block + data + struct.pack(">I", zlib.adler32(data))
