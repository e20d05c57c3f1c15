"""An upgrade beside the client: the person keeps the older one, which is asked to end before the client starts."""
from harness.desktop.window import ACTION2
from harness.scenario import client, older
from harness.scenario.registry import check_changes, listing
from harness.scenario.telemetry import (INSTALL_CANCEL, INSTALL_SUCCESS, OVERLAY, TALLY_INSTALL, Expected, Sent,
                                        overlay, tally_install)

CLIENT = client.STARTED + " --authCode=geheim"
UPGRADE = "PDX_MERIDIAN_UPGRADE=1", "KESTREL_AUTHCODE=geheim"


def check_kept(scene, run, what: str, sent: Sent, notes: list[str], clicks: list[str], brisk: tuple,
               tally: tuple) -> None:
    if CLIENT in notes:
        older.wait_for_note(scene, CLIENT)
    scene.checks.equal(f"{what}: these programs run, one after the other", scene.machine.notes(), notes)
    scene.checks.nothing_planned(run, what)
    older.check(scene, there=True, ClientPath=client.LAUNCHER, PrevClientPath="")
    sent.check(Expected(run, start={"with_authcode": True}, development=True, brisk=[brisk],
                        tally=[*overlay(*clicks), tally]))


def not_now(scene, log: str, *bastion: str, quits: list[str], runs: bool = True) -> None:
    sent = Sent(scene)
    older.plan(scene)
    process = older.start(scene, *bastion) if runs else None
    run = scene.runs.start(*UPGRADE, log=log, page="older client")
    scene.window.click(ACTION2)
    run.ends(0, f"{log}: the engine")
    asked = ["Bastion runs", older.QUITS, *quits] if runs else []
    check_kept(scene, run, log, sent, [*asked, CLIENT], [OVERLAY[1]], INSTALL_SUCCESS, TALLY_INSTALL[1])
    if runs and not quits:
        scene.checks.that("one that does not listen runs on", process.poll() is None)
        process.kill()


def cancelled(scene) -> None:
    """The window is closed in place of an answer."""
    sent = Sent(scene)
    older.plan(scene)
    run = scene.runs.cancel(scene.runs.start(*UPGRADE, log="cancelled", page="older client"))
    scene.checks.cancelled(run, "cancelled: the engine")
    check_kept(scene, run, "cancelled", sent, [], [OVERLAY[2], OVERLAY[1]], INSTALL_CANCEL,
               tally_install("cancel", "user_action"))


def elevated_without_removal(scene) -> None:
    """The second half of the move, given the answer to leave the older client."""
    older.plan(scene)
    scene.runs.run("PDX_MERIDIAN_MODE=1", "PDX_UNINSTALL_BASTION=0", log="elevated")
    scene.checks.equal("elevated: the client starts at once", older.wait_for_note(scene, client.STARTED + " "),
                       [client.STARTED + " "])
    older.check(scene, there=True, ClientPath=client.LAUNCHER, PrevClientPath="")


def play(scene):
    older.join_client(scene, asks=True)
    before = listing(scene)
    cancelled(scene)
    elevated_without_removal(scene)
    not_now(scene, "idle", quits=[], runs=False)
    not_now(scene, "engine", quits=["Bastion quits"])
    not_now(scene, "deaf", "--deaf", quits=[])  # after half a minute
    check_changes(scene, "all five", before, {})
