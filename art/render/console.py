"""The wordmark for a Linux console, which the card shows while it starts.

Half blocks of characters twice as high as wide, so every pixel is a square of one character's width.
Pink and blue are the console's colours 13 and 12, which the text sets before it uses them.
"""

from emblem import UNITS, draw_emblem
from glyphs import text_pixels
from shapes import BLUE, PINK, WHITE, Canvas

NAME = "VELMORA"
NAME_HEIGHT = 8
UNIT = 2
GAP = 4  # between emblem and name

PALETTE = f"\x1b]PD{PINK:06x}\x1b]PC{BLUE:06x}"
COLOURS = {PINK: "95", BLUE: "94", WHITE: "97"}


def draw(letters):
    name = list(text_pixels(letters, NAME, 0, 0))
    top = UNITS * UNIT + GAP
    canvas = Canvas(max(column for column, _ in name) + 1, top + NAME_HEIGHT)
    draw_emblem(canvas, 0, 0, UNIT)
    canvas.dots(name, WHITE, 0, top)
    return canvas


def colour_at(canvas, column, row):
    red, green, blue, opaque = (int(value) for value in canvas.pixels[row, column])
    return red << 16 | green << 8 | blue if opaque else None


def lines(canvas):
    """Two rows of pixels a line. Both halves of a character have one colour, where they have any."""
    for row in range(0, canvas.height, 2):
        line, last = "", None
        for column in range(canvas.width):
            upper, lower = (colour_at(canvas, column, row + half) for half in (0, 1))
            colour = upper if upper is not None else lower
            assert None in (upper, lower) or upper == lower
            if colour not in (None, last):
                line += f"\x1b[{COLOURS[colour]}m"
                last = colour
            line += " ▄▀█"[2 * (upper is not None) + (lower is not None)]
        yield line.rstrip() + "\x1b[0m"


def render(letters, path):
    canvas = draw(letters)
    path.write_text(PALETTE + "\n".join(lines(canvas)) + "\n", encoding="utf-8")
