"""Runs that go otherwise, as both services are told: wrong bytes, all clicks, a session's end, failures, uninstalls."""
from harness.building import bundle
from harness.scenario.telemetry import (ERROR_SAID, FAILED, INSTALL_START, SESSION_STOP, START_PAGE, TALLY_INSTALL,
                                        TRACKING_ID, UNINSTALL_CANCEL, UNINSTALL_START, UNINSTALL_SUCCESS, WRONG_HASH,
                                        check_attempts, check_telemetry, command_line, download_start,
                                        download_success, script_failure, session_start, start_page, tally_download,
                                        tally_install, tally_uninstall, told_so_far, wrong_bytes)
from harness.scenario import client as facts
from harness.places import PACKAGE
from harness.desktop.window import ACTION1, BODY, CLOSE, OPTIONS

REMOVED = "before-files say actiondata CA_MSG_BASTION_UNINSTALL_SUCCESS"  # of an install alone
COHORT = "PDX_MERIDIAN_COHORT=blue"
VARIABLES = ["HARRIER_ENABLE=h", "IGNORE_ALREADY_INSTALLED=0", "PDX_LAUNCH_CLIENT=l", "KESTREL_AUTHCODE=geheim"]
TOLD_VARIABLES = {"harrier": "h", "ignore_installed": "0", "launch": "l", "with_authcode": True}


def wrong_payload(scene) -> None:
    """The host gives bytes of the right number: the engine fetches them three times, then the run fails."""
    wrong = scene.path(facts.EXCHANGE + "\\wrong.msi")
    wrong.write_bytes(bytes(PACKAGE.stat().st_size))
    link = scene.make_thin_bundle()
    scene.services.download.serve(f"/client/{bundle.PACKAGE_ID}", wrong)
    run = scene.run("/quiet")
    scene.check_exit_code(run, 1, "with wrong bytes the engine")
    brisk, tally = [], []
    for recommendation in (10, 10, 0):
        brisk += [download_start(link), download_success(link, PACKAGE.stat().st_size),
                  wrong_bytes("inst.dnld.erro", recommendation)]
        tally += [tally_download("start", "new", percent=0), tally_download("finish", "success", percent=100.0),
                  tally_download("error", WRONG_HASH)]
    check_telemetry(scene, thin=True, tally=[*tally, tally_install("error", WRONG_HASH)],
                    brisk=[session_start(command_line(run)), *brisk,
                           wrong_bytes("inst.inst.fail", 10, report_id=TRACKING_ID), SESSION_STOP])
    check_attempts(scene, 3, each=3)
    scene.check("its report is of the thin variant", b"<launchSource>thin<" in scene.services.requests("reports")[0].raw)
    scene.make_bundle()


def clicks_and_logout(scene) -> None:
    """All that the welcome page offers is clicked; then the Windows session ends while the package runs."""
    told = told_so_far(scene)
    scene.script("""
        before-files mark under-way
        before-files wait-for go-on
        before-files progress 20 50
    """)
    run = scene.start_to_welcome(COHORT, *VARIABLES, log="clicks")
    scene.window.click(BODY, down=0.75)  # the user agreement; the machine has no program to open it with
    scene.window.click(CLOSE)
    scene.wait_for_page("prompt", "first-prompt")
    scene.window.click(ACTION1)
    scene.wait_for_page("welcome", "welcome-again")
    scene.window.click(OPTIONS)
    scene.wait_for_page("options")
    scene.window.click(ACTION1)
    scene.wait_for_mark("under-way", "the package's action")
    scene.check_equal("the dialog allows the session to end", scene.window.command("ask dialog 0x11 0 0"), "1")
    scene.cancel(run, then=lambda: scene.mark("go-on"))
    scene.check_cancelled(run, "at the session's end the engine", "logout_exit")
    _, agreement, options, close = START_PAGE
    check_telemetry(scene, thin=False, since=told,
                    brisk=[session_start(command_line(run).replace("geheim", "####"), **TOLD_VARIABLES), INSTALL_START,
                           ("inst.inst.canc", {"cnst": "logout_exit"}), SESSION_STOP],
                    tally=[*start_page(agreement, close, options, cohort="blue"), TALLY_INSTALL[0],
                           tally_install("cancel", "logout_exit")])
    posts = b"".join(post.raw for post in scene.services.requests())
    scene.check("the authorisation code is not told", b"geheim" not in posts)


def failing_package(scene) -> None:
    """The package says an error that names the profile, then fails."""
    told = told_so_far(scene)
    scene.script("""
        before-files say error Cannot open C:\\users\\root\\Temp
        before-files fail 1603
    """)
    run = scene.run("/quiet", log="failing")
    scene.check_exit_code(run, 1, "with a failing package the engine")
    check_telemetry(scene, thin=False, since=told,
                    brisk=[session_start(command_line(run)), INSTALL_START,
                           *script_failure("inst", "Cannot open C:\\users\\####\\Temp"), SESSION_STOP],
                    tally=[TALLY_INSTALL[0], ("install", {"status": "error", "status_code": ERROR_SAID}),
                           tally_install("error", FAILED), tally_install("error", ERROR_SAID)])


def uninstalls(scene) -> None:
    """One that is closed where it asks, one that fails, one that succeeds."""
    told = told_so_far(scene)
    run = scene.start("/uninstall", log="uninstall-closed")
    scene.wait_for_page("prompt", "confirm")
    scene.window.click(CLOSE)
    run.finish(60)
    scene.check_cancelled(run, "with the prompt closed the engine")
    scene.check_installed()
    check_telemetry(scene, thin=False, since=told,
                    brisk=[session_start(command_line(run), action=3), UNINSTALL_CANCEL, SESSION_STOP],
                    tally=[tally_uninstall("cancel", status_code="user_action")])

    told = told_so_far(scene)
    scene.script(f"""
        {REMOVED}
        before-files say error Cannot remove
        before-files fail 1603
    """)
    run = scene.run("/uninstall", "/quiet", log="uninstall-failing")
    scene.check_exit_code(run, 1, "a failing uninstall")
    said = {"msiactdata": {"imsg": 9 << 24, "flag": 0, "mesg": REMOVED.split()[-1], "args": str, "reco": 0}}
    check_telemetry(scene, thin=False, since=told,
                    brisk=[session_start(command_line(run), action=3), UNINSTALL_START,
                           *script_failure("uinst", "Cannot remove", **said), SESSION_STOP],
                    tally=[tally_uninstall("start"), ("uninstall", {"status": "error", "status_code": ERROR_SAID}),
                           tally_uninstall("error", status_code=FAILED),
                           tally_uninstall("error", status_code=ERROR_SAID)])

    told = told_so_far(scene)
    scene.script(REMOVED)  # means nothing here
    run = scene.run("/uninstall", "/quiet", log="uninstall")
    scene.check_exit_code(run, 0, "an uninstall")
    scene.check_gone()
    check_telemetry(scene, thin=False, since=told,
                    brisk=[session_start(command_line(run), action=3), UNINSTALL_START, UNINSTALL_SUCCESS,
                           SESSION_STOP],
                    tally=[tally_uninstall("start"), tally_uninstall("finish", status_code="success")])


def play(scene):
    wrong_payload(scene)
    clicks_and_logout(scene)
    failing_package(scene)
    scene.script("")
    scene.check_exit_code(scene.run("/quiet", log="install"), 0, "an install")
    uninstalls(scene)
