"""Builds the game's font, 8bit_block.ttf, from the drawings of glyph_art.

The font is drawn on a grid of square cells of 0.12 em: 3 pixels at 25 points and 5 pixels at 42 points. Baseline,
advance and all strokes lie on whole cells. Most characters are equally wide, the digits, the blank and the dot
among them.

At sizes where a cell would not be a whole number of pixels the font's own hints move every point onto a grid of
the nearest whole number, so that strokes stay even at any window size: one pixel at 12 points, for instance.
"""

import array
import itertools

from fontTools.fontBuilder import FontBuilder
from fontTools.ttLib import newTable
from fontTools.ttLib.tables._g_l_y_f import Glyph, GlyphCoordinates, flagOnCurve
from fontTools.ttLib.tables.ttProgram import Program

from glyph_art import read_glyphs
from pixel_outline import contours

FAMILY = "Vantaro Block"
STYLE = "Bold"
VERSION = "1.0"

UNITS_PER_EM = 1000
CELL = 120  # font units
GAP = 1  # cells from one character to the next
CAP_HEIGHT = 7  # cells
X_HEIGHT = 5
ASCENT = 9  # cells; capitals with accents
DESCENT = 2

# Seconds since 1904, the font format's epoch: 1 January 2024, for the same bytes on every day.
BUILD_TIME = 3786912000

# What programs that choose a font by its looks are told.
PANOSE = {
    "bFamilyType": 2, "bSerifStyle": 11, "bWeight": 8,  # text, no serifs, bold
    "bProportion": 0, "bContrast": 0, "bStrokeVariation": 0,  # any
    "bArmStyle": 0, "bLetterForm": 0, "bMidline": 0, "bXHeight": 0,
}

# The hints. Storage 0 keeps the size of a cell in whole pixels, control value 0 is the exact size. Function 0 moves
# point p of the stack onto the grid along the current axis and leaves p - 1; function 1 does so for the points n to
# 0 along both axes.
HINT_FUNCTIONS = [
    "PUSHB[ ] 0", "FDEF[ ]",
    "DUP[ ]", "DUP[ ]", "GC[0]", "PUSHB[ ] 0", "RCVT[ ]", "DIV[ ]", "ROUND[00]",
    "PUSHB[ ] 0", "RS[ ]", "MUL[ ]", "SCFS[ ]", "PUSHB[ ] 1", "SUB[ ]",
    "ENDF[ ]",
    "PUSHB[ ] 1", "FDEF[ ]",
    "SVTCA[1]", "DUP[ ]", "DUP[ ]", "PUSHB[ ] 1", "ADD[ ]", "PUSHB[ ] 0", "LOOPCALL[ ]", "POP[ ]",
    "SVTCA[0]", "DUP[ ]", "PUSHB[ ] 1", "ADD[ ]", "PUSHB[ ] 0", "LOOPCALL[ ]", "POP[ ]",
    "ENDF[ ]",
]

# Run once for a size: rounds the cell, switches the hints off where it would vanish, and asks for movement along the
# x axis to be obeyed too.
HINT_SETUP = [
    "PUSHB[ ] 0", "PUSHB[ ] 0", "RCVT[ ]", "ROUND[00]", "WS[ ]",
    "PUSHB[ ] 0", "RS[ ]", "PUSHB[ ] 0", "EQ[ ]",
    "IF[ ]", "PUSHB[ ] 1 1", "INSTCTRL[ ]", "EIF[ ]",
    "PUSHB[ ] 4 3", "INSTCTRL[ ]",
]


def make_font(folder):
    drawings = {_glyph_name(key): drawing for key, drawing in read_glyphs().items()}
    order = sorted(drawings)  # begins with .notdef, as every font must
    builder = FontBuilder(UNITS_PER_EM, isTTF=True)
    builder.setupGlyphOrder(order)
    builder.setupCharacterMap({int(name[3:], 16): name for name in order[1:]})
    builder.setupGlyf({name: _glyph(drawings[name].cells) for name in order})
    _set_metrics(builder, drawings)
    _set_names(builder)
    _set_hints(builder.font)
    builder.setupHead(
        unitsPerEm=UNITS_PER_EM, fontRevision=float(VERSION), created=BUILD_TIME, modified=BUILD_TIME,
        macStyle=0x01,  # bold
        flags=0x001B,  # baseline and left side at 0, whole sizes, hinted advances
        lowestRecPPEM=9,
    )
    builder.font.recalcTimestamp = False
    builder.save(folder / "8bit_block.ttf")


def _glyph_name(key):
    return key if key == ".notdef" else f"uni{ord(key):04X}"


def _glyph(cells):
    # A blank gets one point and no area: without a point its width would not be hinted and would differ from that of
    # the letters.
    outline = contours(cells) or [[(0, 0)]]
    points = [point for polygon in outline for point in polygon]
    ends = itertools.accumulate(len(polygon) for polygon in outline)
    glyph = Glyph()
    glyph.numberOfContours = len(outline)
    glyph.coordinates = GlyphCoordinates([(x * CELL, y * CELL) for x, y in points])
    glyph.flags = bytearray([flagOnCurve] * len(points))
    glyph.endPtsOfContours = [end - 1 for end in ends]
    # Two points more than the outline has: those of the origin and the advance.
    glyph.program = _program([f"PUSHB[ ] {len(points) + 1}", "PUSHB[ ] 1", "CALL[ ]"])
    return glyph


def _program(lines):
    program = Program()
    program.fromAssembly(lines)
    return program


def _set_metrics(builder, drawings):
    metrics = {}
    for name, drawing in drawings.items():
        left = min((column for column, _ in drawing.cells), default=0)
        metrics[name] = ((drawing.width + GAP) * CELL, left * CELL)
    builder.setupHorizontalMetrics(metrics)
    builder.setupHorizontalHeader(ascent=ASCENT * CELL, descent=-DESCENT * CELL)
    builder.setupOS2(
        version=4, usWeightClass=700, panose=PANOSE, achVendID="VTRO",
        fsType=0,  # may be installed and embedded freely
        fsSelection=0x00A0,  # bold, typographic metrics
        sTypoAscender=ASCENT * CELL, sTypoDescender=-DESCENT * CELL, sTypoLineGap=0,
        usWinAscent=ASCENT * CELL, usWinDescent=DESCENT * CELL,
        sxHeight=X_HEIGHT * CELL, sCapHeight=CAP_HEIGHT * CELL,
        yStrikeoutSize=CELL, yStrikeoutPosition=3 * CELL,
        usBreakChar=0x20, usMaxContext=1,
        ulCodePageRange1=0x00000001,  # Latin 1
    )
    builder.setupPost(underlinePosition=-CELL, underlineThickness=CELL)


def _set_names(builder):
    builder.setupNameTable({
        "familyName": FAMILY,
        "styleName": STYLE,
        "uniqueFontIdentifier": f"{VERSION};{FAMILY} {STYLE}",
        "fullName": f"{FAMILY} {STYLE}",
        "version": f"Version {VERSION}",
        "psName": f"{FAMILY.replace(' ', '')}-{STYLE}",
        "copyright": "Drawn for Vantaro Pugnado",
    }, mac=False)


def _set_hints(font):
    for tag, attributes in {
        "fpgm": {"program": _program(HINT_FUNCTIONS)},
        "prep": {"program": _program(HINT_SETUP)},
        "cvt ": {"values": array.array("h", [CELL])},
        "gasp": {"version": 1, "gaspRange": {0xFFFF: 0x0005}},  # hint at every size, never smooth
    }.items():
        font[tag] = newTable(tag)
        vars(font[tag]).update(attributes)
    vars(font["maxp"]).update(maxZones=2, maxFunctionDefs=2, maxStorage=1, maxStackElements=16,
                              maxSizeOfInstructions=16)
