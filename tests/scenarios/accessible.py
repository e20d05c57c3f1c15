"""By keyboard and screen reader: each control's published name, Tab's way through each page, and the focus to be seen.

The program itself puts real input events into the system's queue (SendInput), so that Shift's state is a keyboard's. A
loop like the dialog's own takes them out, with IsDialogMessageW. A key from the display would take the same way from
there on, but nothing shows when it has arrived.
"""
from harness.desktop import gallery
from harness.desktop.gallery import visible
from harness.desktop.strings import plain, text

LANGUAGES = ("en", "de", "ru", "ja", "th")
CLOSE, PICTURE, PROGRESS = 1008, 1005, 1006
PRESSED = (1007, 1012, 1013, 1009, 1010, 1011, 1014, CLOSE)
LABELS = (1001, 1015, 1002)
LEAST_CHANGE = 20  # pixels that look otherwise with the focus


def play(scene):
    gallery.draw(scene, LANGUAGES, "/focus", processes=1)
    pages = gallery.pages(scene.out)
    scene.checks.that("every kind of page in each language",
                {(language, page["kind"]) for (language, _), page in pages.items()}
                == {(language, kind) for language in LANGUAGES for kind in range(6)}, f"{len(pages)} pages")
    for name, faults_of in (("published names are the texts that a person sees", names),
                            ("Tab and Shift+Tab walk all controls in reading order and back to the first", walks),
                            ("what can be used is a tab stop, and nothing else", tab_stops),
                            ("the focus can be seen", focus_seen)):
        gallery.check(scene, name, pages, faults_of)
    toggled = sum(len(page["focus"]["toggled"]) for page in pages.values())
    scene.checks.that("the space bar unchecks and checks boxes", toggled > len(LANGUAGES), toggled)


def names(page):
    for control in visible(page):
        wanted = text("installer_close", page["language"]) if control["id"] == CLOSE else plain(control["text"])
        if control["name"] != wanted:
            yield f"{control['id']} is called \"{control['name']}\", not \"{wanted}\""
        if not control["name"] and control["id"] not in (PICTURE, PROGRESS):
            yield f"{control['id']} has no name"


def usable(page):
    """The controls that the keyboard has to reach, in reading order: line by line, the cross of the corner last."""
    found = [control for control in visible(page) if control["enabled"]
             and (control["id"] in PRESSED or (control["id"] in LABELS and "<a " in control["text"]))]
    return [control["id"] for control in
            sorted(found, key=lambda control: (control["id"] == CLOSE, control["y"], control["x"]))]


def walks(page):
    order = usable(page)
    for way, wanted in (("forward", order + order[:1]), ("backward", order[:1] + order[::-1])):
        found = page["focus"][way]
        if found != wanted and order:
            yield f"{way} went {found}, wanted {wanted}"


def tab_stops(page):
    order = usable(page)
    found = {control["id"] for control in visible(page) if control["tabstop"]}
    if found != set(order):
        yield f"{sorted(found)}, wanted {sorted(order)}"


def focus_seen(page):
    for control in usable(page):
        if page["focus"]["changed"].get(str(control), 0) < LEAST_CHANGE:
            yield f"{control} changes {page['focus']['changed'].get(str(control))} pixels"
