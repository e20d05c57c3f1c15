"""Services that never answer delay nothing: the window closes when the work is done, and a second run can start."""
import threading


def play(scene):
    silence = threading.Event()
    for service in (scene.services.brisk, scene.services.tally):
        service.answer(silence=silence, cut="reset")
    first = scene.runs.start_install(log="first")
    scene.window.wait_for_page("progress")
    scene.wait_for(lambda: scene.window.page() is None, "the end of the window")
    scene.checks.that("the first run still waits for its posts", not first.ended)
    scene.checks.equal("and has logged its end", first.log_so_far().messages("OnShutdown"), ["Entering OnShutdown"])
    scene.checks.installed()

    second = scene.runs.start("/uninstall", "/quiet", log="second")
    scene.wait_for(lambda: not scene.machine.client_files(), "the end of the client's files")
    scene.checks.that("the first run still waits when the second has removed the client", not first.ended)
    silence.set()
    first.ends(0, "the first")
    second.ends(0, "the second")
    scene.checks.gone()
