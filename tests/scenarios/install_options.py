"""A person customises the setup by mouse, goes back, customises it again by keyboard, and installs there.

The folder's name has brackets, which the engine's variables give a meaning: an uninstall and a repair know it too."""
from harness.scenario import client as facts
from harness.desktop.window import ACTION1, ACTION2, BODY, BROWSE, CLOSE, LOCATION, OPTIONS, SHORTCUT

CHOSEN = "C:\\Spiele [SSD]"
FIRST = CHOSEN + "\\Palisade Desktop"  # the chooser gives the product a folder of its own
FOLDER = CHOSEN + "\\Neu\\Palisade Desktop"
RUN_KEY = "HKCU\\Software\\Microsoft\\Windows\\CurrentVersion\\Run"
SHORTCUTS = "C:\\users\\root\\Desktop\\Palisade.lnk", "C:\\users\\Public\\Desktop\\Palisade.lnk"


def choose(scene, typed: str, wanted: str) -> None:
    """Into the chooser that is about to open. The page was there before it, and shows another folder until the chosen
    one is taken over."""
    scene.choose_folder(typed)
    scene.wait_for(lambda: scene.window.look().names.get(LOCATION) == wanted, "the chosen folder on the page", 10)


def walk(scene, key: str, *controls: int) -> None:
    """Presses the key once for each control, which then gets the focus."""
    for control in controls:
        scene.window.press(key)
        scene.wait_for(lambda: scene.window.look().focus == control, f"the focus of {control} by {key}", 10)


def wait_for_box(scene, checked: bool, how: str) -> None:
    scene.wait_for(lambda: scene.window.is_checked(SHORTCUT) == checked, f"the box {how}", 10)


def play(scene):
    scene.use_names()
    scene.path(CHOSEN + "\\Neu").mkdir(parents=True)
    run = scene.start_to_welcome()
    scene.window.click(OPTIONS)
    scene.wait_for_page("options")
    scene.check("a shortcut is what is offered", scene.window.is_checked(SHORTCUT))
    scene.window.click(BROWSE)
    choose(scene, CHOSEN, FIRST)
    scene.window.click(SHORTCUT)
    wait_for_box(scene, False, "by a click")
    scene.window.picture("options-no-shortcut")
    scene.window.click(ACTION2)
    scene.wait_for_page("welcome", "welcome-again")

    # A new page gives the focus to the dialog itself, from where the platform knows no way back.
    scene.wait_for(scene.window.keyboard, "the keyboard")
    walk(scene, "Tab", BODY)
    walk(scene, "shift+Tab", CLOSE, ACTION1, OPTIONS)
    scene.window.press("Return")
    again = scene.wait_for_page("options", "options-again")
    scene.check_equal("the way back and forward leaves the folder", again.names.get(LOCATION), FIRST)
    scene.check("the way back and forward leaves it off", not scene.window.is_checked(SHORTCUT))
    walk(scene, "Tab", BROWSE)
    scene.window.press("space")
    choose(scene, "Neu", FOLDER)  # the chooser opens around the product's own folder
    walk(scene, "Tab", SHORTCUT)
    for checked in (True, False):
        scene.window.press("space")
        wait_for_box(scene, checked, "by Space")
    walk(scene, "Tab", ACTION1, ACTION2, CLOSE)
    walk(scene, "shift+Tab", ACTION2, ACTION1)
    scene.window.press("Return")
    run.finish(90)
    check_choice(scene, run, FIRST, FOLDER)
    check_ways_back(scene)


def check_choice(scene, run, *chosen: str):
    """The last of the chosen folders is the one that counts."""
    scene.check_exit_code(run, 0)
    folders = run.log.messages("BootstrapperDialog::ValidateInstallFolder")
    scene.check_equal("the folder is checked when it is chosen and when the install starts", folders,
                      [f"folder=[{folder}]" for folder in (*chosen, chosen[-1])])
    scene.check_equal("InstallFolder is the product's folder in the chosen one", run.log.variables.get("InstallFolder"),
                      chosen[-1])
    scene.check_equal("CreateDesktopShortcut is empty", run.log.variables.get("CreateDesktopShortcut"), "")
    scene.check_installed(chosen[-1])
    scene.check_equal("no shortcut lies on the desktop", [path for path in SHORTCUTS if scene.exists(path)], [])


def check_ways_back(scene):
    launcher = facts.client_file("PalisadeLauncher.exe", FOLDER)
    scene.prefix.set_registry(RUN_KEY, "Fenwick", f'"{launcher.upper()}" -silent')
    scene.check_exit_code(scene.run("/uninstall", "/quiet", log="uninstall"), 0, "the uninstall")
    scene.check("an uninstall takes the Run value of that folder away", scene.registry(RUN_KEY, "Fenwick") is None)
    scene.check("and the client", not scene.exists(launcher))

    # As the first half of a repair leaves the folder to the second.
    again = scene.run("/quiet", log="again", environment={"PDX_INSTALL_LOCATION": FOLDER})
    scene.check_exit_code(again, 0, "an install into a folder that was handed on")
    scene.check_installed(FOLDER)
