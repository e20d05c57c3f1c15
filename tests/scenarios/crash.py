"""A crash is reported at once with its signature, shows one box in the user's language, then is left to the system.

What is meant to crash does so as any crash: Enter on a link with the focus, a disc's key without a value."""
from harness.desktop.window import BODY
from harness.places import LIBRARY, ROOT
from harness.release.symbolize import trace
from harness.scenario.crash import ACCESS_FAULT, UNCAUGHT_EXCEPTION, check_crash, watch
from harness.scenario.telemetry import Sent

ROWS = [  # the machine's locale, the language, what the event reports of them
    ("C.UTF-8", "EN", {}),
    ("de_DE.UTF-8", "DE", {"lang": "de", "cntry": "DE"}),
]


def play(scene):
    watch(scene)
    sent = Sent(scene)
    run = scene.runs.start(log="link", page="welcome")
    scene.window.press("Tab")
    scene.window.wait_for_focus(BODY)
    scene.window.press("Return")
    link = check_crash(scene, sent, run, "Enter on a link", ACCESS_FAULT)
    sent = Sent(scene)
    key = check_crash(scene, sent, scene.runs.start("/contentIds", log="bare-key"), "a bare key", UNCAUGHT_EXCEPTION)
    scene.checks.that("two crashes have two signatures", link != key, (link, key))

    scene.machine.make_configurable("[qa]\ninstaller.crashOnStart = true\n")
    before, codes = len(scene.services.requests()), []
    for locale, language, identity in ROWS:
        scene.machine.restart(locale)
        sent = Sent(scene)
        run = scene.runs.start(log="engine" if language == "EN" else language)
        codes.append(check_crash(scene, sent, run, language, ACCESS_FAULT, language, development=True, **identity))
    scene.checks.that("one crash has one signature", len(set(codes)) == 1, codes)
    source = (ROOT / "core/Startup.cpp").read_text().split("crashOnStart")[0]
    place = f"core/Startup.cpp:{source.count(chr(10)) + 1}"
    frames = [at for row in trace(codes[0], LIBRARY, LIBRARY.with_suffix(".debug")) if row.likely for at in row.frames]
    scene.checks.that("the signature is traced to its line", any(at.endswith(place) for at in frames), frames)
    scene.checks.equal("nothing but the crashes is sent", len(scene.services.requests()) - before, len(ROWS))
