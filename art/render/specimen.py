"""The specimen of the font for the documents: every character, both sizes, lines of use."""

from glyphs import ASCENT, text_pixels
from shapes import BLUE, ORANGE, PINK, WHITE, Canvas

LEFT = 8
SMALL_STEP, LARGE_STEP = 13, 24
GROUND = 0x101018

SMALL = (
    ("ABCDEFGHIJKLMNOPQRSTUVWXYZ  abcdefghijklmnopqrstuvwxyz", WHITE),
    ("0123456789  !\"#$%&'()*+,-./:;<=>?@[\\]^_`{|}~", WHITE),
    ("".join(map(chr, range(0xA1, 0xC0))), WHITE),
    ("".join(map(chr, range(0xC0, 0xE0))), WHITE),
    ("".join(map(chr, range(0xE0, 0x100))), WHITE),
    ("O0  l1I|  5S  2Z  8B  rn m  vv w  cl d", ORANGE),
    ("MIRROR SCROLL INVERT BURNED ZOOM HUE GLITCH SNOW", BLUE),
    ("Drag and drop filters to a keyboard letter to create a bond", PINK),
)
LARGE = (
    ("ABCDEFGHIJKLMNOPQRSTUVWXYZ", WHITE),
    ("abcdefghijklmnopqrstuvwxyz", WHITE),
    ("0123456789 (&) [?] {!} @#%", WHITE),
    ("MIX  EDIT  OPTIONS  QUIT", ORANGE),
    ("multiply  half half  alpha /", BLUE),
)


def render(glyphs, path):
    width = 2 * LEFT + 320
    height = 2 * LEFT + SMALL_STEP * len(SMALL) + LARGE_STEP * len(LARGE) + ASCENT
    canvas = Canvas(width, height, GROUND)
    y = LEFT
    for text, colour in SMALL:
        canvas.dots(text_pixels(glyphs, text, 0, 0), colour, LEFT, y)
        y += SMALL_STEP
    y += ASCENT
    for text, colour in LARGE:
        canvas.dots(text_pixels(glyphs, text, 0, 0), colour, LEFT, y, 2)
        y += LARGE_STEP
    canvas.save(path)
