"""Each folder that the client may not be installed in has a prompt of its own and sets nothing; a sibling passes."""
import re
import subprocess

from harness.desktop.strings import text
from harness.desktop.window import ACTION1, ACTION2, BODY, BROWSE, OPTIONS, PICTURE, TITLE

OLDER = "C:\\Old\\Palisade Desktop"  # the older client's folder
SMALL = "C:\\PalisadeTest\\small"    # what drive E: shows
GIB = 1 << 30
PAGE = 4096
BASTION = "INSTALLER_ERROR_TITLE", "INSTALLER_ERROR_BASTION_FOLDER"
SPACE = "INSTALLER_ERROR_DISK_SPACE_TITLE", "INSTALLER_ERROR_DISK_SPACE"


def check_refused(scene, what: str, page: str, title: str, body: str) -> None:
    """The prompt that refuses a folder; OK leads back to the page."""
    picture = what.replace(" ", "-")
    view = scene.window.wait_for_page("prompt", picture)
    names = tuple(view.names.get(control) for control in (TITLE, BODY, ACTION1))
    scene.checks.equal(f"{what}: the prompt gives the reason", names, (text(title), text(body), text("installer_ok")))
    scene.checks.that(f"{what}: it has a picture and one button",
                      PICTURE in view.controls and ACTION2 not in view.controls)
    scene.window.click(ACTION1, page, picture + "-after")


def check_untouched(scene, run, folders: list[str], given: list[str]) -> None:
    """The folders were looked at, in order; InstallFolder was set to `given` and nothing else, and nothing planned."""
    found = run.log.messages("BootstrapperDialog::ValidateInstallFolder")
    scene.checks.equal("the folders are looked at", found, [f"folder=[{folder}]" for folder in folders])
    for variable, wanted in ("InstallFolder", given), ("CreateDesktopShortcut", []):
        sets = re.findall(rf"Setting \w+ variable '{variable}' to value '(.*)'", run.log.text)
        scene.checks.equal(f"{variable} is set to nothing else", sets, wanted)
    scene.checks.equal("nothing is planned", run.log.numbered("200"), [])


def given_folder(scene, what: str, folder: str, body: str) -> None:
    run = scene.runs.start_install("InstallFolder=" + folder, log=what.replace(" ", "-"))
    check_refused(scene, what, "welcome", "INSTALLER_ERROR_TITLE", body)
    check_untouched(scene, scene.runs.cancel(run), [folder], [folder])


def mount(scene, size: int) -> None:
    """Gives drive E: that many free bytes."""
    subprocess.run(["mount", "-t", "tmpfs", "-o", f"size={size}", "tmpfs", scene.machine.path(SMALL)], check=True)


def unmount(scene) -> None:
    subprocess.run(["umount", scene.machine.path(SMALL)], check=True)


def chosen_folders(scene) -> None:
    scene.machine.path(OLDER + " 2").mkdir(parents=True)
    scene.machine.path(OLDER + "\\Games").mkdir(parents=True)
    scene.machine.path(OLDER + "\\Bastion.exe").touch()
    scene.machine.set_value("HKLM\\Software\\Bastion", "ClientPath", OLDER.upper() + "\\Bastion.exe", view=32)

    run = scene.runs.start(page="welcome")
    scene.window.click(OPTIONS, "options")
    for what, chosen, reason in (("older folder", OLDER, BASTION),
                                 ("under the older folder", OLDER + "\\Games", BASTION),
                                 ("too little space", "E:\\", SPACE)):
        scene.window.click(BROWSE)
        scene.window.choose_folder(chosen)
        check_refused(scene, what, "options", *reason)

    for chosen in (OLDER + " 2", "E:\\"):
        if chosen == "E:\\":
            unmount(scene)
            mount(scene, GIB)
        scene.window.click(BROWSE)
        scene.window.choose_folder(chosen)
        scene.window.wait_for_page("options", "options-passed")
    scene.runs.cancel(run)
    passed = [OLDER + " 2\\Palisade Desktop", "E:\\Palisade Desktop"]
    check_untouched(scene, run, [OLDER, OLDER + "\\Games\\Palisade Desktop", "E:\\Palisade Desktop", *passed], passed)


def play(scene):
    scene.window.use_names()
    given_folder(scene, "relative path", "Games\\Palisade", "INSTALLER_ERROR_RELATIVE_PATH")
    given_folder(scene, "network path", "\\\\server\\games\\Palisade", "INSTALLER_ERROR_NETWORK_PATH")
    scene.machine.path(SMALL).mkdir()
    scene.machine.add_drive("E", scene.machine.path(SMALL))
    mount(scene, GIB - PAGE)
    try:
        chosen_folders(scene)
    finally:
        unmount(scene)
