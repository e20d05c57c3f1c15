"""The client starts behind the temporary uninstallers; a late one, and what looks alike, is not waited for."""
from harness import older
from harness.checking.records import check_changes, listing
from harness.client import facts
from harness.seeing.window import ACTION1

LAUNCHER = facts.client_file("PalisadeLauncher.exe")
# The library looks each second, for the last time 2 seconds behind the end of an uninstaller: what begins and ends
# between two looks is not seen.
PLAN = ["finish 0 bui1.exe BastionUninstall.exe 2500",
        "finish 1700 BUI2.exe LoudUninstall.exe 3500",
        "stay 0 sweep.exe BastionUninstall.exe go-on",
        "stay 0 bui3.exe OtherUninstall.exe go-on",
        "stay 4000 bui4.exe BastionUninstall.exe go-on"]


def play(scene):
    scene.check_exit_code(scene.run("/quiet", log="install"), 0, "the install")
    older.install(scene)
    older.plan(scene, *PLAN)
    before = listing(scene)
    run = scene.start()
    scene.wait_for_page("prompt", "already-installed")
    scene.window.click(ACTION1)
    scene.wait_for_page("progress", "removing")
    run.finish(45)
    scene.check_exit_code(run, 0)
    older.wait_for_note(scene, "bui4.exe begins")
    client = f'"{LAUNCHER}" /checkForUpdate '
    notes = older.wait_for_note(scene, client)
    scene.check_equal("the client starts behind the two that are waited for",
                      [note for note in notes if note.startswith("bui1") or note.startswith("BUI2") or note == client],
                      ["bui1.exe begins", "bui1.exe ends", "BUI2.exe begins", "BUI2.exe ends", client])
    scene.check("while others are at work", {"sweep.exe begins", "bui3.exe begins"} <= set(notes), notes)
    scene.mark("go-on")
    for name in ("sweep", "bui3", "bui4"):
        older.wait_for_note(scene, name + ".exe ends")
    found = [line.text for line in run.log.library_lines() if line.function == "isBastionTempUninstallerRunning"]
    scene.check_equal("those two are found, in turn", [text.rsplit("\\", 1)[-1] for text in found],
                      ["bui1.exe", "BUI2.exe"])
    older.check(scene, there=False, ClientPath=LAUNCHER, PrevClientPath="")
    check_changes(scene, "the removal", before, older.GONE)
