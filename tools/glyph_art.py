"""Reads the font's glyphs, drawn as text, from the files of tools/glyphs/.

A file holds blocks, told apart by blank lines, and comment lines that start
with "# ". A block is a heading and the rows of the drawing from top to bottom,
"#" for a filled cell and "." for an empty one, all rows equally wide:

    glyph g bottom -2       a character (or U+ and its code, or .notdef)
    part acute              a piece that only composed letters use
    compose é = e + acute @ 6

"bottom n" gives the row of the drawing's last line; row 0 stands on the
baseline and is meant where nothing is said. In a composed letter "@ n" puts
the lowest row of a part on row n instead.

The parts of a composed letter share their left edge; the first one gives the
width.
"""

from pathlib import Path
from typing import NamedTuple

GLYPH_DIR = Path(__file__).resolve().parent / "glyphs"


class Drawing(NamedTuple):
    width: int  # cells, without the gap to the next character
    cells: frozenset  # (column, row) of each filled cell, rows counted upwards


def read_glyphs():
    """Returns {character or ".notdef": Drawing} of every glyph file."""
    drawings = {}
    parts = {}
    compositions = []
    for path in sorted(GLYPH_DIR.glob("*.txt")):
        for heading, rows in _blocks(path.read_text(encoding="utf-8")):
            kind, _, rest = heading.partition(" ")
            if kind == "compose":
                compositions.append(rest)
                continue
            name, _, bottom = rest.partition(" bottom ")
            target = {"glyph": drawings, "part": parts}[kind]
            drawing = _drawing(heading, rows, int(bottom or 0))
            _add(target, _character(name), drawing)
    for composition in compositions:
        name, _, pieces = composition.partition(" = ")
        _add(drawings, name, _compose(pieces, {**drawings, **parts}))
    return drawings


def _blocks(text):
    """Yields (heading, rows) for every block of a glyph file."""
    lines = [line for line in text.splitlines() if not line.startswith("# ")]
    heading, rows = None, []
    for line in lines + ["end "]:
        if line and not set(line) <= {"#", "."}:
            if heading:
                yield heading, rows
            heading, rows = line, []
        elif line:
            rows.append(line)


def _character(name):
    return chr(int(name[2:], 16)) if name.startswith("U+") else name


def _drawing(heading, rows, bottom):
    if len({len(row) for row in rows}) != 1:
        raise ValueError(f"{heading}: rows must be equally wide")
    cells = frozenset(
        (column, bottom + height)
        for height, row in enumerate(reversed(rows))
        for column, cell in enumerate(row)
        if cell == "#"
    )
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
    if name in drawings:
        raise ValueError(f"{name!r} is drawn twice")
    drawings[name] = drawing
