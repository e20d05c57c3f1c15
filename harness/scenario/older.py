"""The sample older client: what it leaves on a machine, and what its uninstaller leaves to others.

A scenario plans the temporary uninstallers with `plan`, a line each (harness/programs/client/OlderProgram.cpp has their form);
all programs note what they do in facts.LAUNCHES, between the starts of the client.
"""
import shutil
import subprocess

from harness.scenario import client as facts
from harness.places import BUILD

KEY = "HKLM\\Software\\Bastion"
FOLDER = "C:\\Program Files (x86)\\Bastion"
PROGRAM = FOLDER + "\\Bastion.exe"
PROGRAMS = ("Bastion", "BastionUninstall", "LoudUninstall", "OtherUninstall")
VALUES = {"InstallSuccesfull": "true", "BastionPath": PROGRAM}
UNINSTALLS = f"\"{FOLDER}\\BastionUninstall.exe\" /Silent"
# What its uninstaller leaves of the registry, as changes of a listing.
GONE = {(32, KEY, name): (value, None) for name, value in VALUES.items()}
QUITS = f"\"{PROGRAM}\" bastion://quit"


def install(scene, **values: str) -> None:
    """Puts it on the machine, with `values` beyond its own, in place of one that is there."""
    scene.path(FOLDER).mkdir(parents=True, exist_ok=True)
    for name in PROGRAMS:
        shutil.copyfile(BUILD / f"release/harness/client/{name}.exe", scene.path(f"{FOLDER}\\{name}.exe"))
    for name, value in (VALUES | values).items():
        scene.prefix.set_registry(KEY, name, value, view=32)


def start(scene, *arguments: str) -> subprocess.Popen:
    process = scene.prefix.start(PROGRAM, *arguments)
    scene.wait_for(lambda: "Bastion runs" in notes(scene), "the older client's start")
    return process


def plan(scene, *uninstallers: str) -> None:
    """What the uninstaller leaves the work to. What was noted before is forgotten."""
    scene.path(facts.EXCHANGE + "\\plan.txt").write_text("\n".join(uninstallers) + "\n")
    scene.path(facts.LAUNCHES).unlink(missing_ok=True)


def notes(scene) -> list[str]:
    return scene.read(facts.LAUNCHES).splitlines()


def wait_for_note(scene, note: str) -> list[str]:
    """What has been noted up to a note, which is waited for."""
    scene.wait_for(lambda: note in notes(scene), note)
    return notes(scene)[:notes(scene).index(note) + 1]


def check(scene, there: bool, **others: str) -> None:
    """Its files and its key's values, with those that others have there, and nothing more."""
    scene.check_equal("the older client's values are there" if there else "of its values no other is left",
                      scene.registry_values(KEY, 32), (VALUES if there else {}) | others)
    scene.check_equal("and its folder is " + ("there" if there else "gone"), scene.exists(FOLDER), there)
