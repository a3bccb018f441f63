"""The emblem: two layers that overlap, the overlap lit where they mix."""

from shapes import BLUE, PINK, WHITE, Canvas

UNITS = 12  # the emblem is a square of this many units
LAYER = 8
ICON = 48


def draw_emblem(canvas, x, y, unit):
    """Draw the emblem with its top left at (x, y), `unit` pixels to a unit."""
    shift = (UNITS - LAYER) * unit
    both = (LAYER * unit) - shift
    canvas.rect(x, y, LAYER * unit, LAYER * unit, PINK)
    canvas.rect(x + shift, y + shift, LAYER * unit, LAYER * unit, BLUE)
    canvas.rect(x + shift, y + shift, both, both, WHITE)


def render_icon(path):
    """The program's icon: the emblem on a dark plate with rounded corners."""
    canvas = Canvas(ICON, ICON)
    canvas.fill(canvas.box(ICON / 2, ICON / 2, ICON / 2, ICON / 2, 9), 0x101018)
    draw_emblem(canvas, 6, 6, 3)
    canvas.save(path)
