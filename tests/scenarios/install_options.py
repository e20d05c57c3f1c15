"""A person customises the setup by mouse, returns to the first page, customises again by keyboard, and installs.

The folder's name has brackets, which mean something in the engine's variables: uninstall and repair find it too."""
from harness.desktop.window import ACTION1, ACTION2, BODY, BROWSE, CLOSE, LOCATION, OPTIONS, SHORTCUT
from harness.scenario import client

CHOSEN = "C:\\Spiele [SSD]"
FIRST = CHOSEN + "\\Palisade Desktop"  # the chooser gives the product a folder of its own
FOLDER = CHOSEN + "\\Neu\\Palisade Desktop"
RUN_KEY = "HKCU\\Software\\Microsoft\\Windows\\CurrentVersion\\Run"
SHORTCUTS = "C:\\users\\root\\Desktop\\Palisade.lnk", "C:\\users\\Public\\Desktop\\Palisade.lnk"


def choose(scene, typed: str, wanted: str) -> None:
    """Chooses a folder in the chooser that is about to open, and waits until the page shows it."""
    scene.window.choose_folder(typed)
    scene.wait_for(lambda: scene.window.look().names.get(LOCATION) == wanted, "the chosen folder on the page", 10)


def walk(scene, key: str, *controls: int) -> None:
    """Presses the key once for each control, which then gets the focus."""
    for control in controls:
        scene.window.press(key)
        scene.window.wait_for_focus(control)


def wait_for_box(scene, checked: bool, how: str) -> None:
    scene.wait_for(lambda: scene.window.is_checked(SHORTCUT) == checked, f"the box {how}", 10)


def by_mouse(scene) -> None:
    scene.window.click(OPTIONS, "options")
    scene.checks.that("a shortcut is what is offered", scene.window.is_checked(SHORTCUT))
    scene.window.click(BROWSE)
    choose(scene, CHOSEN, FIRST)
    scene.window.click(SHORTCUT)
    wait_for_box(scene, False, "by a click")
    scene.window.picture("options-no-shortcut")
    scene.window.click(ACTION2, "welcome", "welcome-again")


def by_keyboard(scene) -> None:
    # A new page gives the focus to the dialog itself, from where the platform knows no way back.
    walk(scene, "Tab", BODY)
    walk(scene, "shift+Tab", CLOSE, ACTION1, OPTIONS)
    scene.window.press("Return")
    again = scene.window.wait_for_page("options", "options-again")
    scene.checks.equal("the way back and forward leaves the folder", again.names.get(LOCATION), FIRST)
    scene.checks.that("the way back and forward leaves it off", not scene.window.is_checked(SHORTCUT))
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


def check_choice(scene, run, *chosen: str) -> None:
    """The last of the chosen folders is the one that counts."""
    folders = run.log.messages("BootstrapperDialog::ValidateInstallFolder")
    scene.checks.equal("the folder is checked when it is chosen and when the install starts", folders,
                       [f"folder=[{folder}]" for folder in (*chosen, chosen[-1])])
    variables = {"InstallFolder": chosen[-1], "CreateDesktopShortcut": ""}
    scene.checks.equal("the product's folder is that in the chosen one, and no shortcut is asked for",
                       {name: run.log.variables.get(name) for name in variables}, variables)
    scene.checks.installed(chosen[-1])
    scene.checks.equal("no shortcut is on the desktop", [p for p in SHORTCUTS if scene.machine.exists(p)], [])


def check_uninstall_and_reinstall(scene) -> None:
    launcher = client.file("PalisadeLauncher.exe", FOLDER)
    scene.machine.set_value(RUN_KEY, "Fenwick", f'"{launcher.upper()}" -silent')
    scene.runs.uninstall()
    scene.checks.equal("an uninstall removes that folder's Run value", scene.machine.value(RUN_KEY, "Fenwick"), None)
    scene.checks.that("and the client", not scene.machine.exists(launcher))

    # As the first half of a repair leaves the folder to the second.
    scene.runs.install(log="again", environment={"PDX_INSTALL_LOCATION": FOLDER})
    scene.checks.installed(FOLDER)


def play(scene):
    scene.window.use_names()
    scene.machine.path(CHOSEN + "\\Neu").mkdir(parents=True)
    run = scene.runs.start(page="welcome")
    by_mouse(scene)
    by_keyboard(scene)
    check_choice(scene, run.ends(), FIRST, FOLDER)
    check_uninstall_and_reinstall(scene)
