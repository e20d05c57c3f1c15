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

# Latin to Extended-A and the letters of the languages beyond it, combining marks, Greek (for paths), Cyrillic,
# punctuation, currency, letterlike signs, arrows, a few mathematical signs and boxes.
CHARACTERS = [
    (0x0020, 0x007E), (0x00A0, 0x017F), (0x0192, 0x0192), (0x01A0, 0x01A1), (0x01AF, 0x01B0), (0x01CD, 0x01DC),
    (0x01E6, 0x01E7), (0x01FA, 0x01FF), (0x0218, 0x021B), (0x0237, 0x0237), (0x02C6, 0x02C7), (0x02D8, 0x02DD),
    (0x0300, 0x0304), (0x0306, 0x0308), (0x030A, 0x030C), (0x0326, 0x0328), (0x0370, 0x03FF), (0x0400, 0x045F),
    (0x0490, 0x0493), (0x049A, 0x049B), (0x04A2, 0x04A3), (0x04AE, 0x04B1), (0x04BA, 0x04BB), (0x04D8, 0x04D9),
    (0x04E8, 0x04E9), (0x1E80, 0x1E85), (0x1E9E, 0x1E9E), (0x1EA0, 0x1EF9), (0x2000, 0x206F), (0x20A0, 0x20BF),
    (0x2100, 0x215F), (0x2190, 0x2199), (0x2202, 0x2265), (0x25CF, 0x25CF), (0xFB01, 0xFB02),
]

# What a face lacks and another of its characters can stand for.
ALIASES = {0x0138: 0x043A, 0x2010: 0x002D, 0x2011: 0x002D, 0x2015: 0x2014}

# What a face lacks and two of its characters make: side by side, or the second one set over the first.
BESIDE = {0x0132: (0x0049, 0x004A), 0x0133: (0x0069, 0x006A), 0x013F: (0x004C, 0x00B7), 0x0140: (0x006C, 0x00B7),
          0x0149: (0x2019, 0x006E)}
OVER = {0x0114: (0x0045, 0x02D8), 0x0115: (0x0065, 0x02D8), 0x012C: (0x0049, 0x02D8), 0x012D: (0x0131, 0x02D8),
        0x014E: (0x004F, 0x02D8), 0x014F: (0x006F, 0x02D8)}

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
    subsetter.populate(unicodes=[code for first, last in CHARACTERS for code in range(first, last + 1)])
    subsetter.subset(font)

    add_missing(font)
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
    """What the library relies on: outlines, names, one regular face, every character of the fourteen languages' scripts."""
    font = TTFont(HERE / face["file"])
    cmap = font.getBestCmap()
    needed = [*range(0x20, 0x7F), *range(0xA0, 0x17F), *range(0x400, 0x460), 0x490, 0x491, *range(0x2010, 0x2012),
              *range(0x2013, 0x2016), *range(0x2018, 0x201B), *range(0x201C, 0x201F), 0x2022, 0x2026, 0x202F, 0x2039, 0x203A, 0x20AC, 0x20BD,
              0x2116, 0x2122, *range(0x2190, 0x2194)]
    missing = [f"{code:04X}" for code in needed if code not in cmap]
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
