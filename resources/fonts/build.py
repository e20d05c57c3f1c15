#!/usr/bin/python3
"""Builds the two fonts that the library carries, beside this file.

    sans.ttf   "TT Commons", from Manrope Medium           (package fonts-manrope)
    mono.otf   "Apercu Mono Pro", from Fira Code Regular   (package fonts-firacode)

The family names are the ones that the library asks for. Both files have TrueType outlines, for GDI+ on Windows draws
no others, and hold one upright face: GDI+ makes bold and italic of it. Medium is the weight that reads well small and
light on dark, and that still gives a bold which stands out.

Needs Debian's fonts-manrope, fonts-firacode, python3-fonttools and ttfautohint; an ordinary build needs none of them,
the results are committed. The same packages give the same files.

    build.py [ROOT]    ROOT: where the two font packages are unpacked, by default /
"""

import pathlib
import subprocess
import sys
import tempfile
import unicodedata

from fontTools import subset
from fontTools.pens.recordingPen import DecomposingRecordingPen
from fontTools.pens.transformPen import TransformPen
from fontTools.pens.ttGlyphPen import TTGlyphPen
from fontTools.ttLib import TTFont

HERE = pathlib.Path(__file__).resolve().parent

# What both fonts must have: Latin to Extended-A and Vietnamese (a path may hold any name), Greek, Cyrillic,
# punctuation, currency, arrows, a few mathematical signs.
CHARACTERS = [
    (0x0020, 0x007E), (0x00A0, 0x017F), (0x0192, 0x0192), (0x01A0, 0x01A1), (0x01AF, 0x01B0), (0x0218, 0x021B),
    (0x02C6, 0x02C7), (0x02D8, 0x02DD), (0x0384, 0x038A), (0x038C, 0x038C), (0x038E, 0x03A1), (0x03A3, 0x03CE),
    (0x0400, 0x045F), (0x0490, 0x0491), (0x04AE, 0x04AF), (0x04BA, 0x04BB), (0x04E8, 0x04E9), (0x1E80, 0x1E85),
    (0x1E9E, 0x1E9E), (0x1EA0, 0x1EF9), (0x2009, 0x2009), (0x200B, 0x200B), (0x2010, 0x2011), (0x2013, 0x2015),
    (0x2018, 0x201A), (0x201C, 0x201E), (0x2020, 0x2022), (0x2026, 0x2026), (0x202F, 0x202F), (0x2030, 0x2030),
    (0x2039, 0x203A), (0x2044, 0x2044), (0x2060, 0x2060), (0x20AC, 0x20AC), (0x20BD, 0x20BD), (0x2116, 0x2116),
    (0x2122, 0x2122), (0x2190, 0x2193), (0x2202, 0x2202), (0x2212, 0x2212), (0x2260, 0x2260), (0x2264, 0x2265),
]

# What a font has where its source has it; for the rest the platform finds another face.
TAKEN_ALONG = [
    (0x01CD, 0x01DC), (0x01E6, 0x01E7), (0x01FA, 0x01FF), (0x0237, 0x0237), (0x0300, 0x0304), (0x0306, 0x0308),
    (0x030A, 0x030C), (0x0326, 0x0328), (0x0370, 0x03FF), (0x0492, 0x0493), (0x049A, 0x049B), (0x04A2, 0x04A3),
    (0x04B0, 0x04B1), (0x04D8, 0x04D9), (0x2000, 0x206F), (0x20A0, 0x20BF), (0x2100, 0x215F), (0x2194, 0x2199),
    (0x2203, 0x2263), (0x25CF, 0x25CF), (0xFB01, 0xFB02),
]

# What a face lacks and another of its characters can stand for.
ALIASES = {0x0138: 0x043A, 0x2010: 0x002D, 0x2011: 0x002D, 0x2015: 0x2014}

# What a face lacks and two of its characters make: side by side, or the second one set over the first.
BESIDE = {0x0132: (0x0049, 0x004A), 0x0133: (0x0069, 0x006A), 0x013F: (0x004C, 0x00B7), 0x0140: (0x006C, 0x00B7),
          0x0149: (0x2019, 0x006E)}
OVER = {0x0114: (0x0045, 0x02D8), 0x0115: (0x0065, 0x02D8), 0x012C: (0x0049, 0x02D8), 0x012D: (0x0131, 0x02D8),
        0x014E: (0x004F, 0x02D8), 0x014F: (0x006F, 0x02D8)}

# The marks that Vietnamese needs beyond those of other languages, for a face of Fira Code's weight, in thousandths of
# an em: the hook from its lower end, the horn from the outer edge of the letter that it grows from.
HOOK = [("moveTo", [(-78, 124)]), ("qCurveTo", [(-50, 186), (8, 186)]), ("qCurveTo", [(84, 186), (84, 124)]),
        ("qCurveTo", [(84, 70), (30, 54)]), ("lineTo", [(30, 0)]), ("lineTo", [(-20, 0)]), ("lineTo", [(-20, 88)]),
        ("qCurveTo", [(34, 92), (34, 122)]), ("qCurveTo", [(34, 140), (4, 140)]),
        ("qCurveTo", [(-22, 140), (-36, 102)]), ("closePath", [])]
HORN = [("moveTo", [(-90, -30)]), ("lineTo", [(-90, 34)]), ("lineTo", [(-36, 34)]), ("qCurveTo", [(8, 34), (8, 118)]),
        ("lineTo", [(72, 118)]), ("qCurveTo", [(72, -30), (-36, -30)]), ("closePath", [])]

# Blanks that a face lacks, in thousandths of an em. The narrow ones stand before French and in Russian punctuation.
BLANKS = {0x2009: 200, 0x200B: 0, 0x202F: 200, 0x2060: 0}

FACES = [
    {
        "file": "sans.ttf",
        "family": "TT Commons",
        "source": "Manrope Medium",
        "path": "usr/share/fonts/truetype/manrope/Manrope-Medium.ttf",
        "features": [],
        # A made bold closes narrow gaps, and at 20 pixels the dot of an i would touch its stem: every mark above a
        # letter stands at least this far off, in thousandths of an em.
        "mark_gap": 120,
        # GDI+ does not kern. The face's own blank (200) counts on kerning and runs words together.
        "blank": 240,
    },
    {
        "file": "mono.otf",
        "family": "Apercu Mono Pro",
        "source": "Fira Code Regular",
        "path": "usr/share/fonts/truetype/firacode/FiraCode-Regular.ttf",
        # Composition and mark placement; the programming ligatures would falsify a path.
        "features": ["ccmp", "locl", "mark", "mkmk"],
    },
]


def contours(font, glyph_name):
    """The glyph's closed contours, each a list of pen operations, with its lowest and highest point."""
    glyphs = font.getGlyphSet()
    pen = DecomposingRecordingPen(glyphs)
    glyphs[glyph_name].draw(pen)
    found = []
    for operation, points in pen.value:
        if operation == "moveTo":
            found.append([])
        found[-1].append((operation, points))
    heights = [[point[1] for _, points in contour for point in points if point] for contour in found]
    return [(contour, min(height), max(height)) for contour, height in zip(found, heights)]


def put_glyph(font, name, pen, width):
    glyph = pen.glyph()
    table = font["glyf"]
    if name not in table.glyphs:
        font.setGlyphOrder(font.getGlyphOrder() + [name])
        table.glyphOrder = font.getGlyphOrder()
    table.glyphs[name] = glyph
    glyph.recalcBounds(table)
    font["hmtx"][name] = (round(width), getattr(glyph, "xMin", 0))


def map_character(font, code, name):
    for table in font["cmap"].tables:
        if table.isUnicode():
            table.cmap[code] = name


def add_missing(font):
    """Adds the characters of ALIASES, BESIDE, OVER and BLANKS that the face lacks."""
    cmap = font.getBestCmap()
    em = font["head"].unitsPerEm
    for code, stand_in in ALIASES.items():
        if code not in cmap and stand_in in cmap:
            map_character(font, code, cmap[stand_in])

    glyphs = font.getGlyphSet()
    widths = font["hmtx"]
    for code, (first, second) in {**BESIDE, **OVER}.items():
        if code in cmap:
            continue
        first, second = cmap[first], cmap[second]
        boxes = []
        for name in (first, second):
            glyph = font["glyf"][name]
            boxes.append((glyph.xMin, glyph.yMin, glyph.xMax, glyph.yMax))
        if code in BESIDE:
            shift, width = (widths[first][0], 0), widths[first][0] + widths[second][0]
        else:
            # As far above the letter as the face sets this mark above others.
            rise = boxes[0][3] + 0.063 * em - boxes[1][1]
            shift = ((boxes[0][0] + boxes[0][2] - boxes[1][0] - boxes[1][2]) / 2, rise)
            width = widths[first][0]
        pen = TTGlyphPen(None)
        for name, offset in ((first, (0, 0)), (second, shift)):
            recording = DecomposingRecordingPen(glyphs)
            glyphs[name].draw(recording)
            recording.replay(TransformPen(pen, (1, 0, 0, 1, round(offset[0]), round(offset[1]))))
        put_glyph(font, f"uni{code:04X}", pen, width)
        map_character(font, code, f"uni{code:04X}")

    for code, thousandths in BLANKS.items():
        if code not in cmap:
            put_glyph(font, f"uni{code:04X}", TTGlyphPen(None), thousandths * em / 1000)
            map_character(font, code, f"uni{code:04X}")


def add_long_s(font):
    """Adds the long s: an f whose outline goes straight past its bar."""
    cmap = font.getBestCmap()
    x_height = font["OS/2"].sxHeight
    pen = TTGlyphPen(None)
    for contour, _, _ in contours(font, cmap[ord("f")]):
        for operation, points in contour:
            if operation != "lineTo" or not 0.75 * x_height < points[0][1] <= x_height:
                getattr(pen, operation)(*points)
    put_glyph(font, "uni017F", pen, font["hmtx"][cmap[ord("f")]][0])
    map_character(font, 0x017F, "uni017F")


class Shape:
    """A letter or a mark, made of contours, that can be put elsewhere."""

    def __init__(self, operations):
        self.operations = operations
        x, y = zip(*(point for _, points in operations for point in points if point))
        self.left, self.bottom, self.right, self.top = min(x), min(y), max(x), max(y)
        self.middle = (self.left + self.right) / 2

    @classmethod
    def of(cls, font, code, above=None):
        """The glyph of a character, or only those of its contours that stand above a height."""
        parts = contours(font, font.getBestCmap()[code])
        return cls([step for part, low, _ in parts if above is None or low > above for step in part])

    def put(self, middle, bottom, wide=1.0, high=1.0):
        """The same shape with its middle and its lower end there, made smaller first."""
        to = lambda x, y: (round((x - self.middle) * wide + middle), round((y - self.bottom) * high + bottom))
        return Shape([(operation, [point and to(*point) for point in points]) for operation, points in self.operations])

    def moved(self, x, y):
        return self.put(self.middle + x, self.bottom + y)


def marked_letter(font, letter, marks):
    """The shapes of a Vietnamese letter: the bare letter, then its marks, each where it belongs."""
    em = font["head"].unitsPerEm
    body = Shape.of(font, 0x0131 if letter == "i" and "\u0309" in marks else ord(letter))
    middle = font["hmtx"][font.getBestCmap()[ord(letter)]][0] / 2
    capital = letter.isupper()
    like = "A" if capital else "a"
    like_top = Shape.of(font, ord(like)).top
    as_set = lambda mark: Shape.of(font, ord(unicodedata.normalize("NFC", like + mark)), like_top)
    own = lambda steps: Shape([(step, [(x * em / 1000, y * em / 1000) for x, y in points]) for step, points in steps])

    shapes, above = [body], []
    for mark in marks:
        if mark == "\u031B":  # horn; on a round letter it grows from the shoulder
            edge = body.right - (0.03 * em if letter in "Oo" else 0)
            shapes.append(own(HORN).moved(edge, body.top - 0.045 * em))
        elif mark == "\u0323":  # dot below, beside the tail of a y
            dot = Shape.of(font, 0x02D9)
            shapes.append(dot.put(middle + (0.14 * em if letter == "y" else 0), -0.055 * em - (dot.top - dot.bottom)))
        elif mark == "\u0309":  # hook, as high as the face has an acute
            above.append(own(HOOK).moved(middle, as_set("\u0301").bottom))
        else:
            above.append(as_set(mark))
    if len(above) < 2:
        return shapes + above

    # Two marks above: a line has little room there, so both are made smaller and stand lower. A slanted one stands at a
    # circumflex's right end and in a breve's bowl, a tilde above.
    first, second = above
    foot = like_top + (0.035 if capital else 0.06) * em
    if marks[-1] == "\u0303":
        first = first.put(middle, foot, 0.9, 0.65)
        return [*shapes, first, second.put(middle, first.top + 0.025 * em, 0.9, 0.75)]
    if "\u0302" in marks:
        first = first.put(middle - 0.07 * em, foot, 0.8, 0.8)
        second = second.put(0, first.bottom + 0.065 * em, 0.75, 0.8)
        return [*shapes, first, second.moved(first.right + 0.005 * em - second.left, 0)]
    first = first.put(middle, foot, 1, 0.75)
    return [*shapes, first, second.put(middle, first.bottom + (0.085 if capital else 0.11) * em, 0.7, 0.75)]


def add_vietnamese(font):
    """Adds the Vietnamese letters that the face lacks."""
    for code in (0x01A0, 0x01A1, 0x01AF, 0x01B0, *range(0x1EA0, 0x1EFA)):
        if code in font.getBestCmap():
            continue
        letter, *marks = unicodedata.normalize("NFD", chr(code))
        pen = TTGlyphPen(None)
        for shape in marked_letter(font, letter, marks):
            for operation, points in shape.operations:
                getattr(pen, operation)(*[point and (round(point[0]), round(point[1])) for point in points])
        put_glyph(font, f"uni{code:04X}", pen, font["hmtx"][font.getBestCmap()[ord(letter)]][0])
        map_character(font, code, f"uni{code:04X}")


def raise_marks(font, gap, ceiling):
    """Moves the loose marks above a letter up until they stand `gap` off it, though not above `ceiling`."""
    x_height = font["OS/2"].sxHeight
    for code, name in font.getBestCmap().items():
        if not unicodedata.category(chr(code)).startswith("L"):
            continue
        parts = contours(font, name)
        letter_top = max((top for _, low, top in parts if low < x_height), default=None)
        marks = [part for part in parts if letter_top is not None and part[1] > letter_top]
        if not marks:
            continue
        lift = min(gap - (min(low for _, low, _ in marks) - letter_top), ceiling - max(top for _, _, top in marks))
        if lift <= 0:
            continue
        pen = TTGlyphPen(None)
        for part in parts:
            rise = lift if part in marks else 0
            for operation, points in part[0]:
                getattr(pen, operation)(*[(point[0], point[1] + rise) if point else point for point in points])
        put_glyph(font, name, pen, font["hmtx"][name][0])


def rename(font, family, source):
    """Gives the face its family name; the copyright and the licence of the source stay."""
    names = font["name"]
    kept = {i: names.getDebugName(i) for i in (0, 13, 14)}
    version = names.getDebugName(5).split(";")[0]
    names.names = []
    postscript = family.replace(" ", "") + "-Regular"
    for i, text in {
        **kept,
        1: family,
        2: "Regular",
        3: f"{postscript};{source};{version}",
        4: family,
        5: version,
        6: postscript,
        10: f"{source}, cut to the languages of an installer, changed and renamed under the SIL Open Font License.",
    }.items():
        names.setName(text, i, 3, 1, 0x409)
    # Regular and nothing else, or GDI+ would find no regular face in the family and make no bold of it.
    font["OS/2"].usWeightClass = 400
    font["OS/2"].fsSelection = font["OS/2"].fsSelection & ~0x21 | 0x40
    font["head"].macStyle = 0


def build(root, face):
    options = subset.Options()
    options.layout_features = face["features"]
    options.name_IDs = ["*"]
    options.notdef_outline = True
    options.recalc_timestamp = False
    options.hinting = "mark_gap" not in face
    options.drop_tables += ["DSIG"]
    font = subset.load_font(root / face["path"], options)
    subsetter = subset.Subsetter(options)
    subsetter.populate(unicodes=[code for first, last in CHARACTERS + TAKEN_ALONG for code in range(first, last + 1)])
    subsetter.subset(font)

    add_missing(font)
    add_long_s(font)
    add_vietnamese(font)
    if "mark_gap" in face:
        em = font["head"].unitsPerEm
        # A made bold grows upwards too, by about a fiftieth of an em, and the line's top cuts off what stands higher.
        raise_marks(font, face["mark_gap"] * em // 1000, font["hhea"].ascent - em // 33)
        for code in (0x20, 0xA0):
            font["hmtx"][font.getBestCmap()[code]] = (face["blank"] * em // 1000, 0)
    rename(font, face["family"], face["source"])

    out = HERE / face["file"]
    if options.hinting:
        font.save(out)
        return
    # Changed outlines need new hints.
    with tempfile.TemporaryDirectory() as folder:
        bare = pathlib.Path(folder) / "bare.ttf"
        font.save(bare)
        subprocess.run(["ttfautohint", "--no-info", bare, out], check=True,
                       env={"PATH": "/usr/bin:/bin", "SOURCE_DATE_EPOCH": "0"})


def check(face):
    """What the library relies on: outlines, names, one regular face, every character of CHARACTERS."""
    font = TTFont(HERE / face["file"])
    cmap = font.getBestCmap()
    missing = [f"{code:04X}" for first, last in CHARACTERS for code in range(first, last + 1) if code not in cmap]
    if missing or "glyf" not in font or font["name"].getDebugName(1) != face["family"]:
        raise SystemExit(f"{face['file']}: not what was meant; missing: {missing}")
    size = (HERE / face["file"]).stat().st_size
    print(f"{face['file']}: {face['family']}, {len(cmap)} characters, {size} bytes")


def main():
    root = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else "/")
    for face in FACES:
        build(root, face)
        check(face)


if __name__ == "__main__":
    main()
