"""The download host fails three times: the library tries again after 1, 5 and 30 seconds, and nobody is asked."""
from datetime import datetime

from harness.checking.telemetry import check_attempts, check_telemetry, failed_attempts, thin_install

WAITS = [1, 5, 30]


def play(scene):
    link = scene.make_thin_bundle()
    scene.services.download.answer(status=503, method="HEAD", times=3)
    run = scene.start_install().finish(150)
    scene.check_exit_code(run, 0)
    scene.check_installed()
    check_waits(scene, run)

    check_telemetry(scene, **thin_install(run, link, failed_attempts(link, [True] * 3)))
    check_attempts(scene, 4)


def check_waits(scene, run):
    waits = [text for text in run.log.messages("OnCacheAcquireComplete") if text.startswith("Waiting")]
    scene.check_equal("the waits are logged", waits, [f"Waiting {seconds}s before auto retry" for seconds in WAITS])
    moments = [(event["s"], datetime.fromisoformat(event["ts"])) for post in scene.services.requests("brisk")
               for event in post.body if event["g"] == "dnld"]
    gaps = [(after - before).total_seconds() for (what, before), (_, after) in zip(moments, moments[1:])
            if what == "erro"]
    scene.check("and are waited out", len(gaps) == len(WAITS) and all(map(float.__ge__, gaps, map(float, WAITS))), gaps)
