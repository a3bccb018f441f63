"""The glyph sheets of art/font: parsing, composing and drawing.

A sheet holds bands: "at TOP: NAMES", then rows of '#' and '.', one column of cells per name. TOP
is the height of the first row above the baseline in pixels (7 for a capital); rows go down from
there and may pass below the baseline. A line "U+XXXX = PART + PART>X" composes a glyph from parts
that stand on one baseline, each centred or put X pixels from the left. Names are the character
itself, its U+ number, or a longer word for a part that only other glyphs use.
Every glyph becomes a Glyph of ROWS rows, ASCENT of them above the baseline.
"""

from dataclasses import dataclass
from pathlib import Path

ASCENT = 8
DESCENT = 2
ROWS = ASCENT + DESCENT
GAP = 1  # blank columns after every glyph

SHEETS = ("capitals.txt", "small.txt", "figures.txt", "marks.txt", "latin1.txt")
CHARACTERS = tuple(range(0x20, 0x7F)) + tuple(range(0xA0, 0x100))


@dataclass(frozen=True)
class Glyph:
    """Pixels of one glyph: a frozen set of (x, row), row 0 being ASCENT pixels up."""

    width: int
    pixels: frozenset

    @property
    def advance(self):
        return self.width + GAP


def character_key(name):
    """The key of a glyph: its code for an encoded character, the word itself for a part."""
    if name.startswith("U+"):
        return int(name[2:], 16)
    return ord(name) if len(name) == 1 else name


def read_band(where, header, rows, table):
    top, names = header[3:].split(":", 1)
    columns = list(zip(*(row.split() for row in rows), strict=True))
    names = names.split()
    if len(names) != len(columns):
        raise ValueError(f"{where}: {len(names)} names over {len(columns)} columns: {header}")
    for name, cells in zip(names, columns):
        width = len(cells[0])
        first = ASCENT - int(top)
        if any(len(cell) != width for cell in cells) or first + len(cells) > ROWS:
            raise ValueError(f"{where}: ragged or too tall: {name}")
        pixels = frozenset((x, first + y) for y, cell in enumerate(cells)
                           for x, mark in enumerate(cell) if mark == "#")
        key = character_key(name)
        if key in table:
            raise ValueError(f"{where}: drawn twice: {name}")
        table[key] = Glyph(width, pixels)


def compose(where, line, table):
    name, parts = (side.strip() for side in line.split("=", 1))
    placed = []
    for part in parts.split("+"):
        base, _, offset = part.strip().partition(">")
        placed.append((table[character_key(base)], int(offset) if offset else None))
    width = max(glyph.width + (offset or 0) for glyph, offset in placed)
    pixels = set()
    for glyph, offset in placed:
        left = (width - glyph.width) // 2 if offset is None else offset
        pixels |= {(x + left, y) for x, y in glyph.pixels}
    key = character_key(name)
    if key in table:
        raise ValueError(f"{where}: drawn twice: {name}")
    table[key] = Glyph(width, frozenset(pixels))


def read_sheet(path, table):
    lines = [line for line in path.read_text(encoding="ascii").splitlines()
             if not line.startswith("//")]
    index = 0
    while index < len(lines):
        line = lines[index]
        index += 1
        if line.startswith("at "):
            end = index
            while end < len(lines) and lines[end].strip():
                end += 1
            read_band(path.name, line, lines[index:end], table)
            index = end
        elif "=" in line:
            compose(path.name, line, table)


def load(folder):
    """All glyphs of the sheets in `folder`: a dictionary by character code."""
    table = {}
    for sheet in SHEETS:
        read_sheet(Path(folder) / sheet, table)
    missing = [f"U+{code:04X}" for code in CHARACTERS if code not in table]
    if missing:
        raise ValueError("not drawn: " + " ".join(missing))
    return {code: table[code] for code in CHARACTERS}


def load_lettering(path):
    """The large letters of one sheet: a dictionary by character code."""
    table = {}
    read_sheet(Path(path), table)
    return table


def text_width(glyphs, text):
    """Width in pixels at size 9, the gap after the last glyph included."""
    return sum(glyphs[ord(mark)].advance for mark in text)


def text_pixels(glyphs, text, x, y):
    """The lit pixels of a line at size 9 whose surface has its top left at (x, y)."""
    for mark in text:
        glyph = glyphs[ord(mark)]
        yield from ((x + px, y + py) for px, py in sorted(glyph.pixels))
        x += glyph.advance
