"""Services that never answer hold nobody: the window goes with the run's end, and a second run starts at once."""
import threading

from harness.desktop.window import ACTION1


def play(scene):
    silence = threading.Event()
    for service in (scene.services.brisk, scene.services.tally):
        service.answer(silence=silence, cut="reset")
    first = scene.start(log="first")
    scene.wait_for_page("welcome")
    scene.window.click(ACTION1)
    scene.wait_for_page("progress")
    scene.wait_for(lambda: scene.window.page() is None, "the end of the window")
    scene.check("the first run still waits for its posts", not first.ended)
    scene.check_equal("and has told its end", first.log_so_far().messages("OnShutdown"), ["Entering OnShutdown"])
    scene.check_installed()

    second = scene.start("/uninstall", "/quiet", log="second")
    scene.wait_for(lambda: not scene.client_state()[0], "the end of the client's files")
    scene.check("the first run still waits when the second has removed the client", not first.ended)
    silence.set()
    for run, whose in (first, "the first"), (second, "the second"):
        scene.check_exit_code(run.finish(90), 0, whose)
    scene.check_gone()
