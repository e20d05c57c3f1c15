"""`/passive`: the window shows how far the run is and closes by itself; no page asks anything."""
from harness.seeing.window import ACTION1, CLOSE, PROGRESS


def play(scene):
    scene.script("""
        before-files mark under-way
        before-files wait-for seen
    """)
    run = scene.start("/passive")
    scene.wait_for_mark("under-way", "the package")
    view = scene.wait_for_page("progress")
    scene.check("a bar and the cross, no button", {PROGRESS, CLOSE} <= view.controls.keys() and
                ACTION1 not in view.controls, sorted(view.controls))
    scene.mark("seen")
    run.finish(90)
    scene.check_exit_code(run, 0)
    scene.check("the window is gone", scene.window.look() is None)
    scene.check_installed()

    scene.script("after-files fail 1603")
    scene.check_exit_code(scene.run("/passive", "/uninstall", log="failure"), 1, "a failing run")
