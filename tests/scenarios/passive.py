"""`/passive`: no page asks anything, and the window closes by itself, whatever menu is open or button of the mouse held."""
from harness.desktop.window import ACTION1, CLOSE, PROGRESS

MENU = "#32768"  # the class of the system's menus


def open_menu(scene) -> None:
    scene.wait_for(scene.window.keyboard, "the keyboard")
    scene.window.press("alt+space")
    scene.wait_for(lambda: any(other["class"] == MENU for other in scene.window.look().others), "the menu", 20)


def hold(scene, button: int) -> None:
    """Presses a button on the window's ground and keeps it down."""
    scene.window.hold(button, *scene.window.look().controls[PROGRESS].point(down=3))


def drag(scene) -> None:
    box = scene.window.look().box
    hold(scene, 1)
    scene.window.move(30, 20)
    wanted = (box.x + 30, box.y + 20)
    scene.wait_for(lambda: (scene.window.look().box.x, scene.window.look().box.y) == wanted, "the window's move", 20)


def play(scene):
    for log, act in (("engine", open_menu), ("dragged", drag), ("right-button", lambda scene: hold(scene, 3))):
        scene.script("after-files mark under-way\nafter-files wait-for seen")
        run = scene.start("/passive", log=log)
        scene.wait_for_mark("under-way", "the package")
        view = scene.wait_for_page("progress", log)
        scene.check("a bar and the cross, no button", {PROGRESS, CLOSE} <= view.controls.keys() and
                    ACTION1 not in view.controls, sorted(view.controls))
        act(scene)
        scene.mark("seen")
        run.finish(30)
        for button in (1, 3):
            scene.window.release(button)
        scene.check_exit_code(run, 0, f"{log}: the engine")
        scene.check("the window is gone", scene.window.look() is None)
        scene.check_installed()
        scene.uninstall(f"{log}-uninstall")

    # A prompt comes while the menu is open, and is answered by mouse.
    scene.script("after-files mark under-way\nafter-files wait-for seen\nafter-files fail 1603")
    run = scene.start_install(log="failure")
    scene.wait_for_mark("under-way", "the package")
    open_menu(scene)
    scene.mark("seen")
    scene.wait_for_page("prompt", "error")
    scene.window.click(ACTION1)
    run.finish(30)
    scene.check_exit_code(run, 1, "a failing run")
