"""What the screens rely on in the rendered files, checked after rendering."""

import atlas
import home
import numpy as np
import pad
import truetype
from fontTools.ttLib import TTFont
from PIL import Image

SIZES = {
    "home.png": (640, 360),
    "logo-tessaron.png": (320, 240),
    "ps3-controller.png": (600, 370),
    "textureUI.png": (256, 384),
    "icon.png": (48, 48),
}

# Column and row of each home item: the selection bars run from 9 right of and 15 below the corner of
# its cell of 104 pixels, the first cell being at (160, 60).
HOME_CELLS = ((1, 0), (2, 0), (0, 1), (1, 1), (2, 1))

# Top left of each square of the controller page, which shows the pad's picture at (20, 0).
PAGE_SQUARES = ((140, 90), (170, 120), (140, 150), (110, 120), (475, 80), (525, 120), (475, 160),
                (430, 120), (140, 10), (475, 10), (140, -30), (475, -30), (360, 120), (260, 120))
SQUARE = 30
CALM = 325  # the pad's picture is empty from this row on

READABLE = 4.0  # contrast that a tile owes to black and to white text
TEXT_PART = 54  # rows of a tile that texts may use


def luminance(colour):
    parts = [value / 255 for value in colour[:3]]
    red, green, blue = (p / 12.92 if p <= 0.04045 else ((p + 0.055) / 1.055) ** 2.4 for p in parts)
    return 0.2126 * red + 0.7152 * green + 0.0722 * blue


def contrast(one, other):
    low, high = sorted((luminance(one), luminance(other)))
    return (high + 0.05) / (low + 0.05)


def require(truth, what):
    if not truth:
        raise SystemExit(f"make-data: {what}")


def load_images(folder):
    images = {}
    for name, size in SIZES.items():
        with Image.open(folder / name) as image:
            require(image.mode in ("RGBA", "P") and image.size == size,
                    f"{name}: {image.mode}, {image.size}")
            images[name] = np.array(image.convert("RGBA"))
    return images


def check_home(pixels):
    require((pixels[..., 3] == 255).all(), "home.png: not opaque")
    for (name, x, y, _), (column, row) in zip(home.TILES, HOME_CELLS, strict=True):
        require((x, y) == (160 + 104 * column + 9, 60 + 104 * row + 15),
                f"home.png: {name}: not under its selection bars")
        part = pixels[y:y + TEXT_PART, x:x + home.TILE, :3].reshape(-1, 3)
        require((part == part[0]).all(), f"home.png: {name}: the text part is not plain")
        black, white = contrast(part[0], (0, 0, 0)), contrast(part[0], (255, 255, 255))
        require(min(black, white) >= READABLE, f"home.png: {name}: text hard to read")
        print(f"tile {name:11}  black text {black:4.2f} : 1   white text {white:4.2f} : 1")
    lines = pixels[306:344, 160:480, :3].reshape(-1, 3)
    require((lines == lines[0]).all(), "home.png: the ground of the fixed texts is not plain")
    print(f"fixed texts       white text {contrast(lines[0], (255, 255, 255)):4.2f} : 1")


def check_logo(pixels):
    require((pixels[..., 3] == 255).all(), "logo-tessaron.png: not opaque")
    edge = np.ones(pixels.shape[:2], bool)
    edge[16:-16, 16:-16] = False
    require((pixels[edge][:, :3] == 0).all(), "logo-tessaron.png: the margin is not black")
    lit = pixels[..., :3].any(axis=2)
    kept = (pixels[..., :3] & (0xF8, 0xFC, 0xF8)).any(axis=2)
    require(lit.any() and (lit == kept).all(), "logo-tessaron.png: pixels lost in 16 bits")


def check_pad(pixels):
    require(not pixels[CALM:, :, :3].any(), "ps3-controller.png: drawing under the texts")
    for entry, (x, y) in enumerate(PAGE_SQUARES):
        left, top = x - 20, max(y, 0)
        square = pixels[top:max(y + SQUARE, 0), left:left + SQUARE, :3]
        require(square.any(axis=2).all(), f"ps3-controller.png: entry {entry} in the void")
        require(pad.ANCHORS[entry] == (x - 5, y + 15),
                f"ps3-controller.png: entry {entry} is drawn elsewhere")


def check_atlas(pixels):
    taken = np.zeros(pixels.shape[:2], int)
    for row, label in enumerate(atlas.LABELS):
        width = atlas.BACK_WIDTH if label == "back" else atlas.BUTTON_WIDTH
        for x in (atlas.NORMAL_X, atlas.DIM_X):
            taken[row * atlas.ROW:(row + 1) * atlas.ROW, x:x + width] += 1
    taken[0:48, 96:120] += 1
    require(taken.max() == 1, "textureUI.png: pieces overlap")
    require(((pixels[..., 3] == 255) == (taken == 1)).all(), "textureUI.png: pieces out of place")
    require(taken[96:120, 0:64].all(), "textureUI.png: no back button at (0, 96)")
    off, on = pixels[0:24, 96:120], pixels[24:48, 96:120]
    require((off != on).any(), "textureUI.png: the check boxes are alike")


def check_font(path, codes):
    font = TTFont(path)
    require(set(font.getBestCmap()) == set(codes), "volter: characters missing")
    require(font["head"].unitsPerEm == 9 * 64, "volter: units do not match the pixels")
    dates = (font["head"].created, font["head"].modified)
    require(dates == (truetype.DATE, truetype.DATE), "volter: carries dates of its making")


def check(folder, codes):
    check_font(folder / "volter", codes)
    images = load_images(folder)
    check_home(images["home.png"])
    check_logo(images["logo-tessaron.png"])
    check_pad(images["ps3-controller.png"])
    check_atlas(images["textureUI.png"])
