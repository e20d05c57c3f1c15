"""On a machine with the client: the command line or a person says what happens; the recorded command removes it."""
import re

from harness.scenario import client as facts
from harness.desktop.window import ACTION1, ACTION2

LAUNCHER = facts.client_file("PalisadeLauncher.exe")
MARKED = [f"before-files dword {view} IsUnavailable Software\\Corvane Works\\Palisade Desktop" for view in (32, 64)]
THERE = f"before-files exists {LAUNCHER}"


def check_launched(scene, what: str) -> None:
    scene.wait_for(lambda: scene.read(facts.LAUNCHES), f"{what}: the client's start")
    scene.check_equal(f"{what}: the client starts to look for updates, once",
                      scene.read(facts.LAUNCHES).splitlines(), [f'"{LAUNCHER}" /checkForUpdate'])
    scene.path(facts.LAUNCHES).unlink()


def check_nothing_done(scene, run, what: str) -> None:
    scene.check_exit_code(run, 0, f"{what}: the engine")
    scene.check(f"{what}: nothing is detected or planned", not run.log.messages("OnDetectBegin") and
                not run.log.numbered("100") + run.log.numbered("200"))
    scene.check_equal(f"{what}: the library asks the engine to quit", run.log.numbered("500"),
                      ["Shutting down, exit code: 0x0"])
    scene.check_equal(f"{what}: the run ends in order", run.log.messages("OnShutdown"), ["Entering OnShutdown"])


def by_recorded_command(scene) -> None:
    """The client is marked unavailable, one of its programs that runs is ended, then files and values go."""
    connect = scene.prefix.start(facts.client_file("PalisadeConnect_microsoft.exe"), "--stay")
    scene.wait_for(lambda: scene.read(facts.LAUNCHES), "the start of PalisadeConnect_microsoft.exe")
    scene.script("\n".join([*MARKED, THERE]))
    command = scene.registry(facts.PRODUCT_KEY, "OriginalQuietUninstallString") or ""
    program, arguments = re.fullmatch(r'"(.*?)" (.*)', command).groups()
    run = scene.run(*arguments.split(), program=program, log="uninstall")
    scene.check_exit_code(run, 0, "the uninstall")
    scene.check_equal("the engine planned it", run.log.numbered("200"),
                      ["Plan begin, 1 packages, action: Uninstall"])
    scene.check_equal("IsUnavailable is 1 in both views when the package begins, and the files are still there",
                      [scene.answer(step) for step in (*MARKED, THERE)], ["1", "1", "yes"])
    # Ended while the package began, or it would have kept its file from going.
    scene.check("PalisadeConnect_microsoft.exe was stopped", connect.poll() is not None)
    scene.check_equal("InstallFolder is where the client was",
                      run.log.variables.get("InstallFolder"), facts.INSTALL_FOLDER + "\\")
    scene.check_gone()


def play(scene):
    scene.check_exit_code(scene.run("/quiet", log="install"), 0, "the install")
    # The prompt is answered by its default, which starts the client, unless the command line says not to ask.
    check_nothing_done(scene, scene.run("/quiet", "IGNORE_ALREADY_INSTALLED=1", log="ignored"), "ignored")
    scene.check("ignored: nothing starts", not scene.exists(facts.LAUNCHES))
    check_nothing_done(scene, scene.run("/quiet", "IGNORE_ALREADY_INSTALLED=0", log="quiet"), "quiet")
    check_launched(scene, "quiet")
    run = scene.start()
    view = scene.wait_for_page("prompt", "already-installed")
    scene.check("a person may launch or repair", {ACTION1, ACTION2} <= view.controls.keys(), sorted(view.controls))
    scene.window.click(ACTION1)
    check_nothing_done(scene, run.finish(60), "launched")
    check_launched(scene, "launched")
    scene.check_installed()
    by_recorded_command(scene)
