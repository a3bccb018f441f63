"""Glyph bitmaps to a TrueType file whose outlines run along the pixel borders.

One em is nine pixels of UNIT units each, and 64 units make one pixel of 26.6 fixed point at size
9: the scale factor is exactly 1 there and exactly 2 at size 18, so no border is ever rounded.
A font without any instructions would be handed to the renderer's automatic hinter, which may move
borders; the empty function in the font program keeps it away. The dates are a constant, so the
same glyphs always give the same file.
"""

from fontTools.agl import UV2AGL
from fontTools.fontBuilder import FontBuilder
from fontTools.pens.ttGlyphPen import TTGlyphPen
from fontTools.ttLib import newTable
from fontTools.ttLib.tables.ttProgram import Program

from glyphs import ASCENT, DESCENT, GAP, Glyph

UNIT = 64
EM_PIXELS = 9
CAP_HEIGHT = 7
X_HEIGHT = 5

FAMILY = "Velmora Pixel"
STYLE = "Regular"
DATE = 2082844800  # 1 January 1970, counted in seconds from 1904

NOTDEF = Glyph(5, frozenset((x, y) for x in range(5) for y in range(1, 8)
                            if x in (0, 4) or y in (1, 7)))


def border_steps(pixels):
    """Unit steps along the borders, filled side on the right: start corner to end corners."""
    steps = {}
    for x, y in pixels:
        sides = (((x, y - 1), (x, y), (x + 1, y)),
                 ((x + 1, y), (x + 1, y), (x + 1, y + 1)),
                 ((x, y + 1), (x + 1, y + 1), (x, y + 1)),
                 ((x - 1, y), (x, y + 1), (x, y)))
        for neighbour, start, end in sides:
            if neighbour not in pixels:
                steps.setdefault(start, []).append(end)
    return steps


def turn(before, here, after):
    """Positive for a right turn (rows go down)."""
    return ((here[0] - before[0]) * (after[1] - here[1])
            - (here[1] - before[1]) * (after[0] - here[0]))


def contours(pixels):
    """Closed corner lists, clockwise round filled areas, counter-clockwise round holes.

    Where two pixels touch only at a corner the path turns right, so it stays on one pixel.
    """
    steps = border_steps(pixels)
    while steps:
        start = min(steps)
        path = [start]
        here, before = start, None
        while True:
            ends = steps[here]
            end = ends[0] if before is None else max(ends, key=lambda e: turn(before, here, e))
            ends.remove(end)
            if not ends:
                del steps[here]
            if end == start:
                break
            path.append(end)
            before, here = here, end
        yield [corner for i, corner in enumerate(path)
               if turn(path[i - 1], corner, path[(i + 1) % len(path)]) != 0]


def outline(glyph):
    pen = TTGlyphPen(None)
    for path in contours(glyph.pixels):
        points = [(x * UNIT, (ASCENT - y) * UNIT) for x, y in path]
        pen.moveTo(points[0])
        for point in points[1:]:
            pen.lineTo(point)
        pen.closePath()
    return pen.glyph()


def glyph_name(code):
    return UV2AGL.get(code, f"uni{code:04X}") if code not in (0xA0, 0xAD) else f"uni{code:04X}"


def keep_automatic_hinter_away(font):
    font["fpgm"] = table = newTable("fpgm")
    table.program = Program()
    table.program.fromAssembly(["PUSHB[ ]", "0", "FDEF[ ]", "ENDF[ ]"])
    font["maxp"].maxFunctionDefs = 1
    font["maxp"].maxStackElements = 1


def ask_for_plain_rendering(font):
    font["gasp"] = table = newTable("gasp")
    table.version = 0
    table.gaspRange = {0xFFFF: 0}


def build(glyphs, path):
    """Write the font of `glyphs` (by character code) to `path`."""
    names = {code: glyph_name(code) for code in sorted(glyphs)}
    drawn = {".notdef": NOTDEF} | {names[code]: glyphs[code] for code in names}
    tables = {name: outline(glyph) for name, glyph in drawn.items()}
    lefts = {name: min((x for x, _ in glyph.pixels), default=0) for name, glyph in drawn.items()}

    builder = FontBuilder(UNIT * EM_PIXELS, isTTF=True)
    builder.font.recalcTimestamp = False
    builder.updateHead(created=DATE, modified=DATE, fontRevision=1.0, lowestRecPPEM=EM_PIXELS)
    builder.setupGlyphOrder(list(drawn))
    builder.setupCharacterMap(names)
    builder.setupGlyf(tables)
    builder.setupHorizontalMetrics({name: ((glyph.width + GAP) * UNIT, lefts[name] * UNIT)
                                    for name, glyph in drawn.items()})
    lines = {"ascent": ASCENT * UNIT, "descent": -DESCENT * UNIT, "lineGap": UNIT}
    builder.setupHorizontalHeader(**lines)
    builder.setupNameTable({"familyName": FAMILY, "styleName": STYLE,
                            "uniqueFontIdentifier": f"{FAMILY} {STYLE} 1.000",
                            "fullName": FAMILY, "version": "Version 1.000",
                            "psName": "VelmoraPixel-Regular"})
    builder.setupOS2(fsType=0, sTypoAscender=lines["ascent"], sTypoDescender=lines["descent"],
                     sTypoLineGap=lines["lineGap"], usWinAscent=lines["ascent"],
                     usWinDescent=-lines["descent"], sxHeight=X_HEIGHT * UNIT,
                     sCapHeight=CAP_HEIGHT * UNIT, achVendID="VELM")
    builder.setupPost()
    keep_automatic_hinter_away(builder.font)
    ask_for_plain_rendering(builder.font)
    builder.save(path)
