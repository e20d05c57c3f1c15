"""Folders that the client may not go to are told so, each with its own prompt, and set nothing; a sibling passes."""
import re
import subprocess

from harness.desktop.strings import text
from harness.desktop.window import ACTION1, ACTION2, BODY, BROWSE, OPTIONS, PICTURE, TITLE

OLDER = "C:\\Old\\Palisade Desktop"  # where the older client stands
SMALL = "C:\\PalisadeTest\\small"    # what drive E: shows
GIB = 1 << 30
PAGE = 4096


def check_refused(scene, what: str, page: str, title: str, body: str) -> None:
    """The prompt that refuses a folder; OK leads back to the page."""
    view = scene.wait_for_page("prompt", what.replace(" ", "-"))
    names = tuple(view.names.get(control) for control in (TITLE, BODY, ACTION1))
    scene.check_equal(f"{what}: the prompt says why", names, (text(title), text(body), text("installer_ok")))
    scene.check(f"{what}: it has a picture and one button", PICTURE in view.controls and ACTION2 not in view.controls)
    scene.window.click(ACTION1)
    scene.wait_for_page(page, what.replace(" ", "-") + "-behind")


def check_untouched(scene, run, folders: list[str], given: list[str]) -> None:
    """The folders were looked at, in order; InstallFolder was set to `given` and nothing else, and nothing planned."""
    found = run.log.messages("BootstrapperDialog::ValidateInstallFolder")
    scene.check_equal("the folders are looked at", found, [f"folder=[{folder}]" for folder in folders])
    scene.check_equal("InstallFolder is set to no other", sets(run, "InstallFolder"), given)
    scene.check_equal("CreateDesktopShortcut is not set", sets(run, "CreateDesktopShortcut"), [])
    scene.check_equal("nothing is planned", run.log.numbered("200"), [])


def sets(run, variable: str) -> list[str]:
    """The values that the run's log tells a variable to be set to."""
    return re.findall(rf"Setting \w+ variable '{variable}' to value '(.*)'", run.log.text)


def given_folder(scene, what: str, folder: str, body: str) -> None:
    run = scene.start("InstallFolder=" + folder, log=what.replace(" ", "-"))
    scene.wait_for_page("welcome")
    scene.window.click(ACTION1)
    check_refused(scene, what, "welcome", "INSTALLER_ERROR_TITLE", body)
    scene.cancel(run)
    check_untouched(scene, run, [folder], [folder])


def mount(scene, size: int) -> None:
    """Gives drive E: that many free bytes."""
    subprocess.run(["mount", "-t", "tmpfs", "-o", f"size={size}", "tmpfs", scene.path(SMALL)], check=True)


def chosen_folders(scene) -> None:
    scene.path(OLDER + " 2").mkdir(parents=True)
    scene.path(OLDER + "\\Games").mkdir(parents=True)
    scene.path(OLDER + "\\Bastion.exe").touch()
    scene.prefix.set_registry("HKLM\\Software\\Bastion", "ClientPath", OLDER.upper() + "\\Bastion.exe", view=32)
    bastion = "INSTALLER_ERROR_TITLE", "INSTALLER_ERROR_BASTION_FOLDER"
    space = "INSTALLER_ERROR_DISK_SPACE_TITLE", "INSTALLER_ERROR_DISK_SPACE"

    run = scene.start()
    scene.wait_for_page("welcome")
    scene.window.click(OPTIONS)
    scene.wait_for_page("options")
    for what, chosen, reason in (("older folder", OLDER, bastion),
                                 ("under the older folder", OLDER + "\\Games", bastion),
                                 ("too little space", "E:\\", space)):
        scene.window.click(BROWSE)
        scene.choose_folder(chosen)
        check_refused(scene, what, "options", *reason)

    for chosen in (OLDER + " 2", "E:\\"):
        if chosen == "E:\\":
            subprocess.run(["umount", scene.path(SMALL)], check=True)
            mount(scene, GIB)
        scene.window.click(BROWSE)
        scene.choose_folder(chosen)
        scene.wait_for_page("options", "options-passed")
    scene.cancel(run)
    passed = [OLDER + " 2\\Palisade Desktop", "E:\\Palisade Desktop"]
    check_untouched(scene, run, [OLDER, OLDER + "\\Games\\Palisade Desktop", "E:\\Palisade Desktop", *passed], passed)


def play(scene):
    scene.use_names()
    given_folder(scene, "relative path", "Games\\Palisade", "INSTALLER_ERROR_RELATIVE_PATH")
    given_folder(scene, "network path", "\\\\server\\games\\Palisade", "INSTALLER_ERROR_NETWORK_PATH")
    scene.path(SMALL).mkdir()
    scene.prefix.add_drive("E", scene.path(SMALL))
    mount(scene, GIB - PAGE)
    try:
        chosen_folders(scene)
    finally:
        subprocess.run(["umount", scene.path(SMALL)], check=True)
