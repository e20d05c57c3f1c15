"""An upgrade beside the client: the person accepts the removal of the older one; the library, loaded again, does it."""
from harness.desktop.strings import text
from harness.desktop.window import ACTION1, CLOSE, PROGRESS, TITLE
from harness.scenario import client, older
from harness.scenario.registry import check_changes, listing
from harness.scenario.telemetry import INSTALL_SUCCESS, OVERLAY, TALLY_INSTALL, Expected, Sent, message, overlay

REMOVING = "INSTALLER_MODAL_UNINSTALLING_BASTION_TITLE"
CLIENT = client.STARTED + " --authCode=geheim"


def removal(scene) -> None:
    """While the uninstaller is waited for, the page's bar moves, and a person who asks to close it can go on."""
    scene.wait_for(lambda: scene.window.page() == "progress", "the removal's page")
    view = scene.window.wait_for_page("progress", "removing")
    scene.checks.equal("the page names the removal", view.names.get(TITLE), text(REMOVING))
    older.wait_for_note(scene, "bui1.exe begins")
    scene.window.wait_for_movement(PROGRESS)
    scene.window.click(CLOSE, "prompt", "close-prompt")
    again = scene.window.click(ACTION1, "progress", "removing-again")
    scene.checks.equal("after the closed question too", again.names.get(TITLE), text(REMOVING))


def play(scene):
    older.join_client(scene, asks=True)
    older.plan(scene, "finish 0 bui1.exe BastionUninstall.exe go-on")
    sent, before = Sent(scene), listing(scene)
    run = scene.runs.start("PDX_MERIDIAN_UPGRADE=1", "PDX_MERIDIAN_COHORT=blue", "KESTREL_AUTHCODE=geheim",
                           page="older client")
    scene.window.click(ACTION1)
    removal(scene)
    scene.runs.mark("go-on")
    run.ends()

    starts = [line for line in run.log.messages("OnStartup") if line.startswith("[STARTUP]")]
    scene.checks.that("the library starts twice, in one process", len(starts) == 2 and len(set(starts)) == 1, starts)
    scene.checks.nothing_planned(run, "the move")
    scene.checks.equal("the client starts when the temporary uninstaller has ended, with the person's code",
                       older.wait_for_note(scene, CLIENT),
                       [older.UNINSTALLS, "bui1.exe begins", "bui1.exe ends", CLIENT])
    older.check(scene, there=False, ClientPath=client.LAUNCHER, PrevClientPath="")
    check_changes(scene, "the move", before, older.GONE)
    scene.checks.files_there()
    asked = overlay(OVERLAY[0], cohort="blue")
    completed = message("meridian_completed_uninstall", "impression", "blue")
    sent.check(Expected(run, lives=2, start={"with_authcode": True}, development=True, first_life=len(asked),
                        brisk=[INSTALL_SUCCESS], tally=[*asked, completed, TALLY_INSTALL[1]]))
