"""The same choices without the mouse: Tab, Shift+Tab, Space and Enter, and a folder typed into the chooser."""
from harness.seeing.window import ACTION1, ACTION2, BODY, BROWSE, CLOSE, LOCATION, OPTIONS, SHORTCUT
from tests.scenarios.install_options import CHOSEN, FIRST, check_choice, choose


def walk(scene, key: str, *controls: int) -> None:
    """Presses the key once for each control, which then gets the focus."""
    for control in controls:
        scene.window.press(key)
        scene.wait_for(lambda: scene.window.look().focus == control, f"the focus of {control} by {key}", 10)


def play(scene):
    scene.use_names()
    scene.path(CHOSEN).mkdir()
    run = scene.start()
    scene.wait_for_page("welcome")
    scene.wait_for(scene.window.keyboard, "the keyboard")
    walk(scene, "Tab", BODY, OPTIONS)
    scene.window.press("Return")
    scene.wait_for_page("options")

    walk(scene, "Tab", BROWSE)
    scene.window.press("space")
    choose(scene, CHOSEN, FIRST)
    walk(scene, "Tab", SHORTCUT)
    scene.window.press("space")
    scene.wait_for(lambda: not scene.window.is_checked(SHORTCUT), "an empty box by Space", 10)
    scene.window.picture("options-no-shortcut")
    walk(scene, "Tab", ACTION1, ACTION2)
    scene.window.press("Return")
    scene.wait_for_page("welcome", "welcome-again")

    # A new page gives the focus to the dialog itself, from where the platform knows no way back.
    walk(scene, "Tab", BODY)
    walk(scene, "shift+Tab", CLOSE, ACTION1, OPTIONS)
    scene.window.press("space")
    again = scene.wait_for_page("options", "options-again")
    scene.check_equal("the way back and forward leaves the folder", again.names.get(LOCATION), FIRST)
    scene.check("the way back and forward leaves it off", not scene.window.is_checked(SHORTCUT))
    walk(scene, "Tab", BROWSE)
    walk(scene, "shift+Tab", CLOSE, ACTION2, ACTION1)
    scene.window.press("Return")
    run.finish(90)
    check_choice(scene, run, FIRST)
