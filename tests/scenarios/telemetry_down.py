"""Both telemetry services refuse, reset, or stay silent for 20 seconds: installs take no longer, and nothing shows."""
import re
from datetime import datetime

from harness.seeing.window import ACTION1

SILENCE = 20  # seconds before a reset
STAMPS = re.compile(r"^\[\w+:\w+\]\[([^\]]*)\]", re.M)


def install(scene, what: str) -> float:
    """Installs, checks that it is as ever, and uninstalls; gives the seconds from the first step to the shutdown, which
    alone waits for posts under way."""
    run = scene.start(log=what)
    scene.wait_for_page("welcome", f"{what}-welcome")
    scene.window.click(ACTION1)
    pages = set()
    scene.wait_for(lambda: pages.add(scene.window.page()) or run.ended, f"the end of an install, services {what}")
    run.finish(10)
    scene.check_equal(f"{what}: no page shows but those of an install", pages - {None, "welcome"}, {"progress"})
    scene.check_exit_code(run, 0, f"{what}: the engine")
    scene.check_installed()
    scene.check_equal(f"{what}: no error is told", run.log.closing_errors() + run.log.messages("OnError"), [])
    steps = run.log.text[run.log.text.index("OnPlanBegin"):].split("Entering OnShutdown")[0]
    moments = [datetime.fromisoformat(text) for text in STAMPS.findall(steps)]
    return (moments[-1] - moments[0]).total_seconds()


def remove(scene) -> None:
    scene.check_exit_code(scene.run("/uninstall", "/quiet", log="uninstall"), 0, "between two installs the engine")


def play(scene):
    both = scene.services.brisk, scene.services.tally
    scene.make_thin_bundle()
    usual = install(scene, "usual")
    remove(scene)

    for service in both:
        service.down()
    unreachable = install(scene, "unreachable")
    for service in both:
        service.up()
    remove(scene)

    before = len(scene.services.requests())
    for service in both:
        service.answer(cut="reset")
    resetting = install(scene, "resetting")
    for service in both:
        service.answer()
    posts = {(post.service, post.status) for post in scene.services.requests()[before:]}
    scene.check("both services were told and gave no answer", posts >= {("brisk", None), ("tally", None)}, posts)
    remove(scene)

    before = len(scene.services.requests())
    for service in both:
        service.answer(delay=SILENCE, cut="reset")
    silent = install(scene, "silent")
    posts = {(post.service, post.status) for post in scene.services.requests()[before:]}
    scene.check("both were told again, and silent", posts >= {("brisk", None), ("tally", None)}, posts)

    for what, taken in ("unreachable", unreachable), ("resetting", resetting), ("silent", silent):
        # One post that an install waited for would take it beyond this.
        scene.check(f"{what}: the install waits for no post", taken < usual + SILENCE / 2,
                    f"{taken:.0f} s, {usual:.0f} s with services")
