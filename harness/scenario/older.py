"""The sample older client: what it leaves on a machine, and what its uninstaller leaves to others.

A scenario plans the temporary uninstallers with `plan`, a line each (harness/programs/client/OlderProgram.cpp has their
form). All programs note what they do in client.LAUNCHES, between the starts of the client.
"""
import shutil
import subprocess

from harness.places import PROGRAMS
from harness.scenario import client

KEY = "HKLM\\Software\\Bastion"
FOLDER = "C:\\Program Files (x86)\\Bastion"
PROGRAM = FOLDER + "\\Bastion.exe"
VALUES = {"InstallSuccesfull": "true", "BastionPath": PROGRAM}
UNINSTALLS = f"\"{FOLDER}\\BastionUninstall.exe\" /Silent"
# What its uninstaller removes from the registry, as changes of a listing.
GONE = {(32, KEY, name): (value, None) for name, value in VALUES.items()}
QUITS = f"\"{PROGRAM}\" bastion://quit"
# The maker's setting by which the person is asked about it.
ASKS = "[app]\nmeridian.promptBastionUninstall = true\n"


def install(scene, **values: str) -> None:
    """Puts it on the machine, with `values` besides its own, in place of one that is there."""
    scene.machine.path(FOLDER).mkdir(parents=True, exist_ok=True)
    for name in ("Bastion", "BastionUninstall", "LoudUninstall", "OtherUninstall"):
        shutil.copyfile(PROGRAMS / f"client/{name}.exe", scene.machine.path(f"{FOLDER}\\{name}.exe"))
    for name, value in (VALUES | values).items():
        scene.machine.set_value(KEY, name, value, view=32)


def join_client(scene, asks: bool = False) -> None:
    """A machine with both clients; on one of the maker's own the person is asked about the older one."""
    scene.services  # before the first run
    scene.window.use_names()
    if asks:
        scene.machine.make_configurable(ASKS)
    scene.runs.install()
    install(scene)


def start(scene, *arguments: str) -> subprocess.Popen:
    process = scene.machine.start(PROGRAM, *arguments)
    wait_for_note(scene, "Bastion runs")
    return process


def plan(scene, *uninstallers: str) -> None:
    """What the uninstaller leaves the work to. What was noted before is forgotten."""
    scene.machine.path(client.EXCHANGE + "\\plan.txt").write_text("\n".join(uninstallers) + "\n")
    scene.machine.forget_notes()


def wait_for_note(scene, note: str) -> list[str]:
    """What has been noted up to a note, which is waited for."""
    scene.wait_for(lambda: note in scene.machine.notes(), note)
    notes = scene.machine.notes()
    return notes[:notes.index(note) + 1]


def check(scene, there: bool, **others: str) -> None:
    """Its folder and its key's values, with those that others have there, and nothing more."""
    scene.checks.equal("the older client's values are there" if there else "of its values no other is left",
                       scene.machine.values(KEY, 32), (VALUES if there else {}) | others)
    scene.checks.equal("and its folder is " + ("there" if there else "gone"), scene.machine.exists(FOLDER), there)
