"""The download host fails four times: the connection prompt asks; RETRY starts over, and closing it ends the run."""
from harness.checking.telemetry import (SESSION_STOP, UNAVAILABLE, check_attempts, check_telemetry, command_line,
                                        failed_attempts, session_start, start_page, tally_install, thin_install,
                                        told_so_far, unavailable)
from harness.seeing.window import ACTION1, ACTION2, BODY, CLOSE, PICTURE, TITLE

RETRIES = [True, True, True, False]


def fail_four_times(scene, log: str):
    scene.services.download.answer(status=503, method="HEAD", times=4)
    run = scene.start_install(log=log)
    scene.wait_for_page("progress", f"{log}-progress")
    prompt = scene.wait_for_page("prompt", f"{log}-connection", bound=100)
    scene.check_equal("the prompt has a picture, two texts, one button and the cross", set(prompt.controls),
                      {PICTURE, TITLE, BODY, ACTION1, CLOSE})
    return run


def close(scene, link: str) -> None:
    run = fail_four_times(scene, "closed")
    scene.window.click(CLOSE)
    # The cross asks what it asks on every page, and the prompt goes with the window.
    scene.wait_for(lambda: ACTION2 in scene.window.look().controls, "the question behind the cross")
    scene.window.picture("closed-question")
    scene.window.click(ACTION2)
    run.finish(60)
    scene.check_exit_code(run, 0, "with the prompt closed the engine")
    brisk, tally = failed_attempts(link, RETRIES)
    check_telemetry(scene, thin=True, brisk=[session_start(command_line(run)), *brisk,
                                             unavailable("inst.inst.fail", link), SESSION_STOP],
                    tally=[*start_page(), *tally, tally_install("error", UNAVAILABLE)])
    scene.check_gone()


def retry(scene, link: str) -> None:
    told = told_so_far(scene)
    run = fail_four_times(scene, "engine")
    scene.window.click(ACTION1)
    run.finish(90)
    scene.check_exit_code(run, 0)
    scene.check_installed()
    check_telemetry(scene, **thin_install(run, link, failed_attempts(link, RETRIES)), since=told)
    check_attempts(scene, 5, told)


def play(scene):
    link = scene.make_thin_bundle()
    close(scene, link)
    retry(scene, link)
