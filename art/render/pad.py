"""The game pad of the controller page, seen from above and a little from the front.

The page lays fourteen squares of 30 x 30 pixels over the picture; ANCHORS holds the middle of each
in this picture's coordinates, and the parts of the pad are drawn from the same middles. Entries 10
and 11, the rear shoulder buttons, have their squares above the picture: only their front edge
shows. Two lines of text stand over the lowest 45 rows, which stay empty.
"""

import numpy as np

from glyphs import text_pixels, text_width
from shapes import BLACK, Canvas, inset

WIDTH, HEIGHT = 600, 370
MIDDLE = 302.5

# Middles of the squares by entry of the controller map.
ANCHORS = (
    (135, 105), (165, 135), (135, 165), (105, 135),  # cross: up, right, down, left
    (470, 95), (520, 135), (470, 175), (425, 135),   # face: top, right, bottom, left
    (135, 25), (470, 25), (135, -15), (470, -15),    # shoulders: front, then rear
    (355, 135), (255, 135),                          # centre: start, select
)

EDGE = 0x606878
LIGHT = 0x485060
BODY = 0x303640
SHADE = 0x262B34
WELL = 0x1A1E25
KEY = 0x0C0E12
KEY_TOP = 0x58606E
LABEL = 0x9098A8


def body(canvas):
    """A wide slab with two short legs; every slope is one to one."""
    shape = canvas.cut_box(MIDDLE, 138, 272, 90, 48)
    shape = np.maximum(shape, -canvas.cut_box(MIDDLE, 44, 122, 16, 14))
    for side in (-1, 1):
        leg = canvas.cut_box(MIDDLE + side * 216, 212, 56, 100, 30)
        fillet = canvas.cut_box(MIDDLE + side * 160, 228, 24, 24, 24)
        shape = np.minimum(shape, np.minimum(leg, fillet))
    return shape


def draw_shoulders(canvas):
    for x in (135, 470):
        rear = canvas.cut_box(x, 0, 50, 24, 8)
        canvas.fill(rear, EDGE)
        canvas.fill(rear + 2, SHADE)
        front = canvas.cut_box(x, 36, 68, 28, 14)
        canvas.fill(front, EDGE)
        canvas.fill(front + 2, LIGHT)


def draw_cable(canvas):
    canvas.rect(299, 0, 8, 70, EDGE)
    canvas.rect(301, 0, 4, 70, WELL)
    canvas.rect(293, 46, 20, 20, EDGE)
    canvas.rect(295, 48, 16, 20, WELL)


def draw_body(canvas):
    shape = body(canvas)
    canvas.fill(shape, EDGE)
    canvas.fill(inset(shape, 2), SHADE)
    lifted = np.roll(shape, -7, axis=0)
    canvas.fill(inset(np.maximum(lifted, shape), 4), BODY)
    for x in (135, 472):
        ring = canvas.cut_box(x, 135, 79, 79, 44)
        canvas.fill(ring, LIGHT)
        canvas.fill(ring + 2, WELL)


def draw_cross(canvas):
    x, y = ANCHORS[0][0], ANCHORS[1][1]
    shape = np.minimum(canvas.cut_box(x, y, 54, 20, 5), canvas.cut_box(x, y, 20, 54, 5))
    canvas.fill(shape - 3, KEY)
    canvas.fill(shape, KEY_TOP)
    canvas.fill(shape + 2, BODY)
    canvas.fill(canvas.circle(x, y, 8), SHADE)


def draw_round_keys(canvas):
    for x, y in ANCHORS[4:8]:
        canvas.fill(canvas.circle(x, y, 25), KEY)
        canvas.fill(canvas.circle(x, y, 22), KEY_TOP)
        canvas.fill(canvas.circle(x, y, 20), BODY)


def draw_centre_keys(canvas, glyphs):
    for (x, y), label in zip(ANCHORS[12:], ("start", "select")):
        shape = canvas.box(x, y, 25, 13, 13)
        canvas.fill(shape - 3, KEY)
        canvas.fill(shape, KEY_TOP)
        canvas.fill(shape + 2, BODY)
        left = x - text_width(glyphs, label) // 2
        canvas.dots(text_pixels(glyphs, label, left, y + 20), LABEL)


def render(glyphs, path):
    canvas = Canvas(WIDTH, HEIGHT, BLACK)
    draw_cable(canvas)
    draw_shoulders(canvas)
    draw_body(canvas)
    draw_cross(canvas)
    draw_round_keys(canvas)
    draw_centre_keys(canvas, glyphs)
    canvas.save(path)
