"""An upgrade beside the client: the person keeps the older one, which is asked to end before the client starts."""
from harness.desktop.window import ACTION2
from harness.scenario import client, older
from harness.scenario.registry import check_changes, listing
from harness.scenario.telemetry import INSTALL_SUCCESS, OVERLAY, TALLY_INSTALL, Expected, Sent, overlay

CLIENT = client.STARTED + " --authCode=geheim"


def not_now(scene, log: str, *bastion: str, quits: list[str]) -> None:
    sent = Sent(scene)
    older.plan(scene)
    process = older.start(scene, *bastion)
    run = scene.runs.start("PDX_MERIDIAN_UPGRADE=1", "KESTREL_AUTHCODE=geheim", log=log, page="older client")
    scene.window.click(ACTION2)
    run.ends(0, f"{log}: the engine")
    older.wait_for_note(scene, CLIENT)
    scene.checks.equal(f"{log}: these programs run, one after the other", scene.machine.notes(),
                       ["Bastion runs", older.QUITS, *quits, CLIENT])
    scene.checks.nothing_planned(run, log)
    older.check(scene, there=True, ClientPath=client.LAUNCHER, PrevClientPath="")
    sent.check(Expected(run, start={"with_authcode": True}, development=True, brisk=[INSTALL_SUCCESS],
                        tally=[*overlay(OVERLAY[1]), TALLY_INSTALL[1]]))
    if not quits:
        scene.checks.that("one that does not listen still runs", process.poll() is None)
        process.kill()


def play(scene):
    older.join_client(scene, asks=True)
    before = listing(scene)
    not_now(scene, "engine", quits=["Bastion quits"])
    not_now(scene, "deaf", "--deaf", quits=[])  # after half a minute
    check_changes(scene, "both", before, {})
