"""The films that bench/rate-distortion has encoded: footage, drawings, games, graphics, noise.

Every source is made here, but for films and photographs of Debian's package opencv-doc, and is a
lossless film of 640 x 360 at 25.6 frames a second, whose pictures are the same in every run.
"""

import gzip
import math
import shutil
import subprocess
import sys
from pathlib import Path

import numpy as np
from PIL import Image, ImageDraw

ROOT = Path(__file__).resolve().parent.parent
WIDTH, HEIGHT, FPS = 640, 360, "128/5"
FRAMES = 128  # of a whole turn of the drawings
PACKAGE = "opencv-doc"
SAMPLES = Path("usr/share/doc/opencv-doc/examples/data")

# The interface's colours.
WHITE, BLACK, PINK, BLUE, ORANGE = 0xFFFFFF, 0x000000, 0xFE00C3, 0x59B1FF, 0xFFB000

# AVI holds the frame rate as a fraction: no time stamp is rounded.
LOSSLESS = ("-r", FPS, "-c:v", "ffv1", "-pix_fmt", "bgr0", "-an")
PACE = "settb=5/128,setpts=N"
EXACT_COLOURS = ("-sws_flags", "bicubic+accurate_rnd+full_chroma_int+full_chroma_inp")
COVER = (f"scale={WIDTH}:{HEIGHT}:force_original_aspect_ratio=increase:flags=bicubic,"
         f"crop={WIDTH}:{HEIGHT}")


def run(command, **options):
    """Run a command that must succeed; its standard output."""
    done = subprocess.run(
        [str(part) for part in command], stdin=options.pop("stdin", subprocess.DEVNULL),
        capture_output=True, check=False, **options)
    if done.returncode != 0:
        sys.exit(f"{' '.join(map(str, command))}\n{done.stderr.decode(errors='replace').strip()}")
    return done.stdout


def ffmpeg(*arguments):
    return run(["ffmpeg", "-v", "error", "-nostdin", "-y", *arguments])


class Work:
    """The folder of a run, its tool and its samples."""

    def __init__(self, folder, tool, samples):
        self.folder, self.tool, self.samples = folder, tool, samples

    def sample(self, name):
        """A film or a photograph of the package, unpacked where need be."""
        for folder in (self.samples, Path("/") / SAMPLES, self.folder / SAMPLES):
            if folder is None:
                continue
            if (folder / name).exists():
                return folder / name
            if (folder / f"{name}.gz").exists():
                plain = self.folder / name
                with gzip.open(folder / f"{name}.gz") as packed, open(plain, "wb") as file:
                    shutil.copyfileobj(packed, file)
                return plain
        if not list(self.folder.glob(f"{PACKAGE}_*.deb")):
            run(["apt-get", "download", PACKAGE], cwd=self.folder)
            run(["dpkg", "-x", next(self.folder.glob(f"{PACKAGE}_*.deb")), self.folder])
            return self.sample(name)
        return sys.exit(f"{PACKAGE} has no {name}")


# Ways to make a film. Each gives a function of the film's path, its number of frames and the Work.


def film_of(film, frames, *inputs, filters="null"):
    """Every picture of the input once, at the stage's pace."""
    ffmpeg(*inputs, "-vf", f"{filters},{PACE}", "-frames:v", frames, *EXACT_COLOURS, *LOSSLESS,
           film)


def footage(name, skip, filters="null"):
    def make(film, frames, work):
        film_of(film, frames, "-i", work.sample(name),
                filters=f"select=gte(n\\,{skip}),{COVER},{filters}")
    return make


def generated(source, filters="null"):
    def make(film, frames, _work):
        film_of(film, frames, "-f", "lavfi", "-i", source, filters=filters)
    return make


def drawn(picture_of):
    """`picture_of(frame)` gives the pixels: rows of red, green and blue bytes."""
    def make(film, frames, work):
        raw = work.folder / "drawn.rgb"
        with open(raw, "wb") as file:
            for frame in range(frames):
                file.write(picture_of(frame))
        film_of(film, frames, "-f", "rawvideo", "-pix_fmt", "rgb24", "-s", f"{WIDTH}x{HEIGHT}",
                "-r", FPS, "-i", raw)
        raw.unlink()
    return make


def photograph(name, filters):
    """A still that filters set in motion."""
    def make(film, frames, work):
        film_of(film, frames, "-loop", "1", "-r", FPS, "-i", work.sample(name), filters=filters)
    return make


def screen_cast(film, frames, work):
    """A window in which text scrolls, smooth letters black on white, and a cursor that blinks."""
    text = work.folder / "screen.txt"
    shutil.copy(ROOT / "docs/quirks.md", text)
    letters = (f"drawtext=fontfile={ROOT / 'data/volter'}:textfile={text}:expansion=none:"
               "fontsize=16:fontcolor=black:x=36:y=60-2*floor(n/2):line_spacing=4")
    boxes = ("620:20:20:340:0x59B1FF", "0:350:640:10:0x59B1FF", "0:0:640:20:0x59B1FF",
             "20:20:600:22:0x404040", "30:26:10:10:0xFE00C3", "46:26:10:10:0xFFB000")
    frame = ",".join(f"drawbox={box}:fill" for box in boxes)
    cursor = "drawbox=300:300:10:18:black:fill:enable=lt(mod(n\\,26)\\,13)"
    window = f"drawbox=0:0:20:360:0x59B1FF:fill,{letters},{frame},{cursor}"
    film_of(film, frames, "-f", "lavfi", "-i", f"color=white:s={WIDTH}x{HEIGHT}:r={FPS}",
            filters=f"format=rgb24,{window}")


def demo_loops(film, frames, work):
    """Four of our own loops, a quarter of the frames each."""
    clips = work.folder / "demo"
    if not clips.exists():
        run([work.tool, "demo", clips])
    inputs = []
    for number, name in enumerate(("kaleido", "grid", "lasers", "words")):
        part = work.folder / f"demo{number}.mkv"
        run([work.tool, "export", clips / f"{name}.m19", "-o", part, "--frames",
             f"0-{frames // 4 - 1}"])
        inputs += ["-i", part]
    ffmpeg(*inputs, "-filter_complex", f"concat=n=4,{PACE}", "-frames:v", frames,
           *EXACT_COLOURS, *LOSSLESS, film)


def dissolve(film, frames, work):
    """One photograph becomes another one."""
    seconds = frames * 5 / 128
    still = ("-loop", "1", "-r", FPS, "-t", f"{seconds + 1:.3f}")
    ffmpeg(*still, "-i", work.sample("fruits.jpg"), *still, "-i", work.sample("starry_night.jpg"),
           "-filter_complex",
           f"[0]{COVER},setsar=1,format=gbrp[a];[1]{COVER},setsar=1,format=gbrp[b];"
           f"[a][b]xfade=fade:duration={seconds * 3 / 4:.3f}:offset={seconds / 8:.3f},{PACE}",
           "-frames:v", frames, *EXACT_COLOURS, *LOSSLESS, film)


def as_gif(film, frames, work):
    """The street as it comes out of a dithered GIF: 256 colours, every pixel in motion."""
    gif = work.folder / "dithered.gif"
    ffmpeg("-i", work.sample("vtest.avi"), "-vf",
           f"trim=end_frame={frames},{COVER},split[a][b];[a]palettegen[p];[b][p]paletteuse=dither=sierra2_4a",
           gif)
    film_of(film, frames, "-i", gif)
    gif.unlink()


# Drawings.


class Flat:
    """A picture of flat shapes, drawn row by row."""

    def __init__(self, colour):
        self.pixels = bytearray(colour.to_bytes(3, "big") * (WIDTH * HEIGHT))

    def span(self, y, left, right, colour):
        left, right = max(left, 0), min(right, WIDTH)
        if 0 <= y < HEIGHT and left < right:
            at = (y * WIDTH + left) * 3
            self.pixels[at:at + (right - left) * 3] = colour.to_bytes(3, "big") * (right - left)

    def rect(self, x, y, width, height, colour):
        for row in range(y, y + height):
            self.span(row, x, x + width, colour)

    def disc(self, x, y, radius, colour):
        for row in range(-radius, radius + 1):
            half = math.isqrt(radius * radius - row * row)
            self.span(y + row, x - half, x + half + 1, colour)


def turn_of(frame):
    return 2 * math.pi * frame / FRAMES


def cartoon_picture(frame):
    """A face that bounces over hills, with clouds."""
    turn = turn_of(frame)
    picture = Flat(BLUE)
    picture.disc(520, 80, 44, ORANGE)
    for cloud in range(3):
        x = (cloud * 260 + frame * 5) % 800 - 80
        for part, radius in ((-30, 18), (0, 28), (32, 20)):
            picture.disc(x + part, 70 + 34 * cloud, radius, WHITE)
    for hill, (radius, colour) in enumerate(((260, 0x7A18D0), (220, 0x3A0A50))):
        for place in range(4):
            x = (place * 300 - frame * (3 + 3 * hill)) % 1200 - 280
            picture.disc(x, 440 + 40 * hill, radius, colour)
    y = int(250 - 120 * abs(math.sin(4 * turn)))
    x = int(320 + 160 * math.sin(turn))
    picture.disc(x, y, 62, BLACK)
    picture.disc(x, y, 58, PINK)
    for side in (-22, 22):
        picture.disc(x + side, y - 14, 13, WHITE)
        picture.disc(x + side + int(5 * math.cos(2 * turn)), y - 12, 6, BLACK)
    picture.rect(x - 24, y + 20, 48, 6 + int(6 * math.sin(8 * turn) ** 2), BLACK)
    return picture.pixels


def smooth(width, height, draw):
    """What `draw(pen, scale)` draws four times as large, with soft edges."""
    large = Image.new("RGB", (4 * width, 4 * height))
    draw(ImageDraw.Draw(large), 4)
    return large.resize((width, height), Image.Resampling.BOX)


def lines_picture(frame):
    """Thin smooth lines that turn."""
    turn = turn_of(frame)

    def curve(pen, scale):
        for number, colour in enumerate((PINK, BLUE, ORANGE)):
            points = [(scale * (320 + 280 * math.sin((3 + number) * t + turn)),
                       scale * (180 + 150 * math.sin((4 - number) * t + 2 * turn)))
                      for t in np.linspace(0, 2 * math.pi, 400)]
            pen.line(points, fill=f"#{colour:06X}", width=5)
    return smooth(WIDTH, HEIGHT, curve).tobytes()


def titles_picture(frame):
    """White titles with a soft shadow over a photograph's kind of ground, sliding in and out."""
    y, x = np.mgrid[0:HEIGHT, 0:WIDTH]
    ground = np.stack([80 + 60 * np.sin(x / 160), 60 + 40 * np.sin(y / 90 + 1),
                       120 + 50 * np.sin((x + y) / 200)], axis=2)
    shade = Image.new("L", (WIDTH, HEIGHT))
    place = 40 + 90 * math.sin(turn_of(frame))
    pen = ImageDraw.Draw(shade)
    for row, words in enumerate(("VELMORA", "tonight", "live on two layers")):
        letters = Image.new("L", (160, 14))
        ImageDraw.Draw(letters).text((1, 1), words, fill=255)
        large = letters.resize((640, 56), Image.Resampling.BICUBIC)
        shade.paste(large, (int(place) + 30 * row, 60 + 90 * row))
    del pen
    title = np.asarray(shade, dtype=float) / 255
    dark = title.copy()
    for axis in (0, 1):
        dark = sum(np.roll(dark, step, axis) for step in range(-3, 4)) / 7
    dark = np.roll(dark, (5, 5), (0, 1))
    shown = ground * (1 - 0.7 * dark[:, :, None])
    shown = shown * (1 - title[:, :, None]) + 255 * title[:, :, None]
    return shown.clip(0, 255).astype(np.uint8).tobytes()


def particles_picture(frame):
    """A fountain of soft sparks on black."""
    random = np.random.default_rng(7)
    count = 300
    angle, speed = random.uniform(-0.6, 0.6, count), random.uniform(180, 420, count)
    birth = random.uniform(0, 1, count)
    colours = np.array([[254, 0, 195], [89, 177, 255], [255, 176, 0]])[random.integers(0, 3, count)]
    age = (frame / 40 + birth) % 1 * 1.6
    xs = 320 + np.sin(angle) * speed * age
    ys = 350 - np.cos(angle) * speed * age + 260 * age * age
    light = np.zeros((HEIGHT, WIDTH, 3))
    y, x = np.mgrid[-4:5, -4:5]
    for at_x, at_y, colour, old in zip(xs, ys, colours, age):
        left, top = int(at_x), int(at_y)
        if 4 <= left < WIDTH - 4 and 4 <= top < HEIGHT - 4:
            spot = np.exp(-((x + left - at_x) ** 2 + (y + top - at_y) ** 2) / 3) * (1 - old / 1.7)
            light[top - 4:top + 5, left - 4:left + 5] += spot[:, :, None] * colour
    return light.clip(0, 255).astype(np.uint8).tobytes()


def tunnel_picture(frame):
    """A chequered tunnel that darkens towards its end."""
    y, x = np.mgrid[0:HEIGHT, 0:WIDTH]
    x, y = x - 319.5, y - 179.5
    depth = 9000 / np.hypot(x, y)
    around = np.arctan2(y, x) * 8 / math.pi
    white = (np.floor(depth / 16 + frame / 8) + np.floor(around + frame / 32)) % 2
    light = np.clip(1.3 - depth / 220, 0, 1)
    colours = np.where(white[:, :, None] > 0, [255, 176, 0], [60, 24, 120])
    return (colours * light[:, :, None]).astype(np.uint8).tobytes()


def smoke_picture(frame):
    """A plume that rises over a flame: soft noise that moves up and apart."""
    random = np.random.default_rng(3)
    y, x = np.mgrid[0:HEIGHT, 0:WIDTH]
    light = np.zeros((HEIGHT, WIDTH))
    for octave, size in enumerate((96, 48, 24, 12)):
        cells = random.uniform(0, 1, (64, 64))
        u = x / size + 3 * octave
        v = (y + frame * (5 - octave)) / size
        u0, v0 = np.floor(u).astype(int), np.floor(v).astype(int)
        fu, fv = u - u0, v - v0
        fu, fv = fu * fu * (3 - 2 * fu), fv * fv * (3 - 2 * fv)
        corner = [[cells[(v0 + dv) % 64, (u0 + du) % 64] for du in (0, 1)] for dv in (0, 1)]
        top = corner[0][0] * (1 - fu) + corner[0][1] * fu
        bottom = corner[1][0] * (1 - fu) + corner[1][1] * fu
        light += (top * (1 - fv) + bottom * fv) / 2 ** (octave + 1)
    plume = np.clip(1 - np.abs(x - 320) / (60 + (HEIGHT - y) * 0.6), 0, 1)
    smoke = (light * plume * 1.6).clip(0, 1)
    flame = np.clip(1 - (HEIGHT - y) / 120, 0, 1) * plume
    shown = np.stack([smoke * 200 + flame * 255, smoke * 190 + flame * 140, smoke * 200], axis=2)
    return (shown + [10, 14, 30]).clip(0, 255).astype(np.uint8).tobytes()


def grey_noise(strength, seed):
    return f"noise=c0s={strength}:c0f=t:all_seed={seed}"


PAN = f"scale=1200:-2,crop={WIDTH}:{HEIGHT}:x='min(4*n,560)':y=200"
FOLD = ("crop=320:180:160:90,split=4[a][b][c][d];[b]hflip[h];[c]vflip[v];[d]hflip,vflip[r];"
        "[a][h]hstack[t];[v][r]hstack[u];[t][u]vstack")

# name: (what it is, how it is made). The quick run takes those marked.
SOURCES = {
    "street": ("camera on a pole, people walking", footage("vtest.avi", 0), True),
    "walk": ("hand-held camera under trees", footage("tree.avi", 0), False),
    "film": ("rendered feature film, cuts and camera moves", footage("Megamind.avi", 60), False),
    "grey": ("the street in black and white", footage("vtest.avi", 200, "format=gray"), False),
    "gif": ("the street as a dithered GIF shows it", as_gif, False),
    "pan": ("a town that the camera pans over", photograph("leuvenA.jpg", PAN), False),
    "folded": ("the same, folded like a kaleidoscope", photograph("leuvenA.jpg", f"{PAN},{FOLD}"),
               False),
    "zoom": ("a photograph that comes nearer",
             photograph("fruits.jpg", f"{COVER},zoompan=z=1+on/256:x=(iw-iw/zoom)/2:"
                        f"y=(ih-ih/zoom)/2:d=1:s={WIDTH}x{HEIGHT}:fps={FPS}"), False),
    "dissolve": ("one photograph becomes another one", dissolve, False),
    "still": ("a still scene, with the noise of a camera",
              photograph("home.jpg", f"{COVER},format=gbrp,noise=alls=10:allf=t:all_seed=5"), False),
    "grain": ("a still scene through coarse film grain",
              photograph("building.jpg", f"{COVER},format=yuv444p,{grey_noise(50, 9)}"), False),
    "cartoon": ("flat shapes that move", drawn(cartoon_picture), True),
    "gradients": ("soft gradients that turn",
                  generated(f"gradients=s={WIDTH}x{HEIGHT}:r={FPS}:n=4:speed=0.02:x0=0:y0=0:x1=639:"
                            "y1=359:c0=0xFE00C3:c1=0x59B1FF:c2=0xFFB000:c3=0xFE00C3:seed=1"), False),
    "smoke": ("a plume over a flame", drawn(smoke_picture), False),
    "tunnel": ("a chequered tunnel", drawn(tunnel_picture), False),
    "fractal": ("a dive into a fractal",
                generated(f"mandelbrot=s={WIDTH}x{HEIGHT}:r={FPS}:end_pts=400:maxiter=512"), False),
    "particles": ("soft sparks on black", drawn(particles_picture), False),
    "lines": ("thin smooth lines that turn", drawn(lines_picture), False),
    "titles": ("titles with soft shadows that slide", drawn(titles_picture), False),
    "test": ("a test picture with a clock", generated(f"testsrc2=s={WIDTH}x{HEIGHT}:r={FPS}"), False),
    "noise": ("grey noise, new in every frame",
              generated(f"color=gray:s={WIDTH}x{HEIGHT}:r={FPS}",
                        "noise=alls=60:allf=t:all_seed=5,format=gray"), False),
    "screen": ("text that scrolls in a window", screen_cast, False),
    "pixels": ("a game of life in pixels of 4 x 4",
               generated(f"life=s=160x90:r={FPS}:ratio=0.2:mold=10:seed=11:"
                         "life_color=0xFFB000:death_color=0x1C50B0:mold_color=0x180828",
                         f"scale={WIDTH}:{HEIGHT}:flags=neighbor"), False),
    "automaton": ("a cellular automaton that grows row by row, in pixels of 4 x 4",
                  generated(f"cellauto=s=160x90:r={FPS}:rule=110:seed=4:start_full=1",
                            f"scale={WIDTH}:{HEIGHT}:flags=neighbor"), False),
    "demo": ("four of the demo loops that come with Velmora", demo_loops, True),
}
