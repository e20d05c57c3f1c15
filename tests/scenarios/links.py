"""Links by mouse: the user agreement's address for a download installer and its file for a full one; the support site."""
import shutil

from harness.scenario import client as facts
from harness.places import BUILD
from harness.desktop.strings import text
from harness.desktop.window import ACTION1, BODY, TITLE

BROWSER = facts.EXCHANGE + "\\browser.exe"
AGREEMENT = "https://legal.palisade.corvaneworks.example/legalapp/WEBTERMS/US/en/PC/"
SUPPORT = "https://support.palisade.corvaneworks.example/en/palisade/palisade-desktop"
FILE = "WEBTERMS_en.html"


def make_browser(scene) -> None:
    """Gives the machine a program that opens addresses and documents: it notes its command line."""
    shutil.copyfile(BUILD / "release/harness/client/PalisadeLauncher.exe", scene.path(BROWSER))
    classes = "HKLM\\Software\\Classes\\"
    scene.prefix.set_registry(classes + ".html", "", "htmlfile")
    for kind in ("http", "https", "htmlfile"):
        scene.prefix.set_registry(f"{classes}{kind}\\shell\\open\\command", "", f"\"{BROWSER}\" \"%1\"")


def check_opened(scene, what: str, *wanted: str) -> None:
    """What the browser has been asked to open since the last time, in order."""
    notes = scene.path(facts.LAUNCHES)
    scene.wait_for(lambda: scene.read(facts.LAUNCHES).count("\n") >= len(wanted), what, 20)
    scene.check_equal(what, [line.split('"')[3] for line in scene.read(facts.LAUNCHES).splitlines()], [*wanted])
    notes.unlink(missing_ok=True)


def click_agreement(scene) -> None:
    """The welcome page has the link in the second line of its text."""
    scene.window.click(BODY, down=0.75)


def click_support(scene) -> None:
    """The prompt has the link in the last line of its text."""
    scene.window.click(BODY, down=0.9)


def check_nowhere(scene, what: str, page: str) -> None:
    """The prompt for what went wrong comes up, and behind it is the page again."""
    wanted = text("INSTALLER_ERROR_UNKNOWN_TITLE")
    scene.wait_for(lambda: scene.window.look().names.get(TITLE) == wanted, f"the prompt of {what}", 20)
    view = scene.wait_for_page("prompt", what.replace(" ", "-"))
    scene.check_equal(f"{what}: a prompt tells of it", (view.names.get(BODY), view.names.get(ACTION1)),
                      (text("INSTALLER_ERROR_UNKNOWN"), text("installer_ok")))
    scene.window.click(ACTION1)
    scene.wait_for(lambda: scene.window.look().names.get(TITLE) != wanted, f"the end of the prompt of {what}", 20)
    scene.wait_for_page(page, what.replace(" ", "-") + "-behind")


def play(scene):
    scene.use_names()
    make_browser(scene)
    scene.script("before-files say error 25000")  # what the engine takes for a time-out

    scene.make_configurable()
    scene.override("[legal]\nurl = \"\"\n[support]\nurl = \"\"\n")
    run = scene.start_to_welcome("IsThickInstaller=no", log="no-addresses")
    click_agreement(scene)
    check_nowhere(scene, "no legal address", "welcome")
    scene.window.click(ACTION1)
    scene.wait_for_page("prompt", "time-out")
    click_support(scene)
    check_nowhere(scene, "no support address", "prompt")
    scene.window.click(ACTION1)
    run.finish(60)
    scene.uninstall()

    # Nothing tells that no browser starts; one that the next link starts is noted after any that did.
    scene.override("")
    run = scene.start_to_welcome("IsThickInstaller=no", log="download")
    click_agreement(scene)
    check_opened(scene, "without addresses nothing was opened, a download installer opens the agreement's", AGREEMENT)
    scene.wait_for_page("welcome", "behind-the-link")
    scene.cancel(run)

    run = scene.start_to_welcome()
    program, = scene.path("C:\\users\\root\\Temp").glob("*/.cr/PalisadeSetup.exe")
    program.with_name(FILE).touch()
    click_agreement(scene)
    folder = "C:\\" + str(program.parent.relative_to(scene.prefix.drive)).replace("/", "\\")
    check_opened(scene, "a full installer opens the file beside its program", f"{folder}\\{FILE}")
    scene.window.click(ACTION1)
    scene.wait_for_page("prompt", "time-out")
    click_support(scene)
    check_opened(scene, "the time-out's prompt opens the support site", SUPPORT)
    scene.window.click(ACTION1)
    run.finish(60)
