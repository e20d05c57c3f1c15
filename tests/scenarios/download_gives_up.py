"""The download host fails four times: the connection prompt asks, and RETRY starts over."""
from harness.places import PACKAGE
from harness.telemetry import (INSTALL_START, INSTALL_SUCCESS, SESSION_STOP, check_attempts, check_telemetry,
                               command_line, download_start, download_success, failed_attempts, session_start,
                               start_page, tally_download, tally_install)
from harness.window import ACTION1, BODY, CLOSE, PICTURE, TITLE


def fail_four_times(scene, log: str):
    scene.services.download.answer(status=503, method="HEAD", times=4)
    run = scene.start(log=log)
    scene.wait_for_page("welcome", f"{log}-welcome")
    scene.window.click(ACTION1)
    scene.wait_for_page("progress", f"{log}-progress")
    prompt = scene.wait_for_page("prompt", f"{log}-connection", bound=100)
    scene.check_equal("the prompt has a picture, two texts, one button and the cross", set(prompt.controls),
                      {PICTURE, TITLE, BODY, ACTION1, CLOSE})
    return run


def play(scene):
    link = scene.make_thin_bundle()
    failed_brisk, failed_tally = failed_attempts(link, [True, True, True, False])

    run = fail_four_times(scene, "engine")
    scene.window.click(ACTION1)
    run.finish(90)
    scene.check_exit_code(run, 0)
    scene.check_installed()
    brisk = [session_start(command_line(run)), *failed_brisk, download_start(link),
             download_success(link, PACKAGE.stat().st_size), INSTALL_START, INSTALL_SUCCESS, SESSION_STOP]
    tally = [*start_page(), *failed_tally, tally_download("start", "new", percent=0),
             tally_download("finish", "success", percent=100.0),
             tally_install("start", "new"), tally_install("finish", "success")]
    check_telemetry(scene, thin=True, brisk=brisk, tally=tally)
    check_attempts(scene, 5)
