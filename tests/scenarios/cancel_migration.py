"""Cancelling the move from the older client: until its uninstaller starts it stays, later it goes; no client starts."""
from harness.scenario import older
from harness.scenario.registry import check_changes, listing
from harness.scenario.telemetry import names_since, told_so_far
from harness.scenario import client as facts
from harness.desktop.window import ACTION1, ACTION2, CLOSE
from harness.scenario.scene import TEMP

UNINSTALLING_BASTION = 0x8038
LAUNCHER = facts.client_file("PalisadeLauncher.exe")
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


def answer_late(scene, mark: str, told: dict[str, int]) -> None:
    """The question whether to cancel is open until the removal has ended: that long the client's start waits."""
    scene.window.click(CLOSE)
    scene.wait_for_page("prompt", f"{mark}-closed")
    scene.mark(mark)
    scene.wait_for(lambda: "message" in names_since(scene, told)[1], "the report of the removal")
    scene.window.click(ACTION2)


def cancel(scene, when: str, arguments: tuple[str, ...], runs: bool) -> None:
    older.install(scene)
    older.plan(scene, f"finish 0 bui1.exe BastionUninstall.exe {when}")
    told, before = told_so_far(scene), listing(scene)
    go_on = scene.hold_sender(UNINSTALLING_BASTION) if when.startswith("before") else lambda: scene.mark(when)
    run = scene.start(*arguments, log=when)
    if arguments != ELEVATED:
        scene.wait_for_page("prompt", f"{when}-asked")
    if when != "at-the-question":
        if arguments != ELEVATED:
            scene.window.click(ACTION1)
        scene.wait_for_page("progress", when)
    if runs:
        older.wait_for_note(scene, "bui1.exe begins")
    if when.startswith("asked"):
        answer_late(scene, when, told)
        run.finish(60)
    else:
        scene.cancel(run, then=go_on)

    for left in ("conductor", "bui1"):
        scene.path(f"{TEMP}\\{left}.exe").unlink(missing_ok=True)
    scene.check_cancelled(run, f"{when}: the engine")
    # Whatever the run has started before notes it before this.
    scene.prefix.start(LAUNCHER, when)
    scene.wait_for(lambda: older.notes(scene)[-1:] and older.notes(scene)[-1].endswith(f" {when}"), "a later start")
    scene.check_equal(f"{when}: these programs have run", older.notes(scene)[:-1],
                      [older.UNINSTALLS, "bui1.exe begins", "bui1.exe ends"] if runs else [])
    older.check(scene, there=not runs, ClientPath=LAUNCHER, PrevClientPath="")
    check_changes(scene, when, before, older.GONE if runs else {})
    # The removal is reported, as the older client is gone.
    scene.check_equal(f"{when}: the telemetry reports a cancel", names_since(scene, told),
                      (["inst.sess.strt", "inst.inst.canc", "inst.sess.stop"], [*["message"] * runs, "install"]))


def play(scene):
    scene.services  # there before the first run
    scene.use_names()
    scene.check_exit_code(scene.run("/quiet", log="install"), 0, "the install")
    for row in ROWS:
        cancel(scene, *row)
