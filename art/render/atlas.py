"""The interface atlas: buttons in two states and the check box, cut out by the screens.

Rows are 24 pixels high. A button's normal state stands at x 0 and its dim state at x 128, both on
the row of its place in LABELS; the fifth row is the wide back button. The check boxes stand in the
gap, at x 96.
"""

from glyphs import text_pixels
from shapes import BLACK, ORANGE, WHITE, Canvas

WIDTH, HEIGHT = 256, 384
ROW = 24
NORMAL_X, DIM_X, CHECK_X = 0, 128, 96
BUTTON_WIDTH, BACK_WIDTH = 56, 64
LABELS = ("create", "edit", "preview", "delete", "back", "confirm", "ok", "cancel", "yes", "no",
          "rename", "copy", "move", "add")

# Face, lower edge and text of a state.
NORMAL = (ORANGE, 0xB87800, BLACK)
DIM = (0x404040, 0x282828, 0x808080)

TEXT_X, TEXT_Y = 6, 8
ARROW_WIDTH = 14


def draw_arrow(canvas, x, y, colour):
    """An arrow to the left, seven pixels high."""
    for step in range(4):
        canvas.rect(x + step, y + 3 - step, 1, 1 + 2 * step, colour)
    canvas.rect(x + 4, y + 2, 6, 3, colour)


def draw_button(canvas, glyphs, x, y, label, state):
    face, edge, ink = state
    width = BACK_WIDTH if label == "back" else BUTTON_WIDTH
    canvas.rect(x, y, width, ROW, face)
    canvas.rect(x, y + ROW - 2, width, 2, edge)
    left = x + TEXT_X
    if label == "back":
        draw_arrow(canvas, left, y + TEXT_Y + 1, ink)
        left += ARROW_WIDTH
    canvas.dots(text_pixels(glyphs, label, left, y + TEXT_Y), ink)


def draw_check_box(canvas, y, on):
    canvas.rect(CHECK_X, y, ROW, ROW, BLACK)
    canvas.frame(CHECK_X + 2, y + 2, ROW - 4, ROW - 4, 2, WHITE)
    if on:
        canvas.rect(CHECK_X + 6, y + 6, ROW - 12, ROW - 12, ORANGE)


def render(glyphs, path):
    canvas = Canvas(WIDTH, HEIGHT)
    for row, label in enumerate(LABELS):
        draw_button(canvas, glyphs, NORMAL_X, row * ROW, label, NORMAL)
        draw_button(canvas, glyphs, DIM_X, row * ROW, label, DIM)
    draw_check_box(canvas, 0, False)
    draw_check_box(canvas, ROW, True)
    canvas.save(path)
