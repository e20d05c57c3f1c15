"""With the box of the error page unticked no report goes out, and the failure is told without one."""
from harness.checking.telemetry import (FAILED, INSTALL_START, SESSION_STOP, TALLY_INSTALL, check_telemetry,
                                        command_line, script_failure, session_start, start_page, tally_install)
from harness.seeing.window import ACTION1, QUESTION


def play(scene):
    services = scene.services
    scene.script("before-files fail 1603")
    run = scene.start_install()
    scene.wait_for_page("prompt", "error")
    scene.window.click(QUESTION)
    scene.window.click(ACTION1)
    run.finish(60)
    scene.check_exit_code(run, 1)
    scene.check_equal("no report is sent", services.requests("reports") + services.requests("storage"), [])
    execution, failure = script_failure("inst")
    del failure[1]["report_id"]
    check_telemetry(scene, thin=False, tally=[*start_page(), TALLY_INSTALL[0], *[tally_install("error", FAILED)] * 2],
                    brisk=[session_start(command_line(run)), INSTALL_START, execution, failure, SESSION_STOP])
