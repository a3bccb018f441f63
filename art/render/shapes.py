"""Drawing with hard edges: shapes are distance fields over pixel centres, filled where negative.

A shape function returns an array of signed distances in pixels (negative inside) for the grid of a
Canvas. Shapes combine with minimum (union) and maximum (intersection). Every pixel is either
filled or left alone: no edge is ever mixed with its ground.
Colours are 0xRRGGBB. A canvas is opaque where something was drawn and transparent elsewhere.
"""

import numpy as np
from PIL import Image

PINK = 0xFE00C3
BLUE = 0x59B1FF
ORANGE = 0xFFB000
WHITE = 0xFFFFFF
BLACK = 0x000000


class Canvas:
    def __init__(self, width, height, ground=None):
        self.width, self.height = width, height
        self.pixels = np.zeros((height, width, 4), np.uint8)
        rows, columns = np.mgrid[0:height, 0:width]
        self.x, self.y = columns + 0.5, rows + 0.5
        if ground is not None:
            self.rect(0, 0, width, height, ground)

    def fill(self, distance, colour):
        self.pixels[distance < 0] = rgba(colour)

    def rect(self, x, y, width, height, colour):
        self.pixels[max(y, 0):y + height, max(x, 0):x + width] = rgba(colour)

    def frame(self, x, y, width, height, thick, colour):
        """A hollow rectangle whose outer edge is the given one."""
        self.rect(x, y, width, thick, colour)
        self.rect(x, y + height - thick, width, thick, colour)
        self.rect(x, y, thick, height, colour)
        self.rect(x + width - thick, y, thick, height, colour)

    def dots(self, pixels, colour, x=0, y=0, scale=1):
        """Squares of `scale` pixels for an iterable of (column, row), from (x, y)."""
        for column, row in pixels:
            self.rect(x + column * scale, y + row * scale, scale, scale, colour)

    def circle(self, cx, cy, radius):
        return np.sqrt((self.x - cx) ** 2 + (self.y - cy) ** 2) - radius

    def box(self, cx, cy, half_width, half_height, radius=0):
        """A rectangle given by its centre and half sizes, corners rounded by `radius`."""
        dx = np.abs(self.x - cx) - (half_width - radius)
        dy = np.abs(self.y - cy) - (half_height - radius)
        outside = np.sqrt(np.maximum(dx, 0) ** 2 + np.maximum(dy, 0) ** 2)
        return outside + np.minimum(np.maximum(dx, dy), 0) - radius

    def cut_box(self, cx, cy, half_width, half_height, cut):
        """The same with corners cut at 45 degrees, `cut` pixels off each side."""
        dx, dy = np.abs(self.x - cx), np.abs(self.y - cy)
        corner = (dx + dy - (half_width + half_height - cut)) / np.sqrt(2)
        return np.maximum(np.maximum(dx - half_width, dy - half_height), corner)

    def polygon(self, corners):
        """A convex polygon, corners clockwise on the screen."""
        distance = np.full((self.height, self.width), -np.inf)
        for (x0, y0), (x1, y1) in zip(corners, corners[1:] + corners[:1]):
            length = np.sqrt((x1 - x0) ** 2 + (y1 - y0) ** 2)
            side = ((y1 - y0) * (self.x - x0) - (x1 - x0) * (self.y - y0)) / length
            distance = np.maximum(distance, side)
        return distance

    def save(self, path):
        """As a PNG; an opaque one by its palette, which takes the program a third of the time to
        draw."""
        colours, indices = np.unique(self.pixels.reshape(-1, 4), axis=0, return_inverse=True)
        if (colours[:, 3] < 255).any() or len(colours) > 256:
            Image.fromarray(self.pixels, "RGBA").save(path, optimize=True)
            return
        indices = indices.reshape(self.pixels.shape[:2]).astype(np.uint8)
        picture = Image.fromarray(indices, "P")
        picture.putpalette(colours[:, :3].tobytes())
        picture.save(path, optimize=True)


def rgba(colour):
    return (colour >> 16 & 255, colour >> 8 & 255, colour & 255, 255)


def inset(distance, depth):
    """The shape less a rim of `depth` pixels, even in inner corners."""
    slant = round(depth * 0.7)
    steps = ((depth, 0), (-depth, 0), (0, depth), (0, -depth),
             (slant, slant), (slant, -slant), (-slant, slant), (-slant, -slant))
    return np.maximum.reduce([np.roll(distance, step, axis=(0, 1)) for step in steps])
