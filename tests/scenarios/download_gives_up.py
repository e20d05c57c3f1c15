"""The download host fails four times, with waits of 1, 5 and 30 seconds between; RETRY starts over."""
from datetime import datetime

from harness.desktop.window import ACTION1, BODY, CLOSE, PICTURE, TITLE
from harness.scenario.telemetry import Sent, failed_attempts, thin_install

RETRIES = [True, True, True, False]
WAITS = [1, 5, 30]


def check_waits(scene, run, sent: Sent) -> None:
    waits = [text for text in run.log.messages("OnCacheAcquireComplete") if text.startswith("Waiting")]
    scene.checks.equal("the waits are logged", waits, [f"Waiting {seconds}s before auto retry" for seconds in WAITS])
    moments = [(event["s"], datetime.fromisoformat(event["ts"])) for event in sent.brisk() if event["g"] == "dnld"]
    gaps = [(after - before).total_seconds() for (what, before), (_, after) in zip(moments, moments[1:])
            if what == "erro"][:len(WAITS)]
    scene.checks.that("and are waited out", len(gaps) == len(WAITS) and all(map(float.__ge__, gaps, map(float, WAITS))),
                      gaps)


def play(scene):
    sent, link = Sent(scene), scene.runs.make_thin_bundle()
    scene.services.download.answer(status=503, method="HEAD", times=4)
    run = scene.runs.start_install()
    scene.window.wait_for_page("progress")
    prompt = scene.window.wait_for_page("prompt", "connection", bound=100)
    scene.checks.equal("the prompt has a picture, two texts, one button and the cross", set(prompt.controls),
                       {PICTURE, TITLE, BODY, ACTION1, CLOSE})
    scene.window.click(ACTION1)
    run.ends()
    scene.checks.installed()
    sent.check(thin_install(run, link, failed_attempts(link, RETRIES)))
    sent.check_attempts(5)
    check_waits(scene, run, sent)
