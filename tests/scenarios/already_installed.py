"""With the client installed, a run asks whether to start or repair it; the recorded command removes it."""
import re

from harness.desktop.window import ACTION1, ACTION2
from harness.scenario import client

MARKED = [f"before-files dword {view} IsUnavailable Software\\Corvane Works\\Palisade Desktop" for view in (32, 64)]
THERE = f"before-files exists {client.LAUNCHER}"


def check_launched(scene, what: str) -> None:
    scene.wait_for(scene.machine.notes, f"{what}: the client's start")
    scene.checks.equal(f"{what}: the client starts to look for updates, once", scene.machine.notes(), [client.STARTED])
    scene.machine.forget_notes()


def check_nothing_done(scene, run, what: str) -> None:
    scene.checks.nothing_planned(run, what)
    scene.checks.equal(f"{what}: no detection begins", run.log.messages("OnDetectBegin"), [])
    scene.checks.equal(f"{what}: the library asks the engine to quit", run.log.numbered("500"),
                       ["Shutting down, exit code: 0x0"])
    scene.checks.equal(f"{what}: the run ends in order", run.log.messages("OnShutdown"), ["Entering OnShutdown"])


def by_recorded_command(scene) -> None:
    """The client is marked unavailable, one of its programs that runs is ended, then files and values go."""
    connect = scene.machine.start_client("PalisadeConnect_microsoft.exe")
    scene.runs.script(*MARKED, THERE)
    command = scene.machine.value(client.PRODUCT_KEY, "OriginalQuietUninstallString") or ""
    program, arguments = re.fullmatch(r'"(.*?)" (.*)', command).groups()
    run = scene.runs.run(*arguments.split(), program=program, log="uninstall")
    scene.checks.equal("the engine planned it", run.log.numbered("200"), ["Plan begin, 1 packages, action: Uninstall"])
    scene.checks.equal("IsUnavailable is 1 in both views when the package begins, and the files are still there",
                       [scene.runs.answer(step) for step in (*MARKED, THERE)], ["1", "1", "yes"])
    # Ended before the package's files were removed: a running program would have kept its own.
    scene.checks.that("PalisadeConnect_microsoft.exe was ended", connect.poll() is not None)
    scene.checks.equal("InstallFolder is where the client was", run.log.variables.get("InstallFolder"),
                       client.INSTALL_FOLDER + "\\")
    scene.checks.gone()


def play(scene):
    scene.runs.install()
    # The prompt is answered by its default, which starts the client.
    check_nothing_done(scene, scene.runs.run("/quiet", "IGNORE_ALREADY_INSTALLED=0", log="quiet"), "quiet")
    check_launched(scene, "quiet")
    run = scene.runs.start(page="prompt")
    scene.checks.that("a person may launch or repair", {ACTION1, ACTION2} <= scene.window.look().controls.keys())
    scene.window.click(ACTION1)
    check_nothing_done(scene, run.ends(), "launched")
    check_launched(scene, "launched")
    scene.checks.installed()
    by_recorded_command(scene)
