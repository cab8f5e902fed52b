"""Reads the font's glyphs, drawn as text, from the files of tools/glyphs/.

A file holds blocks, told apart by blank lines, and comment lines that start with "# ". A block is a heading and
the rows of the drawing from top to bottom, "#" for a filled cell and "." for an empty one, all rows equally wide:

    glyph g bottom -2       a character (or U+ and its code, or .notdef)
    part acute              a piece that only composed letters use
    compose é = e + acute @ 6

"bottom n" gives the row of the drawing's last line; row 0 stands on the baseline and is meant where nothing is
said. In a composed letter "@ n" puts the lowest row of a part on row n instead.

The parts of a composed letter share their left edge; the first one gives the width.
"""

import re
from pathlib import Path
from typing import NamedTuple

GLYPH_DIR = Path(__file__).resolve().parent / "glyphs"
BLOCK = re.compile(r"^(\w+) (.+?)(?: bottom (-?\d+))?\n((?:[#.]+\n)*)", re.MULTILINE)


class Drawing(NamedTuple):
    width: int  # cells, without the gap to the next character
    cells: frozenset  # (column, row) of each filled cell, rows counted upwards


def read_glyphs():
    """Returns {character or ".notdef": Drawing} of every glyph file."""
    drawings, parts, compositions = {}, {}, []
    for path in sorted(GLYPH_DIR.glob("*.txt")):
        for kind, name, bottom, rows in BLOCK.findall(path.read_text(encoding="utf-8")):
            if kind == "compose":
                compositions.append(name.split(" = "))
            else:
                _add({"glyph": drawings, "part": parts}[kind], name, _drawing(name, rows.split(), int(bottom or 0)))
    for name, pieces in compositions:
        _add(drawings, name, _compose(pieces, {**drawings, **parts}))
    return drawings


def _drawing(name, rows, bottom):
    if len({len(row) for row in rows}) != 1:
        raise ValueError(f"{name}: rows must be equally wide")
    cells = frozenset((column, row) for row, line in enumerate(reversed(rows), bottom)
                      for column, cell in enumerate(line) if cell == "#")
    return Drawing(len(rows[0]), cells)


def _compose(pieces, drawings):
    width, cells = 0, frozenset()
    for piece in pieces.split(" + "):
        name, _, row = piece.partition(" @ ")
        part = drawings[name]
        shift = int(row) - min(y for _, y in part.cells) if row else 0
        width = width or part.width
        cells |= {(x, y + shift) for x, y in part.cells}
    return Drawing(width, cells)


def _add(drawings, name, drawing):
    name = chr(int(name[2:], 16)) if name.startswith("U+") else name
    if name in drawings:
        raise ValueError(f"{name!r} is drawn twice")
    drawings[name] = drawing
