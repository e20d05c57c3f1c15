"""The download host fails four times, with waits of 1, 5 and 30 seconds between; RETRY starts over."""
from datetime import datetime

from harness.scenario.telemetry import check_attempts, check_telemetry, failed_attempts, thin_install
from harness.desktop.window import ACTION1, BODY, CLOSE, PICTURE, TITLE

RETRIES = [True, True, True, False]
WAITS = [1, 5, 30]


def check_waits(scene, run) -> None:
    waits = [text for text in run.log.messages("OnCacheAcquireComplete") if text.startswith("Waiting")]
    scene.check_equal("the waits are logged", waits, [f"Waiting {seconds}s before auto retry" for seconds in WAITS])
    moments = [(event["s"], datetime.fromisoformat(event["ts"]))
               for post in scene.services.requests("brisk") for event in post.body if event["g"] == "dnld"]
    gaps = [(after - before).total_seconds() for (what, before), (_, after) in zip(moments, moments[1:])
            if what == "erro"][:len(WAITS)]
    scene.check("and are waited out", len(gaps) == len(WAITS) and all(map(float.__ge__, gaps, map(float, WAITS))), gaps)


def play(scene):
    link = scene.make_thin_bundle()
    scene.services.download.answer(status=503, method="HEAD", times=4)
    run = scene.start_install()
    scene.wait_for_page("progress")
    prompt = scene.wait_for_page("prompt", "connection", bound=100)
    scene.check_equal("the prompt has a picture, two texts, one button and the cross", set(prompt.controls),
                      {PICTURE, TITLE, BODY, ACTION1, CLOSE})
    scene.window.click(ACTION1)
    run.finish(90)
    scene.check_exit_code(run, 0)
    scene.check_installed()
    check_telemetry(scene, **thin_install(run, link, failed_attempts(link, RETRIES)))
    check_attempts(scene, 5)
    check_waits(scene, run)
