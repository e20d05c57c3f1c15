"""A person customises the setup: another folder by the chooser, no shortcut, back and forth, and installs there.

The folder's name has brackets, which the engine's variables give a meaning: an uninstall and a repair know it too."""
from harness.client import facts
from harness.seeing.window import ACTION1, ACTION2, BROWSE, LOCATION, OPTIONS, SHORTCUT

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


def play(scene):
    scene.use_names()
    scene.path(CHOSEN + "\\Neu").mkdir(parents=True)
    run = scene.start()
    scene.wait_for_page("welcome")
    scene.window.click(OPTIONS)
    scene.wait_for_page("options")
    scene.check("a shortcut is what is offered", scene.window.is_checked(SHORTCUT))
    scene.window.click(BROWSE)
    choose(scene, CHOSEN, FIRST)
    scene.window.click(BROWSE)
    choose(scene, "Neu", FOLDER)  # the chooser opens around the product's own folder
    scene.window.picture("options-folder")
    scene.window.click(SHORTCUT)
    scene.wait_for(lambda: not scene.window.is_checked(SHORTCUT), "an empty box by a click", 10)
    scene.window.picture("options-no-shortcut")

    scene.window.click(ACTION2)
    scene.wait_for_page("welcome", "welcome-again")
    scene.window.click(OPTIONS)
    again = scene.wait_for_page("options", "options-again")
    scene.check_equal("the way back and forward leaves the folder", again.names.get(LOCATION), FOLDER)
    scene.check("the way back and forward leaves it off", not scene.window.is_checked(SHORTCUT))
    scene.window.click(ACTION1)
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
