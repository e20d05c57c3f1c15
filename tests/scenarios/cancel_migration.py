"""Cancelling the move from the older client: until its uninstaller starts it stays, later it is removed."""
from harness.desktop.window import ACTION1, ACTION2, CLOSE
from harness.scenario import client, older
from harness.scenario.machine import TEMP
from harness.scenario.registry import check_changes, listing
from harness.scenario.telemetry import Sent

UNINSTALLING_BASTION = 0x8038
CODE = "KESTREL_AUTHCODE=geheim"  # with it also a run whose question is not answered sends its events
ELEVATED = CODE, "PDX_MERIDIAN_MODE=1", "PDX_UNINSTALL_BASTION=1"
ROWS = [  # when it is cancelled, the run's arguments, whether the uninstaller runs then
    ("at-the-question", (CODE,), False),
    ("before-after-the-question", (CODE,), False),
    ("during-after-the-question", (CODE,), True),
    ("before-in-the-second-life", ELEVATED, False),
    ("during-in-the-second-life", ELEVATED, True),
    ("asked-in-the-second-life", ELEVATED, True),
]


def answer_late(scene, mark: str, sent: Sent) -> None:
    """The question whether to cancel is open until the removal has ended: that long the client's start waits."""
    scene.window.click(CLOSE, "prompt", f"{mark}-closed")
    scene.runs.mark(mark)
    scene.wait_for(lambda: "message" in sent.names()[1], "the report of the removal")
    scene.window.click(ACTION2)


def cancel(scene, when: str, arguments: tuple[str, ...], runs: bool) -> None:
    older.install(scene)
    older.plan(scene, f"finish 0 bui1.exe BastionUninstall.exe {when}")
    sent, before = Sent(scene), listing(scene)
    go_on = scene.window.hold_sender(UNINSTALLING_BASTION) if when.startswith("before") else \
        lambda: scene.runs.mark(when)
    run = scene.runs.start(*arguments, log=when, page="progress" if arguments == ELEVATED else "prompt")
    if when.endswith("after-the-question"):
        scene.window.click(ACTION1, "progress", when)
    if runs:
        older.wait_for_note(scene, "bui1.exe begins")
    if when.startswith("asked"):
        answer_late(scene, when, sent)
        run.finish(60)
    else:
        scene.runs.cancel(run, then=go_on)

    for left in ("conductor", "bui1"):
        scene.machine.path(f"{TEMP}\\{left}.exe").unlink(missing_ok=True)
    scene.checks.cancelled(run, f"{when}: the engine")
    # Whatever the run has started before notes it before this.
    scene.machine.start(client.LAUNCHER, when)
    scene.wait_for(lambda: [note for note in scene.machine.notes() if note.endswith(f" {when}")], "a later start")
    scene.checks.equal(f"{when}: these programs have run", scene.machine.notes()[:-1],
                       [older.UNINSTALLS, "bui1.exe begins", "bui1.exe ends"] if runs else [])
    older.check(scene, there=not runs, ClientPath=client.LAUNCHER, PrevClientPath="")
    check_changes(scene, when, before, older.GONE if runs else {})
    # The removal is reported, as the older client is gone.
    scene.checks.equal(f"{when}: the telemetry reports a cancel", sent.names(),
                       (["inst.sess.strt", "inst.inst.canc", "inst.sess.stop"], [*["message"] * runs, "install"]))


def play(scene):
    older.join_client(scene)
    for row in ROWS:
        cancel(scene, *row)
