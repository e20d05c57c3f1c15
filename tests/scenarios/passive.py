"""`/passive`: no page asks anything, and the window closes by itself, with a menu open or a mouse button held."""
from harness.desktop.window import ACTION1, CLOSE, PROGRESS

MENU = "#32768"  # the class of the system's menus


def open_menu(scene) -> None:
    scene.window.press("alt+space")
    scene.wait_for(lambda: any(other["class"] == MENU for other in scene.window.look().others), "the menu", 20)


def hold(scene, button: int) -> None:
    """Presses a button below the window's bar and keeps it down."""
    scene.window.hold(button, *scene.window.look().controls[PROGRESS].point(down=3))


def drag(scene) -> None:
    box = scene.window.look().box
    hold(scene, 1)
    scene.window.move(30, 20)
    wanted = (box.x + 30, box.y + 20)
    scene.wait_for(lambda: (scene.window.look().box.x, scene.window.look().box.y) == wanted, "the window's move", 20)


def play(scene):
    for log, act in (("engine", open_menu), ("dragged", drag), ("right-button", lambda scene: hold(scene, 3))):
        scene.runs.pause(when="after-files")
        run = scene.runs.start("/passive", log=log)
        scene.runs.wait_for_mark()
        view = scene.window.wait_for_page("progress", log)
        scene.checks.that("a bar and the cross, no button", {PROGRESS, CLOSE} <= view.controls.keys() and
                          ACTION1 not in view.controls, sorted(view.controls))
        act(scene)
        scene.runs.mark()
        run.ends(0, f"{log}: the engine", 30)
        for button in (1, 3):
            scene.window.release(button)
        scene.checks.that("the window is gone", scene.window.look() is None)
        scene.checks.installed()
        scene.runs.uninstall(f"{log}-uninstall")

    # A prompt opens while the menu is open, and is answered by mouse.
    scene.runs.pause("after-files fail 1603", when="after-files")
    run = scene.runs.start_install(log="failure")
    scene.runs.wait_for_mark()
    open_menu(scene)
    scene.runs.mark()
    scene.window.wait_for_page("prompt", "error")
    scene.window.click(ACTION1)
    run.ends(1, "a failing run", 30)
