"""Every page and prompt in all fourteen languages: no text is cut off, nothing overlaps, no glyph is missing.

out/gallery/ has a contact sheet a language and, in a folder a language, each page as a picture with the facts of its
controls.
"""
import re
import subprocess
from concurrent.futures import ThreadPoolExecutor
from itertools import combinations
from pathlib import Path

from harness.desktop import gallery
from harness.desktop.gallery import visible
from harness.desktop.strings import all_texts, plain

LEAST = 14  # languages, and pages in each
LOCATION = 1004  # a path, cut in its middle by design
BUTTONS = (1007, 1012, 1013, 1009, 1010)  # in capitals: a to z and no other letter
TITLE, BODY = 1001, 1002
BROWSE = 1010  # has a place of its own, 8 pixels from the right edge
SLACK = 0.5  # pixels
SPARE = 3  # pixels that a label may be higher than its text
MARGIN = 12  # pixels between a button and the window's left and right edges
TITLE_ALONE = "uninstalling-older-client-title"  # changes the title of the page before, which keeps its places


def play(scene):
    gallery.draw(scene, gallery.LANGUAGES)
    pages = gallery.pages(scene.out)
    pictures = list(scene.out.glob("*/*.png"))
    counts = {language: sum(1 for at, _ in pages if at == language) for language in gallery.LANGUAGES}
    scene.checks.that(f"{LEAST} pages or more in each of {LEAST} languages",
                len(counts) >= LEAST and min(counts.values()) >= LEAST and len(pictures) == len(pages),
                f"{len(pictures)} pictures, {sorted(set(counts.values()))} a language")
    kinds = {page["kind"] for page in pages.values()}
    scene.checks.equal("all kinds of pages", kinds, set(range(6)))

    strings = {language: shown_strings(language) for language in gallery.LANGUAGES}
    placed = {at: page for at, page in pages.items() if at[1] != TITLE_ALONE}
    welcome = {at: page for at, page in pages.items() if at[1] == "welcome"}
    scene.checks.equal("a welcome page in each language", len(welcome), len(gallery.LANGUAGES))
    for name, shown, faults_of in (
            ("no text is cut off", pages, cut_off),
            ("no control overlaps another", pages, overlaps),
            ("all controls are in the window", pages, outside),
            ("no missing glyph is drawn", pages, missing_glyphs),
            ("buttons keep clear of the window's edges", pages, close_to_edge),
            ("each text is one of its language's own", pages,
             lambda page: foreign_texts(page, strings[page["language"]])),
            ("no label is higher than its text", placed, too_high),
            ("the slogan is on one line", welcome, slogan_lines)):
        gallery.check(scene, name, shown, faults_of)

    with ThreadPoolExecutor(2) as pool:
        sheets = list(pool.map(lambda language: contact_sheet(scene.out, language), gallery.LANGUAGES))
    scene.checks.that("a contact sheet for each language", all(sheets))


def cut_off(page):
    """Texts that have less space than they need."""
    for control in visible(page):
        label, space = f"{control['id']} \"{control['text'][:40]}\"", (control["width"], control["height"])
        if control["scrolls"]:
            yield f"{label} is taller than its space and scrolls"
        needed = control["preferred"]
        if needed and control["id"] != LOCATION and (needed["width"] > space[0] or needed["height"] > space[1]):
            yield f"{label} needs {needed['width']} x {needed['height']}, has {space[0]} x {space[1]}"
        for line in control["lines"]:
            wide = line["x"] < -SLACK or line["x"] + line["width"] > space[0] + SLACK
            high = line["y"] < -SLACK or line["y"] + line["height"] > space[1] + SLACK
            if high or (wide and control["id"] != LOCATION):
                yield f"{label}: the line \"{line['text']}\" leaves the control"


def overlaps(page):
    for one, other in combinations(visible(page), 2):
        width = min(one["x"] + one["width"], other["x"] + other["width"]) - max(one["x"], other["x"])
        height = min(one["y"] + one["height"], other["y"] + other["height"]) - max(one["y"], other["y"])
        if width > 0 and height > 0:
            yield f"{one['id']} and {other['id']} share {width} x {height} pixels"


def outside(page):
    client = page["client"]
    for control in visible(page):
        if (control["x"] < 0 or control["y"] < 0 or control["x"] + control["width"] > client["width"]
                or control["y"] + control["height"] > client["height"]):
            yield f"{control['id']} \"{control['text'][:40]}\""


def too_high(page):
    """Labels with space for a line that is not there: measured at another width than they are drawn at."""
    for control in visible(page):
        if control["id"] in (TITLE, BODY) and control["height"] > control["preferred"]["height"] + SPARE:
            yield f"{control['id']} \"{control['text'][:40]}\" needs {control['preferred']}, has {control['height']}"


def close_to_edge(page):
    for control in visible(page):
        right = page["client"]["width"] - control["x"] - control["width"]
        if control["id"] in BUTTONS and control["id"] != BROWSE and min(control["x"], right) < MARGIN:
            yield f"{control['id']} \"{control['text']}\": {control['x']} on the left, {right} on the right"


def slogan_lines(page):
    for control in visible(page):
        lines = {round(line["y"]) for line in control["lines"]}
        if control["id"] == TITLE and len(lines) != 1:
            yield f"\"{control['text']}\" takes {len(lines)} lines"


def missing_glyphs(page):
    for control in visible(page):
        if control["missing"]:
            yield f"{control['id']} {control['missing']!r}"


def capitals(text):
    return re.sub("[a-z]", lambda letter: letter[0].upper(), text)


def shown_strings(language):
    """What a language's strings look like on a page: as words, and as labels of buttons."""
    texts = []
    for text in all_texts(language).values():
        # One with a line feed is shown in two parts, above each other.
        texts += [plain(part) for part in (text, *text.split("\n", 1))]
    return {"words": set(texts), "labels": {capitals(text) for text in texts}}


def foreign_texts(page, strings):
    """Texts that are no string of the language: bare keys, leftovers of another language."""
    for control in visible(page):
        known = strings["labels" if control["id"] in BUTTONS else "words"]
        if control["text"] and control["id"] != LOCATION and plain(control["text"]) not in known:
            yield f"{control['id']} \"{control['text']}\""


def contact_sheet(out: Path, language: str) -> bool:
    sheet = out / f"{language}.png"
    # A weak compression: a strong one takes longer than the rest.
    subprocess.run(["montage", "-label", "%t", *sorted((out / language).glob("*.png")), "-resize", "320x",
                    "-tile", "6x", "-geometry", "+6+6", "-background", "#222", "-fill", "#ddd", "-quality", "12",
                    sheet], check=False, timeout=180)
    return sheet.exists()
