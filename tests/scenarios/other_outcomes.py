"""Events of runs with other outcomes: wrong bytes, all clicks, a session's end, failures, uninstalls."""
from harness.building import bundle
from harness.desktop.window import ACTION1, BODY, CLOSE, OPTIONS
from harness.places import PACKAGE
from harness.scenario import client
from harness.scenario.telemetry import (ERROR_SAID, FAILED, INSTALL_START, START_PAGE, TALLY_DOWNLOAD, TALLY_INSTALL,
                                        TRACKING_ID, UNINSTALL_CANCEL, UNINSTALL_START, UNINSTALL_SUCCESS, WRONG_HASH,
                                        Expected, Sent, download_start, download_success, script_failure, start_page,
                                        tally_download, tally_install, tally_uninstall, wrong_bytes)

REMOVED = "before-files say actiondata CA_MSG_BASTION_UNINSTALL_SUCCESS"  # has a meaning in an install alone
ARGUMENTS = ["PDX_MERIDIAN_COHORT=blue", "HARRIER_ENABLE=h", "IGNORE_ALREADY_INSTALLED=0", "PDX_LAUNCH_CLIENT=l",
             "KESTREL_AUTHCODE=geheim"]
REPORTED = {"harrier": "h", "ignore_installed": "0", "launch": "l", "with_authcode": True}
UNINSTALL = {"action": 3}


def wrong_payload(scene) -> None:
    """The host gives bytes of the right number: the engine fetches them three times, then the run fails."""
    sent, wrong = Sent(scene), scene.machine.path(client.EXCHANGE + "\\wrong.msi")
    wrong.write_bytes(bytes(PACKAGE.stat().st_size))
    link = scene.runs.make_thin_bundle()
    scene.services.download.serve(f"/client/{bundle.PACKAGE_ID}", wrong)
    run = scene.runs.run("/quiet", code=1, whose="with wrong bytes the engine")
    brisk = [event for recommendation in (10, 10, 0) for event in (
        download_start(link), download_success(link, PACKAGE.stat().st_size),
        wrong_bytes("inst.dnld.erro", recommendation))]
    sent.check(Expected(run, thin=True,
                        brisk=[*brisk, wrong_bytes("inst.inst.fail", 10, report_id=TRACKING_ID)],
                        tally=[*[*TALLY_DOWNLOAD, tally_download("error", WRONG_HASH)] * 3,
                               tally_install("error", WRONG_HASH)]))
    sent.check_attempts(3, each=3)
    scene.checks.that("its report is of the thin variant",
                      b"<launchSource>thin<" in scene.services.requests("reports")[0].raw)
    scene.runs.make_bundle()


def clicks_and_logout(scene) -> None:
    """All that the welcome page offers is clicked; then the Windows session ends while the package runs."""
    sent = Sent(scene)
    scene.runs.pause("before-files progress 20 50")
    run = scene.runs.start(*ARGUMENTS, log="clicks", page="welcome")
    scene.window.click(BODY, down=0.75)  # the user agreement; the machine has no program to open it with
    scene.window.click(CLOSE, "prompt", "first-prompt")
    scene.window.click(ACTION1, "welcome", "welcome-again")
    scene.window.click(OPTIONS, "options")
    scene.window.click(ACTION1)
    scene.runs.wait_for_mark()
    scene.checks.equal("the dialog allows the session to end", scene.window.ask("dialog", "0x11 0 0"), "1")
    scene.runs.cancel(run, then=scene.runs.mark)
    scene.checks.cancelled(run, "at the session's end the engine", "logout_exit")
    _, agreement, options, close = START_PAGE
    sent.check(Expected(run, start=REPORTED, brisk=[INSTALL_START, ("inst.inst.canc", {"cnst": "logout_exit"})],
                        tally=[*start_page(agreement, close, options, cohort="blue"), TALLY_INSTALL[0],
                               tally_install("cancel", "logout_exit")]))
    posts = b"".join(post.raw for post in scene.services.requests())
    scene.checks.that("the authorisation code is not sent", b"geheim" not in posts)


def failing_package(scene) -> None:
    """The package sends an error message that names the profile, then fails. The quiet run shows no window."""
    sent = Sent(scene)
    scene.runs.pause("before-files say error Cannot open C:\\users\\root\\Temp", "before-files fail 1603")
    run = scene.runs.run_unseen("a failing package", log="failing")
    scene.checks.exit_code(run, 1)
    sent.check(Expected(run, brisk=[INSTALL_START, *script_failure("inst", "Cannot open C:\\users\\####\\Temp")],
                        tally=[TALLY_INSTALL[0], ("install", {"status": "error", "status_code": ERROR_SAID}),
                               tally_install("error", FAILED), tally_install("error", ERROR_SAID)]))


def uninstall_closed(scene) -> None:
    sent = Sent(scene)
    run = scene.runs.start("/uninstall", log="uninstall-closed", page="prompt")
    scene.window.click(CLOSE)
    scene.checks.cancelled(run.finish(), "with the prompt closed the engine")
    scene.checks.installed()
    sent.check(Expected(run, start=UNINSTALL, brisk=[UNINSTALL_CANCEL],
                        tally=[tally_uninstall("cancel", status_code="user_action")]))


def uninstall_failing(scene) -> None:
    sent = Sent(scene)
    scene.runs.script(REMOVED, "before-files say error Cannot remove", "before-files fail 1603")
    run = scene.runs.run("/uninstall", "/quiet", log="uninstall-failing", code=1)
    data = {"msiactdata": {"imsg": 9 << 24, "flag": 0, "mesg": REMOVED.split()[-1], "args": str, "reco": 0}}
    sent.check(Expected(run, start=UNINSTALL,
                        brisk=[UNINSTALL_START, *script_failure("uinst", "Cannot remove", **data)],
                        tally=[tally_uninstall("start"), ("uninstall", {"status": "error", "status_code": ERROR_SAID}),
                               tally_uninstall("error", status_code=FAILED),
                               tally_uninstall("error", status_code=ERROR_SAID)]))


def uninstall(scene) -> None:
    sent = Sent(scene)
    scene.runs.script(REMOVED)
    run = scene.runs.uninstall()
    scene.checks.gone()
    sent.check(Expected(run, start=UNINSTALL, brisk=[UNINSTALL_START, UNINSTALL_SUCCESS],
                        tally=[tally_uninstall("start"), tally_uninstall("finish", status_code="success")]))


def play(scene):
    wrong_payload(scene)
    clicks_and_logout(scene)
    failing_package(scene)
    scene.runs.script()
    scene.runs.install()
    uninstall_closed(scene)
    uninstall_failing(scene)
    uninstall(scene)
