"""The download host fails four times, with waits of 1, 5 and 30 seconds between: the connection prompt asks; RETRY starts
over, and closing it ends the run."""
from datetime import datetime

from harness.checking.telemetry import (SESSION_STOP, UNAVAILABLE, check_attempts, check_telemetry, command_line,
                                        failed_attempts, session_start, start_page, tally_install, thin_install,
                                        told_so_far, unavailable)
from harness.seeing.window import ACTION1, ACTION2, BODY, CLOSE, PICTURE, TITLE

RETRIES = [True, True, True, False]
WAITS = [1, 5, 30]


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
    check_waits(scene, run, told)


def check_waits(scene, run, told: dict[str, int]) -> None:
    waits = [text for text in run.log.messages("OnCacheAcquireComplete") if text.startswith("Waiting")]
    scene.check_equal("the waits are logged", waits, [f"Waiting {seconds}s before auto retry" for seconds in WAITS])
    moments = [(event["s"], datetime.fromisoformat(event["ts"]))
               for post in scene.services.requests("brisk")[told["brisk"]:] for event in post.body
               if event["g"] == "dnld"]
    gaps = [(after - before).total_seconds() for (what, before), (_, after) in zip(moments, moments[1:])
            if what == "erro"][:len(WAITS)]
    scene.check("and are waited out", len(gaps) == len(WAITS) and all(map(float.__ge__, gaps, map(float, WAITS))), gaps)


def play(scene):
    link = scene.make_thin_bundle()
    close(scene, link)
    retry(scene, link)
