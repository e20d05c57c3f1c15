"""Links by mouse: the user agreement's address for a thin installer and its file for a thick one; the support site."""
import shutil

from harness.desktop.strings import text
from harness.desktop.window import ACTION1, BODY, TITLE
from harness.places import PROGRAMS
from harness.scenario import client

BROWSER = client.EXCHANGE + "\\browser.exe"
AGREEMENT = "https://legal.palisade.corvaneworks.example/legalapp/WEBTERMS/US/en/PC/"
SUPPORT = "https://support.palisade.corvaneworks.example/en/palisade/palisade-desktop"
FILE = "WEBTERMS_en.html"


def make_browser(scene) -> None:
    """Gives the machine a program that opens addresses and documents: it notes its command line."""
    shutil.copyfile(PROGRAMS / "client/PalisadeLauncher.exe", scene.machine.path(BROWSER))
    classes = "HKLM\\Software\\Classes\\"
    scene.machine.set_value(classes + ".html", "", "htmlfile")
    for kind in ("http", "https", "htmlfile"):
        scene.machine.set_value(f"{classes}{kind}\\shell\\open\\command", "", f"\"{BROWSER}\" \"%1\"")


def check_opened(scene, what: str, wanted: str) -> None:
    """What the browser has been asked to open since the last time."""
    scene.wait_for(scene.machine.notes, what, 20)
    scene.checks.equal(what, [note.split('"')[3] for note in scene.machine.notes()], [wanted])
    scene.machine.forget_notes()


def click_agreement(scene) -> None:
    """The welcome page has the link in the second line of its text."""
    scene.window.click(BODY, down=0.75)


def click_support(scene) -> None:
    """The prompt has the link in the last line of its text."""
    scene.window.wait_for_page("prompt", "time-out")
    scene.window.click(BODY, down=0.9)


def check_nowhere(scene, what: str, page: str) -> None:
    """The prompt for what went wrong is shown, and after it the page again."""
    wanted = text("INSTALLER_ERROR_UNKNOWN_TITLE")
    scene.wait_for(lambda: scene.window.look().names.get(TITLE) == wanted, f"the prompt of {what}", 20)
    view = scene.window.wait_for_page("prompt", what.replace(" ", "-"))
    scene.checks.equal(f"{what}: a prompt reports it", (view.names.get(BODY), view.names.get(ACTION1)),
                       (text("INSTALLER_ERROR_UNKNOWN"), text("installer_ok")))
    scene.window.click(ACTION1)
    scene.wait_for(lambda: scene.window.look().names.get(TITLE) != wanted, f"the end of the prompt of {what}", 20)
    scene.window.wait_for_page(page, what.replace(" ", "-") + "-after")


def play(scene):
    scene.window.use_names()
    make_browser(scene)
    scene.runs.script("before-files say error 25000")  # what the engine takes for a time-out

    scene.machine.make_configurable("[legal]\nurl = \"\"\n[support]\nurl = \"\"\n")
    run = scene.runs.start("IsThickInstaller=no", log="no-addresses", page="welcome")
    click_agreement(scene)
    check_nowhere(scene, "no legal address", "welcome")
    scene.window.click(ACTION1)
    click_support(scene)
    check_nowhere(scene, "no support address", "prompt")
    scene.window.click(ACTION1)
    run.finish()
    scene.runs.uninstall()

    # Nothing shows that no browser starts; one that the next link starts is noted after any that did.
    scene.machine.override("")
    run = scene.runs.start("IsThickInstaller=no", log="download", page="welcome")
    click_agreement(scene)
    check_opened(scene, "without addresses nothing was opened, a thin installer opens the agreement's", AGREEMENT)
    scene.window.wait_for_page("welcome", "after-the-link")
    scene.runs.cancel(run)

    run = scene.runs.start(page="welcome")
    program, = scene.machine.path("C:\\users\\root\\Temp").glob("*/.cr/PalisadeSetup.exe")
    program.with_name(FILE).touch()
    click_agreement(scene)
    folder = "C:\\" + str(program.parent.relative_to(scene.machine.prefix.drive)).replace("/", "\\")
    check_opened(scene, "a thick installer opens the file beside its program", f"{folder}\\{FILE}")
    scene.window.click(ACTION1)
    click_support(scene)
    check_opened(scene, "the time-out's prompt opens the support site", SUPPORT)
    scene.window.click(ACTION1)
    run.finish()
