"""The maker's logo: a T laid from four tesserae, and the name. Everything else is pure black,
because the intro lights up every pixel that is not."""

from glyphs import text_pixels
from shapes import BLACK, BLUE, ORANGE, PINK, WHITE, Canvas

WIDTH, HEIGHT = 320, 240
NAME_WIDTH = 55 * 4

# Each tessera: corners clockwise from the top left, body colour, colour of the lit facet.
TESSERAE = (
    (((98, 50), (137, 46), (136, 88), (102, 85)), PINK, 0xFF70E0),
    (((142, 46), (181, 49), (179, 86), (141, 88)), 0xC0C0CC, WHITE),
    (((186, 49), (222, 45), (219, 88), (184, 86)), BLUE, 0xA8D8FF),
    (((142, 93), (178, 91), (181, 132), (139, 129)), ORANGE, 0xFFD470),
)
NAME_Y = 160


def render(letters, path):
    canvas = Canvas(WIDTH, HEIGHT, BLACK)
    for corners, body, facet in TESSERAE:
        top_left, top_right, _, bottom_left = corners
        canvas.fill(canvas.polygon(list(corners)), body)
        canvas.fill(canvas.polygon([top_left, top_right, bottom_left]), facet)
    canvas.dots(text_pixels(letters, "TESSARON", 0, 0), WHITE, (WIDTH - NAME_WIDTH) // 2,
                NAME_Y, 4)
    canvas.save(path)
