"""Both telemetry services refuse, reset, or stay silent for 20 seconds: installs take no longer, and nothing shows."""
import re
from datetime import datetime

from harness.checking.telemetry import check_telemetry, names_since, thin_install, told_so_far
from harness.client import facts

SILENCE = 20  # seconds before a reset
STAMPS = re.compile(r"^\[\w+:\w+\]\[([^\]]*)\]", re.M)


def install(scene, what: str, then=lambda: None):
    """Installs, does what is to happen `then`, in the middle of the package, and checks that all is as ever. Gives
    the run, and its seconds from the first step to the shutdown, which alone waits for posts under way."""
    scene.script("before-files mark under-way\nbefore-files wait-for go-on")
    run = scene.start_install(log=what)
    pages = set()
    scene.wait_for(lambda: pages.add(scene.window.page()) or scene.exists(facts.EXCHANGE + "\\under-way"),
                   f"the package, services {what}")
    then()
    scene.mark("go-on")
    scene.wait_for(lambda: pages.add(scene.window.page()) or run.ended, f"the end of an install, services {what}")
    run.finish(10)
    scene.check_equal(f"{what}: no page shows but those of an install", pages - {None, "welcome"}, {"progress"})
    scene.check_exit_code(run, 0, f"{what}: the engine")
    scene.check_installed()
    scene.check_equal(f"{what}: no error is told", run.log.closing_errors() + run.log.messages("OnError"), [])
    steps = run.log.text[run.log.text.index("OnPlanBegin"):].split("Entering OnShutdown")[0]
    moments = [datetime.fromisoformat(text) for text in STAMPS.findall(steps)]
    return run, (moments[-1] - moments[0]).total_seconds()


def play(scene):
    both = scene.services.brisk, scene.services.tally
    link = scene.make_thin_bundle()
    _, usual = install(scene, "usual")
    scene.uninstall()

    for service in both:
        service.down()
    told = told_so_far(scene)
    _, unreachable = install(scene, "unreachable", lambda: [service.up() for service in both])
    # What could not be posted is lost, and what comes later is told.
    scene.check_equal("unreachable: what is told as soon as both can be reached", names_since(scene, told),
                      (["inst.inst.succ", "inst.sess.stop"], ["install"]))
    scene.uninstall()

    rows = [("unreachable", unreachable)]
    for what, answer in ("resetting", {}), ("silent", {"delay": SILENCE}):
        for service in both:
            service.answer(cut="reset", **answer)
        told = told_so_far(scene)
        run, taken = install(scene, what)
        rows.append((what, taken))
        for service in both:
            service.answer()
        # No failed post ends the telling, and none is posted again.
        check_telemetry(scene, **thin_install(run, link), since=told)
        answered = {post.status for service in ("brisk", "tally")
                    for post in scene.services.requests(service)[told[service]:]}
        scene.check_equal(f"{what}: no post was answered", answered, {None})
        scene.uninstall()

    for what, taken in rows:
        # One post that an install waited for would take it beyond this.
        scene.check(f"{what}: the install waits for no post", taken < usual + SILENCE / 2,
                    f"{taken:.0f} s, {usual:.0f} s with services")
