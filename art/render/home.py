"""The ground of the home screen: the wordmark, five tiles with icons, a scatter of dim cells.

The program writes each tile's texts from 4 pixels right of and 2 below its corner, black or white:
a tile's upper part is one plain colour, dark enough for white and light enough for black. The
icons keep to the lower part. Below the tiles the ground stays plain for two lines of white text.
"""

from emblem import draw_emblem
from glyphs import text_pixels
from shapes import BLACK, BLUE, ORANGE, PINK, WHITE, Canvas

WIDTH, HEIGHT = 640, 360
TILE = 94
GROUND = 0x101018

PINK_TILE = 0xE400AF
BLUE_TILE = 0x2F7FD0
ORANGE_TILE = 0xC85C00
GREY_TILE = 0x787880

# Tile corners by item, and their colours.
TILES = (
    ("MIX", 273, 75, PINK_TILE),
    ("EDIT", 377, 75, BLUE_TILE),
    ("OPTIONS", 169, 179, ORANGE_TILE),
    ("FULL SCREEN", 273, 179, GREY_TILE),
    ("QUIT", 377, 179, GREY_TILE),
)

WORDMARK_X, WORDMARK_Y = 169, 75

CELL = 8
CELL_COLOURS = (0x2C0824, 0x101C30, 0x302008, 0x1C1C24)


def draw_scatter(canvas):
    """Dim cells that thin out towards the tiles, on both sides; never under a text."""
    seed = 19
    for row in range(HEIGHT // CELL):
        for column in range(WIDTH // CELL):
            seed = (seed * 1103515245 + 12345) % 2**31
            chance, pick = seed >> 16 & 63, seed >> 24 & 3
            edge = min(column, WIDTH // CELL - 1 - column)
            if chance < 22 - 2 * edge:
                canvas.rect(column * CELL, row * CELL, CELL - 1, CELL - 1, CELL_COLOURS[pick])


def icon_mix(canvas, x, y):
    """Two layers, one seen through the other."""
    canvas.rect(x + 44, y + 56, 28, 20, BLACK)
    canvas.frame(x + 58, y + 66, 28, 20, 2, WHITE)


def icon_edit(canvas, x, y):
    """A list, its second line picked up."""
    for line, top in enumerate((56, 64, 72, 80)):
        colour, shift = (WHITE, 4) if line == 1 else (BLACK, 0)
        canvas.rect(x + 48 + shift, y + top, 6, 6, colour)
        canvas.rect(x + 56 + shift, y + top, 26, 6, colour)


def icon_options(canvas, x, y):
    """Three sliders."""
    for top, knob, colour in ((58, 64, WHITE), (69, 50, ORANGE), (80, 74, WHITE)):
        canvas.rect(x + 46, y + top, 40, 2, BLACK)
        canvas.rect(x + knob - 1, y + top - 4, 8, 10, BLACK)
        canvas.rect(x + knob + 1, y + top - 2, 4, 6, colour)


def icon_full_screen(canvas, x, y):
    """A small picture growing into the four corners of a screen."""
    canvas.rect(x + 42, y + 56, 44, 30, BLACK)
    canvas.rect(x + 57, y + 66, 14, 10, BLUE)
    for column, upright in ((46, 46), (76, 80)):
        for row, level in ((60, 60), (76, 80)):
            canvas.rect(x + column, y + level, 6, 2, WHITE)
            canvas.rect(x + upright, y + row, 2, 6, WHITE)


def icon_quit(canvas, x, y):
    """A door and the way out of it."""
    canvas.rect(x + 64, y + 54, 22, 32, BLACK)
    canvas.rect(x + 68, y + 58, 14, 28, PINK)
    canvas.rect(x + 42, y + 68, 28, 4, WHITE)
    for step in range(4):
        canvas.rect(x + 68 + 2 * step, y + 62 + 2 * step, 2, 16 - 4 * step, WHITE)


ICONS = (icon_mix, icon_edit, icon_options, icon_full_screen, icon_quit)


def draw_wordmark(canvas, letters):
    draw_emblem(canvas, WORDMARK_X, WORDMARK_Y, 5)
    canvas.dots(text_pixels(letters, "VELMORA", 0, 0), WHITE, WORDMARK_X,
                WORDMARK_Y + TILE - 16, 2)


def render(letters, path):
    canvas = Canvas(WIDTH, HEIGHT, GROUND)
    draw_scatter(canvas)
    draw_wordmark(canvas, letters)
    for (_, x, y, colour), icon in zip(TILES, ICONS):
        canvas.rect(x, y, TILE, TILE, colour)
        icon(canvas, x, y)
    canvas.rect(169, 296, 302, 1, 0x404050)
    canvas.save(path)
