"""Both telemetry services refuse, reset, or never answer: installs wait for no post, and nothing shows."""
import threading

from harness.scenario.telemetry import Sent, thin_install


def install(scene, what: str, then=lambda: None, at_end=lambda: None):
    """Installs, does what is to happen `then`, in the middle of the package, and `at_end`, before the shutdown that
    alone waits for posts under way. Checks that all is as usual."""
    scene.runs.pause()
    run = scene.runs.start_install(log=what)
    pages = set()
    scene.wait_for(lambda: pages.add(scene.window.page()) or scene.runs.is_marked(), f"{what}: the package")
    then()
    scene.runs.mark()
    scene.wait_for(lambda: pages.add(scene.window.page()) or run.log_so_far().messages("OnShutdown"),
                   f"{what}: the end of an install")
    at_end()
    run.ends(0, f"{what}: the engine")
    scene.checks.equal(f"{what}: no page shows but those of an install", pages - {None, "welcome"}, {"progress"})
    scene.checks.installed()
    scene.checks.no_error(run, what)
    return run


def play(scene):
    both = scene.services.brisk, scene.services.tally
    link = scene.runs.make_thin_bundle()
    for service in both:
        service.down()
    sent = Sent(scene)
    install(scene, "unreachable", lambda: [service.up() for service in both])
    # What could not be posted is lost; later events are sent.
    scene.checks.equal("unreachable: what is sent as soon as both can be reached", sent.names(),
                       (["inst.inst.succ", "inst.sess.stop"], ["install"]))
    scene.runs.uninstall()

    silence = threading.Event()

    def end_silence() -> None:
        scene.wait_for(lambda: all(map(sent.posts, ("brisk", "tally"))), "silent: the first posts", 20)
        scene.checks.equal("silent: each service still has the first post when the install has ended",
                           [len(sent.posts(service)) for service in ("brisk", "tally")], [1, 1])
        silence.set()

    for what, answer, at_end in ("resetting", {}, lambda: None), ("silent", {"silence": silence}, end_silence):
        for service in both:
            service.answer(cut="reset", **answer)
        sent = Sent(scene)
        run = install(scene, what, at_end=at_end)
        for service in both:
            service.answer()
        # A failed post ends nothing, and none is posted again.
        sent.check(thin_install(run, link))
        scene.checks.equal(f"{what}: no post was answered",
                           {post.status for service in ("brisk", "tally") for post in sent.posts(service)}, {None})
        scene.runs.uninstall()
