"""The client starts after the uninstaller and its temporary ones; it waits for no late one and no lookalike."""
from harness.desktop.window import ACTION1
from harness.scenario import client, older
from harness.scenario.registry import check_changes, listing

# The uninstaller alone takes longer than the time of quiet, in which the library looks each second: the gap of one
# second leaves room for a look before it and for one after it.
PLAN = ["work 5000 - - -",
        "finish 0 bui1.exe BastionUninstall.exe bui1-found",
        "finish 1000 BUI2.exe LoudUninstall.exe BUI2-found",
        "stay 0 sweep.exe BastionUninstall.exe go-on",
        "stay 0 bui3.exe OtherUninstall.exe go-on",
        "stay 4000 bui4.exe BastionUninstall.exe go-on"]
STARTED = client.STARTED + " "


def found(log) -> list[str]:
    """The temporary uninstallers that the library has found."""
    return [text.rsplit("\\", 1)[-1] for text in log.texts("isBastionTempUninstallerRunning")]


def play(scene):
    older.join_client(scene)
    older.plan(scene, *PLAN)
    before = listing(scene)
    run = scene.runs.start(page="prompt")
    scene.window.click(ACTION1, "progress", "removing")
    for name in "bui1", "BUI2":
        scene.wait_for(lambda name=name: name + ".exe" in found(run.log_so_far()), f"the look at {name}")
        scene.runs.mark(name + "-found")
    run.ends(bound=45)
    older.wait_for_note(scene, "bui4.exe begins")
    notes = older.wait_for_note(scene, STARTED)
    scene.checks.equal("the client starts after those that are waited for",
                       [note for note in notes if note.startswith(("bui1", "BUI2")) or note == STARTED],
                       ["bui1.exe begins", "bui1.exe ends", "BUI2.exe begins", "BUI2.exe ends", STARTED])
    scene.checks.that("while others are at work", {"sweep.exe begins", "bui3.exe begins"} <= set(notes), notes)
    scene.runs.mark("go-on")
    for name in ("sweep", "bui3", "bui4"):
        older.wait_for_note(scene, name + ".exe ends")
    scene.checks.equal("those two are found, in turn", found(run.log), ["bui1.exe", "BUI2.exe"])
    older.check(scene, there=False, ClientPath=client.LAUNCHER, PrevClientPath="")
    check_changes(scene, "the removal", before, older.GONE)
