"""An upgrade beside the client: the person keeps the older one, which is asked to end before the client starts."""
from harness.scenario import older
from harness.scenario.registry import check_changes, listing
from harness.scenario.telemetry import (INSTALL_CANCEL, INSTALL_SUCCESS, OVERLAY, SESSION_STOP, TALLY_INSTALL,
                                        check_telemetry, command_line, overlay, session_start, tally_install,
                                        told_so_far)
from harness.scenario import client as facts
from harness.desktop.window import ACTION2

LAUNCHER = facts.client_file("PalisadeLauncher.exe")
CLIENT = f'"{LAUNCHER}" /checkForUpdate --authCode=geheim'
UPGRADE = "PDX_MERIDIAN_UPGRADE=1", "KESTREL_AUTHCODE=geheim"


def start_asked(scene, log: str):
    run = scene.start(*UPGRADE, log=log)
    scene.wait_for_page("older client", log)
    return run


def check_kept(scene, run, what: str, told: dict[str, int], notes: list[str], clicks: list[str], brisk: tuple,
               tally: tuple) -> None:
    if CLIENT in notes:
        older.wait_for_note(scene, CLIENT)
    scene.check_equal(f"{what}: these programs run, one after the other", older.notes(scene), notes)
    scene.check("nothing is detected or planned", not run.log.numbered("100") and not run.log.numbered("200"))
    older.check(scene, there=True, ClientPath=LAUNCHER, PrevClientPath="")
    check_telemetry(scene, thin=False, since=told, development=True,
                    brisk=[session_start(command_line(run).replace("geheim", "####"), with_authcode=True), brisk,
                           SESSION_STOP], tally=[*overlay(*clicks), tally])


def not_now(scene, log: str, *bastion: str, quits: list[str], runs: bool = True) -> None:
    told = told_so_far(scene)
    older.plan(scene)
    process = older.start(scene, *bastion) if runs else None
    run = start_asked(scene, log)
    scene.window.click(ACTION2)
    run.finish(90)
    scene.check_exit_code(run, 0, f"{log}: the engine")
    asked = ["Bastion runs", older.QUITS, *quits] if runs else []
    check_kept(scene, run, log, told, [*asked, CLIENT], [OVERLAY[1]], INSTALL_SUCCESS, TALLY_INSTALL[1])
    if runs and not quits:
        scene.check("one that does not listen runs on", process.poll() is None)
        process.kill()


def cancelled(scene) -> None:
    """The window is closed in place of an answer."""
    told = told_so_far(scene)
    older.plan(scene)
    run = start_asked(scene, "cancelled")
    scene.cancel(run)
    scene.check_cancelled(run, "cancelled: the engine")
    check_kept(scene, run, "cancelled", told, [], [OVERLAY[2], OVERLAY[1]], INSTALL_CANCEL,
               tally_install("cancel", "user_action"))


def raised_without_removal(scene) -> None:
    """The second half of the move, told to leave the older client."""
    older.plan(scene)
    run = scene.run("PDX_MERIDIAN_MODE=1", "PDX_UNINSTALL_BASTION=0", log="raised")
    scene.check_exit_code(run, 0, "raised: the engine")
    client = f'"{LAUNCHER}" /checkForUpdate '
    scene.check_equal("raised: the client starts at once", older.wait_for_note(scene, client), [client])
    older.check(scene, there=True, ClientPath=LAUNCHER, PrevClientPath="")


def play(scene):
    scene.services  # there before the first run
    scene.make_configurable()
    scene.override("[app]\nmeridian.promptBastionUninstall = true\n")
    scene.check_exit_code(scene.run("/quiet", log="install"), 0, "the install")
    older.install(scene)
    before = listing(scene)
    cancelled(scene)
    raised_without_removal(scene)
    not_now(scene, "idle", quits=[], runs=False)
    not_now(scene, "engine", quits=["Bastion quits"])
    not_now(scene, "deaf", "--deaf", quits=[])  # after half a minute
    check_changes(scene, "all five", before, {})
