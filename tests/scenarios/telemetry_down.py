"""Both telemetry services refuse, reset, or never answer: installs wait for no post, and nothing shows."""
import threading

from harness.scenario.telemetry import check_telemetry, names_since, thin_install, told_so_far
from harness.scenario import client as facts


def install(scene, what: str, then=lambda: None, at_end=lambda: None):
    """Installs, does what is to happen `then`, in the middle of the package, and `at_end`, before the shutdown that
    alone waits for posts under way. Checks that all is as ever."""
    scene.script("before-files mark under-way\nbefore-files wait-for go-on")
    run = scene.start_install(log=what)
    pages = set()
    scene.wait_for(lambda: pages.add(scene.window.page()) or scene.exists(facts.EXCHANGE + "\\under-way"),
                   f"the package, services {what}")
    then()
    scene.mark("go-on")
    scene.wait_for(lambda: pages.add(scene.window.page()) or run.log_so_far().messages("OnShutdown"),
                   f"the end of an install, services {what}")
    at_end()
    run.finish(60)
    scene.check_equal(f"{what}: no page shows but those of an install", pages - {None, "welcome"}, {"progress"})
    scene.check_exit_code(run, 0, f"{what}: the engine")
    scene.check_installed()
    scene.check_equal(f"{what}: no error is told", run.log.closing_errors() + run.log.messages("OnError"), [])
    return run


def play(scene):
    both = scene.services.brisk, scene.services.tally
    link = scene.make_thin_bundle()
    for service in both:
        service.down()
    told = told_so_far(scene)
    install(scene, "unreachable", lambda: [service.up() for service in both])
    # What could not be posted is lost, and what comes later is told.
    scene.check_equal("unreachable: what is told as soon as both can be reached", names_since(scene, told),
                      (["inst.inst.succ", "inst.sess.stop"], ["install"]))
    scene.uninstall()

    silence = threading.Event()

    def end_silence() -> None:
        held = [len(scene.services.wait_for(told[service] + 1, service)) - told[service] for service in told]
        scene.check_equal("silent: each service still has the first post when the install has ended", held, [1, 1])
        silence.set()

    for what, answer, at_end in ("resetting", {}, lambda: None), ("silent", {"silence": silence}, end_silence):
        for service in both:
            service.answer(cut="reset", **answer)
        told = told_so_far(scene)
        run = install(scene, what, at_end=at_end)
        for service in both:
            service.answer()
        # No failed post ends the telling, and none is posted again.
        check_telemetry(scene, **thin_install(run, link), since=told)
        answered = {post.status for service in ("brisk", "tally")
                    for post in scene.services.requests(service)[told[service]:]}
        scene.check_equal(f"{what}: no post was answered", answered, {None})
        scene.uninstall()
