"""An upgrade beside the client: the person lets the older one go, a second life removes it, the client starts."""
from harness.scenario import older
from harness.scenario.registry import check_changes, listing
from harness.scenario.telemetry import (INSTALL_SUCCESS, OVERLAY, SESSION_STOP, TALLY_INSTALL, check_telemetry,
                                        command_line, message, overlay, session_of, session_start, told_so_far)
from harness.scenario import client as facts
from harness.desktop.strings import text
from harness.desktop.window import ACTION1, CLOSE, PROGRESS, TITLE

LAUNCHER = facts.client_file("PalisadeLauncher.exe")
REMOVING = "INSTALLER_MODAL_UNINSTALLING_BASTION_TITLE"


def removal(scene) -> None:
    """The page while the uninstaller is waited for lives, and the person who wants to close it can go on."""
    scene.wait_for(lambda: scene.window.page() == "progress", "the removal's page")
    view = scene.wait_for_page("progress", "removing")
    scene.check_equal("the page tells of the removal", view.names.get(TITLE), text(REMOVING))
    older.wait_for_note(scene, "bui1.exe begins")
    shots = set()
    scene.wait_for(lambda: shots.add(scene.window.pixels(view.controls[PROGRESS])) or len(shots) > 3,
                   "the movement of the bar", 10)
    scene.window.click(CLOSE)
    scene.wait_for_page("prompt", "close-prompt")
    scene.window.click(ACTION1)
    again = scene.wait_for_page("progress", "removing-again")
    scene.check_equal("behind the closed question too", again.names.get(TITLE), text(REMOVING))


def play(scene):
    scene.services  # there before the first run
    scene.use_names()
    scene.make_configurable()
    scene.override("[app]\nmeridian.promptBastionUninstall = true\n")
    scene.check_exit_code(scene.run("/quiet", log="install"), 0, "the install")

    older.install(scene)
    older.plan(scene, "finish 0 bui1.exe BastionUninstall.exe go-on")
    told, before = told_so_far(scene), listing(scene)
    run = scene.start("PDX_MERIDIAN_UPGRADE=1", "PDX_MERIDIAN_COHORT=blue", "KESTREL_AUTHCODE=geheim")
    scene.wait_for_page("older client", "asked")
    scene.window.click(ACTION1)
    removal(scene)
    scene.mark("go-on")
    run.finish(90)

    scene.check_exit_code(run, 0)
    starts = [line for line in run.log.messages("OnStartup") if line.startswith("[STARTUP]")]
    scene.check("the library starts twice, in one process", len(starts) == 2 and len(set(starts)) == 1, starts)
    scene.check("it detects and plans nothing", not run.log.numbered("100") and not run.log.numbered("200"))
    client = f'"{LAUNCHER}" /checkForUpdate --authCode=geheim'
    scene.check_equal("the client starts when the temporary uninstaller has ended, with the person's code",
                      older.wait_for_note(scene, client),
                      [older.UNINSTALLS, "bui1.exe begins", "bui1.exe ends", client])
    older.check(scene, there=False, ClientPath=LAUNCHER, PrevClientPath="")
    check_changes(scene, "the move", before, older.GONE)
    scene.check_equal("the client stays", scene.client_state()[0], set(facts.CLIENT_FILES))
    session = command_line(run).replace("geheim", "####")
    lives = [session_start(session, with_authcode=True)] * 2
    asked = overlay(OVERLAY[0], cohort="blue")
    check_telemetry(scene, thin=False, since=told, development=True, session=session_of(run), first_life=len(asked),
                    brisk=[*lives, INSTALL_SUCCESS, SESSION_STOP],
                    tally=[*asked, message("meridian_completed_uninstall", "impression", "blue"), TALLY_INSTALL[1]])
