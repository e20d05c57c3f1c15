"""A person installs by mouse: welcome, a click on LET'S GO, progress, and the window closes with the client installed."""
from harness.seeing.window import ACTION1, CLOSE, OPTIONS
from tests.scenarios.install_options import SHORTCUTS


def play(scene):
    scene.script("""
        before-files wait-for seen
        before-files progress 5 100
    """)
    run = scene.start()
    welcome = scene.wait_for_page("welcome")
    scene.check("the page offers its options, one button and the cross",
                {OPTIONS, ACTION1, CLOSE} <= welcome.controls.keys(), sorted(welcome.controls))
    scene.check("nothing is planned before the click", not run.log_so_far().numbered("200"))
    scene.window.click(ACTION1)
    scene.wait_for_page("progress")
    scene.mark("seen")
    run.finish(90)
    scene.check_exit_code(run, 0)
    scene.check("the window has closed", scene.window.look() is None)
    scene.check_installed()
    scene.check_equal("CreateDesktopShortcut is set", run.log.variables.get("CreateDesktopShortcut"), "1")
    found = [path for path in SHORTCUTS if scene.exists(path)]
    scene.check("one shortcut lies on the desktop", len(found) == 1, found)
