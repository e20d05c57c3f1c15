#!/usr/bin/python3
"""Draws the four pictures that the library carries, beside this file.

    background.jpg  1119 x 1119, progressive   behind the pages, stretched to the dialog's client area
    logo.png         120 x 120                 the picture of an ordinary page
    error.png        150 x 150                 the picture of an error prompt
    migration.png    732 x 540                 the picture of the page that offers to remove the older client

One motif runs through all of them: a stake with a cut point and two faces, one in the light and one in the shade.
Everything is drawn several times larger and brought down in linear light, so that edges are smooth on any ground.

Needs Debian's python3-cairo, python3-numpy and python3-pil; an ordinary build needs none of them, the results are
committed. The same input gives the same files.
"""

import contextlib
import math
import pathlib
import random

import cairo
import numpy
from PIL import Image

HERE = pathlib.Path(__file__).resolve().parent

# The dialog's own palette, darkest first; only the ramps that the pictures use.
BLUE = "14357E 174097 1B4AB0 1F55CA 235FE3 276AFC 3D79FC 5288FD 6897FD 7DA6FD 93B5FE"
CRIMSON = "800029 990031 B30039 CC0042 E6004A FF0052 FF1A63 FF3375 FF4D86 FF6697 FF80A9"
VIOLET = "42347F 4F3E98 5C49B1 6953CA 765EE4 8368FD 8F77FD 9C86FD A895FE B5A4FE C1B4FE"
CORAL = "803727 99412E B34C36 CC573E E66245 FF6D4D FF7C5F FF8A71 FF9982 FFA794 FFB6A6"
RED = "7D2424 952B2B AE3232 C73939 E04040 F94747 FA5959 FA6C6C FB7E7E FB9191 FCA3A3"
GREY = "000000 0B0E15 141724 171A29 1A1D2E 1D2033 343647 62626F 908E97 D5D0D3 FFFFFF"


def ramp(text):
    return [tuple(int(colour[i : i + 2], 16) / 255 for i in (0, 2, 4)) for colour in text.split()]


BLUE, CRIMSON, VIOLET, CORAL, RED, GREY = map(ramp, (BLUE, CRIMSON, VIOLET, CORAL, RED, GREY))


def mix(a, b, share):
    """The colour `share` of the way from a to b."""
    return tuple(x + (y - x) * share for x, y in zip(a, b))


def to_linear(srgb):
    return numpy.where(srgb <= 0.04045, srgb / 12.92, ((srgb + 0.055) / 1.055) ** 2.4)


def to_srgb(linear):
    linear = numpy.clip(linear, 0, 1)
    return numpy.where(linear <= 0.0031308, linear * 12.92, 1.055 * linear ** (1 / 2.4) - 0.055)


class Canvas:
    """A transparent drawing of width x height units, held `scale` times as large."""

    def __init__(self, width, height, scale=8):
        self.width, self.height, self.scale = width, height, scale
        self.surface = cairo.ImageSurface(cairo.FORMAT_ARGB32, width * scale, height * scale)
        self.context = cairo.Context(self.surface)
        self.context.scale(scale, scale)

    def outline(self, points):
        self.context.move_to(*points[0])
        for point in points[1:]:
            self.context.line_to(*point)
        self.context.close_path()

    def fill(self, points, paint, alpha=1.0):
        """Fills a polygon. `paint` is a colour, or (from, to, x0, y0, x1, y1) for a linear gradient."""
        self.outline(points)
        if len(paint) == 3:
            self.context.set_source_rgba(*paint, alpha)
        else:
            start, end, *line = paint
            gradient = cairo.LinearGradient(*line)
            gradient.add_color_stop_rgba(0, *start, alpha)
            gradient.add_color_stop_rgba(1, *end, alpha)
            self.context.set_source(gradient)
        self.context.fill()

    def glow(self, x, y, radius, colour, alpha, squash=1.0):
        """A round light, or shadow, that fades to nothing; `squash` flattens it."""
        with self.saved():
            self.context.translate(x, y)
            self.context.scale(1, squash)
            gradient = cairo.RadialGradient(0, 0, 0, 0, 0, radius)
            for step in range(17):
                share = step / 16
                gradient.add_color_stop_rgba(share, *colour, alpha * (0.5 + 0.5 * math.cos(math.pi * share)) ** 1.5)
            self.context.set_source(gradient)
            self.context.arc(0, 0, radius, 0, 2 * math.pi)
            self.context.fill()

    @contextlib.contextmanager
    def saved(self, clip=None, turn=0.0, about=(0, 0), shift=(0, 0)):
        """Draws inside `clip` only, turned by `turn` degrees about a point and shifted."""
        self.context.save()
        x, y = about
        self.context.translate(x + shift[0], y + shift[1])
        self.context.rotate(math.radians(turn))
        self.context.translate(-x, -y)
        if clip:
            self.outline(clip)
            self.context.clip()
        yield
        self.context.restore()

    def pixels(self):
        """height x width x 4 (red, green, blue, alpha): premultiplied linear light, scaled to the size in units."""
        rows = self.height * self.scale
        raw = numpy.ndarray((rows, self.surface.get_stride() // 4, 4), numpy.uint8, self.surface.get_data())
        whole = raw[:, : self.width * self.scale, [2, 1, 0, 3]].astype(numpy.float32) / 255
        alpha = whole[:, :, 3:]
        whole[:, :, :3] = to_linear(numpy.clip(whole[:, :, :3] / numpy.maximum(alpha, 1e-6), 0, 1)) * alpha
        return whole.reshape(self.height, self.scale, self.width, self.scale, 4).mean(axis=(1, 3))

    def save(self, name):
        whole = self.pixels()
        alpha = whole[:, :, 3:]
        colour = to_srgb(whole[:, :, :3] / numpy.maximum(alpha, 1e-6))
        bytes_ = (numpy.dstack([colour, alpha]) * 255 + 0.5).astype(numpy.uint8)
        Image.fromarray(bytes_, "RGBA").save(HERE / name, optimize=True)


class Wood:
    """The four paints of a stake: the body's faces and the cut point's, each in the light and in the shade."""

    def __init__(self, body_light, body_shade, tip_light, tip_shade):
        self.body = (body_light, body_shade)
        self.tip = (tip_light, tip_shade)


def stake(canvas, left, width, top, foot, wood, lit_left=True, alpha=1.0):
    """One stake, its point at `top`; `foot` gives the height of its lower end at each x."""
    right, middle = left + width, left + width / 2
    shoulder, ridge = top + width, top + width * 1.3
    lit, dark = (0, 1) if lit_left else (1, 0)
    # The right face runs under the left one, and the body under the point, so that no seam shows between them.
    whole = [(left, shoulder), (middle, top), (right, shoulder), (right, foot(right)), (middle, foot(middle)),
             (left, foot(left))]
    canvas.fill(whole, wood.body[dark], alpha)
    canvas.fill([(left, shoulder), (middle, top), (middle, foot(middle)), (left, foot(left))], wood.body[lit], alpha)
    canvas.fill([(left, shoulder), (middle, top), (right, shoulder), (middle, ridge)], wood.tip[dark], alpha)
    canvas.fill([(left, shoulder), (middle, top), (middle, ridge)], wood.tip[lit], alpha)


def coral_wood(x0, y0, x1, y1):
    """The product's colours, running over a whole group of stakes."""
    line = (x0, y0, x1, y1)
    return Wood((CORAL[5], CRIMSON[5], *line), (CORAL[3], CRIMSON[2], *line), (CORAL[9], CRIMSON[9], *line),
                (CORAL[5], CRIMSON[6], *line))


def shield(canvas, x, y, unit, wood, missing=()):
    """Five stakes that form a shield of 106 x 106 units, its upper left corner at x, y."""
    for i in range(5):
        if i not in missing:
            stake(canvas, x + 22 * i * unit, 18 * unit, y + abs(i - 2) * 15 * unit,
                  lambda at: y + (106 - 0.62 * abs(at - x - 53 * unit) / unit) * unit, wood)


def draw_logo():
    canvas = Canvas(120, 120)
    shield(canvas, 7, 7, 1, coral_wood(20, 15, 100, 110))
    canvas.save("logo.png")


def draw_error():
    """The same shield gone cold, its middle stake broken off."""
    canvas = Canvas(150, 150)
    # As large as the logo's, in the middle, and its foot on the same line of the page.
    unit = 1.25
    x, y = 75 - 53 * unit, 150 - 8.75 - 106 * unit
    cold = Wood(mix(GREY[7], VIOLET[0], 0.30), mix(GREY[6], VIOLET[0], 0.22), mix(GREY[8], VIOLET[2], 0.22),
                mix(GREY[7], VIOLET[0], 0.30))
    hot = Wood(RED[5], RED[2], RED[9], RED[6])
    shield(canvas, x, y, unit, cold, missing=(2,))

    left, width = x + 44 * unit, 18 * unit
    right, middle = left + width, left + width / 2
    top, split = y - 2, y + 52
    foot = lambda at: y + (106 - 0.62 * abs(at - middle) / unit) * unit
    break_line = [(left - 1, split + 8), (left + 0.26 * width, split - 5), (left + 0.44 * width, split + 5),
                  (left + 0.70 * width, split - 11), (right + 1, split)]
    fall = {"turn": 15, "about": (right, split), "shift": (0, -12)}
    with canvas.saved(clip=[*break_line, (right + 1, 150), (left - 1, 150)]):
        stake(canvas, left, width, top, foot, hot)
    with canvas.saved(clip=[*break_line, (right + 1, 0), (left - 1, 0)], **fall):
        stake(canvas, left, width, top + 8, foot, hot)
    canvas.save("error.png")


class Corner:
    """Stone seen on its corner from slightly above, as the stakes are: one face to the left, one to the right.

    A point of it is (a, b, h): a runs down to the right, b down to the left, h upwards, from x, y.
    """

    SLOPE = 0.5

    def __init__(self, canvas, x, y):
        self.canvas, self.x, self.y = canvas, x, y

    def at(self, a, b, h):
        return self.x + a - b, self.y + (a + b) * self.SLOPE - h

    def left_face(self, a0, a1, b, h0, h1, paint, alpha=1.0):
        self.canvas.fill([self.at(a0, b, h0), self.at(a1, b, h0), self.at(a1, b, h1), self.at(a0, b, h1)], paint, alpha)

    def right_face(self, a, b0, b1, h0, h1, paint, alpha=1.0):
        self.canvas.fill([self.at(a, b0, h0), self.at(a, b1, h0), self.at(a, b1, h1), self.at(a, b0, h1)], paint, alpha)

    def box(self, a0, a1, b0, b1, h0, h1, paints, alpha=1.0):
        """`paints` are those of the top, the left and the right face."""
        top, left, right = paints
        corners = (a0, b0), (a1, b0), (a1, b1), (a0, b1)
        self.canvas.fill([self.at(a, b, h1) for a, b in corners], top, alpha)
        self.left_face(a0, a1, b1, h0, h1, left, alpha)
        self.right_face(a1, b0, b1, h0, h1, right, alpha)


STONE = (mix(GREY[8], VIOLET[2], 0.20), mix(GREY[7], VIOLET[0], 0.28), mix(GREY[6], VIOLET[0], 0.30))


def draw_tower(canvas, x, y, side, course, courses, gone):
    """A square tower of stone with battlements; `gone` says of (face, course, place) whether that stone is missing."""
    tower = Corner(canvas, x, y)
    dice = random.Random(7)
    height = course * courses
    joint = mix(GREY[3], VIOLET[0], 0.12)
    recess = mix(GREY[2], VIOLET[0], 0.05)
    tower.box(0, side, 0, side, 0, height, (mix(GREY[6], VIOLET[0], 0.15), joint, joint))
    # Joints show at a fifth of their size, so they are wide; at the edges, where half of one would be left, is none.
    half, gap = side / 2, 7
    for level in range(courses):
        # Every other course is laid half a stone further on.
        cuts = [0, half / 2, 1.5 * half, side] if level % 2 else [0, half, side]
        low, high = level * course + (gap / 2 if level else 0), (level + 1) * course - gap / 2
        for place, (start, end) in enumerate(zip(cuts, cuts[1:])):
            start, end = start + (gap / 2 if start else 0), end - (gap / 2 if end < side else 0)
            for face, draw in (("left", tower.left_face), ("right", tower.right_face)):
                paint = STONE[1 if face == "left" else 2]
                paint = mix(paint, GREY[8], dice.uniform(0, 0.10)) if dice.random() < 0.7 else mix(paint, GREY[2], 0.14)
                if gone(face, level, place):
                    paint = recess
                if face == "left":
                    draw(start, end, side, low, high, paint)
                else:
                    draw(side, start, end, low, high, paint)
    arch = [(0.5 - 0.17 * math.cos(t), 0.34 + 0.2 * math.sin(t)) for t in (math.pi * n / 24 for n in range(25))]
    for grow, paint in ((0.05, joint), (0.0, recess)):
        door = [(0.33 - grow, 0), *((0.5 + (a - 0.5) * (1 + 6 * grow), h + grow * 1.2) for a, h in arch),
                (0.67 + grow, 0)]
        canvas.fill([tower.at(a * side, side, h * side) for a, h in door], paint)

    merlon = side / 5
    canvas.fill([tower.at(a, b, height) for a, b in ((merlon, merlon), (side - merlon, merlon),
                                                     (side - merlon, side - merlon), (merlon, side - merlon))], recess)
    rim = [(i, j) for i in (0, 2, 4) for j in (0, 2, 4) if (i, j) != (2, 2)]
    for i, j in sorted(rim, key=sum):
        if not gone("merlon", i, j):
            tower.box(i * merlon, (i + 1) * merlon, j * merlon, (j + 1) * merlon, height, height + merlon, STONE)


def draw_migration():
    """An old tower of stone gives its blocks to the stakes of the new one."""
    canvas = Canvas(732, 540, 4)
    canvas.glow(545, 310, 290, CRIMSON[4], 0.20)
    canvas.glow(172, 486, 190, GREY[0], 0.55, squash=0.22)
    canvas.glow(545, 486, 200, GREY[0], 0.55, squash=0.22)

    missing = {("right", 3, 0), ("right", 3, 1), ("right", 2, 0), ("right", 1, 1), ("merlon", 4, 0)}
    draw_tower(canvas, 172, 356, 124, 66.5, 4, lambda *stone: stone in missing)

    # The stones on their way (x, y, size): large and cold where they leave, small and warm where they arrive.
    stones = [(318, 200, 26), (311, 98, 24), (348, 146, 21), (360, 84, 20), (386, 122, 18), (406, 66, 17),
              (428, 106, 15),
              (450, 68, 14), (468, 112, 12), (490, 84, 11), (502, 128, 10)]
    for n, (x, y, size) in enumerate(stones):
        share = n / 9
        paints = [mix(cold, warm, share) for cold, warm in zip(STONE, (CORAL[8], CORAL[5], CRIMSON[2]))]
        Corner(canvas, x, y).box(0, size, 0, size, 0, size, paints)

    unit = 2.75
    shield(canvas, 545 - 53 * unit, 484 - 106 * unit, unit, coral_wood(435, 205, 655, 485))
    canvas.save("migration.png")


SIDE = 1119  # of the background, pixels


def wall(width, top, rise, jitter, seed):
    """One row of stakes across the background, seen from inside a round fort: low in the middle, high at the sides.

    Returns the part that the row covers and the share of light on it, both SIDE x SIDE. The light stands above the
    middle, so a stake's inner face has it, and less of it the further out the stake stands.
    """
    canvas = Canvas(SIDE, SIDE, 3)
    dice = random.Random(seed)
    count = math.ceil(SIDE / width / 2) + 1
    for i in range(-count, count + 1):
        left = SIDE / 2 + (i - 0.5) * width
        away = abs(i) * width / (SIDE / 2)
        point = top - rise * away**2.2 + dice.uniform(-jitter, jitter)
        near = max(0.12, 1 - 0.72 * away) * dice.uniform(0.85, 1.0)
        grey = lambda share: (share, share, share)
        foot = point + width * 6
        body = (grey(0.62 * near), grey(0.0), left, point, left, foot)
        dark = (grey(0.18 * near), grey(0.0), left, point, left, foot)
        stake(canvas, left + 0.04 * width, 0.92 * width, point, lambda _: SIDE + 1,
              Wood(body, dark, grey(near), grey(0.30 * near)), lit_left=i > 0)
    pixels = canvas.pixels()
    cover = pixels[:, :, 3]
    return cover, to_srgb(pixels[:, :, 0] / numpy.maximum(cover, 1e-6))


def draw_background():
    """A palisade by night, its light behind the place of the page's picture, dark enough to be written on anywhere."""
    y, x = numpy.mgrid[0:SIDE, 0:SIDE].astype(float) / (SIDE - 1)

    def round_light(cx, cy, rx, ry):
        away = numpy.sqrt(((x - cx) / rx) ** 2 + ((y - cy) / ry) ** 2)
        return numpy.where(away < 1, (0.5 + 0.5 * numpy.cos(numpy.pi * numpy.minimum(away, 1))) ** 1.3, 0)

    def lay(picture, colour, share):
        return picture + (numpy.array(colour) - picture) * share[:, :, None]

    dusk = mix(VIOLET[0], CRIMSON[0], 0.52)
    picture = numpy.empty((SIDE, SIDE, 3))
    picture[:] = GREY[3]
    picture = lay(picture, GREY[1], 0.55 * numpy.clip(1 - y / 0.5, 0, 1) ** 1.5)
    picture = lay(picture, mix(GREY[3], VIOLET[0], 0.50), 0.9 * round_light(0.5, 0.22, 0.60, 0.40))
    picture = lay(picture, mix(GREY[3], dusk, 0.46), 0.80 * round_light(0.5, 0.735, 0.80, 0.30))

    ember = mix(CORAL[0], CRIMSON[1], 0.70)
    # The front row's points stand among the buttons: they get little light there, and more towards the sides.
    sides = numpy.clip((numpy.abs(x - 0.5) - 0.3) / 0.1, 0, 1)
    rows = [  # stake's width, height of the points in the middle, rise to the sides, jitter, body, share of the light
        (30, 800, 150, 7, mix(GREY[3], VIOLET[0], 0.17), numpy.full((SIDE, SIDE), 0.36)),
        (50, 880, 270, 11, mix(GREY[2], VIOLET[0], 0.10), numpy.full((SIDE, SIDE), 0.36)),
        (86, 1010, 495, 15, mix(GREY[1], VIOLET[0], 0.06), 0.18 + 0.16 * sides),
    ]
    for seed, (width, top, rise, jitter, body, share) in enumerate(rows):
        light = lay(numpy.broadcast_to(numpy.array(GREY[3]), picture.shape), ember, share)
        cover, lit = wall(width, top, rise, jitter, seed)
        face = lay(numpy.broadcast_to(numpy.array(body), picture.shape), light, lit)
        picture = picture + (face - picture) * cover[:, :, None]
        mist = 0.5 * numpy.clip((y - 0.62) / 0.5, 0, 1) ** 1.2 if seed < 2 else 0.35 * numpy.clip((y - 0.8) / 0.2, 0, 1)
        picture = lay(picture, mix(GREY[2], dusk, 0.16) if seed < 2 else GREY[1], mist)

    edge = numpy.clip(numpy.hypot((x - 0.5) / 0.72, (y - 0.45) / 0.75), 0, 1.2)
    picture = lay(picture, GREY[1], 0.5 * numpy.clip(edge - 0.55, 0, 1) ** 1.4)

    # Grain against bands in the slow gradients: two sizes, since the fine one is lost when the picture is made smaller.
    noise = numpy.random.default_rng(5)
    coarse = noise.normal(0, 1, (SIDE // 2 + 1, SIDE // 2 + 1)).repeat(2, 0).repeat(2, 1)[:SIDE, :SIDE]
    grain = (noise.normal(0, 0.5, (SIDE, SIDE)) + 0.7 * coarse) / 255
    picture = numpy.clip(picture + grain[:, :, None], 0, 1)
    image = Image.fromarray((picture * 255 + 0.5).astype(numpy.uint8), "RGB")
    image.save(HERE / "background.jpg", quality=94, subsampling=0, progressive=True, optimize=True)


def luminance(srgb):
    return to_linear(numpy.asarray(srgb, float)) @ numpy.array([0.2126, 0.7152, 0.0722])


def check_background():
    """Prints the lowest contrast of each text colour with the shown background; below 4.5 : 1 it is an error.

    Text stands in the lower two thirds: the title begins at 34 % of the height, under the page's picture, and what can
    hold a link further down. The client area is 480 x 480 or, by the font's metrics, 480 x 450.
    """
    colours = [  # and the share of the height at which what they colour can begin
        ("text", GREY[10], 0.33), ("disabled text", GREY[8], 0.33), ("link", BLUE[8], 0.38),
        ("link pointed at", BLUE[7], 0.38),
    ]
    worst = math.inf
    with Image.open(HERE / "background.jpg") as background:
        for height in (480, 450):
            shown = numpy.asarray(background.resize((480, height), Image.LANCZOS), float) / 255
            for name, colour, start in colours:
                brightest = luminance(shown[int(start * height) :]).max()
                contrast = (luminance(colour) + 0.05) / (brightest + 0.05)
                worst = min(worst, contrast)
                print(f"480 x {height}: {name} {contrast:.2f} : 1")
    if worst < 4.5:
        raise SystemExit("background.jpg: too bright for the text on it")


def main():
    draw_background()
    check_background()
    draw_logo()
    draw_error()
    draw_migration()


if __name__ == "__main__":
    main()
