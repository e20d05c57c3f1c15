"""Cancelling a download: in a wait for the next attempt the run ends at once, in a transfer it is cancelled."""
import threading
from datetime import datetime, timezone

from harness.scenario.telemetry import (INSTALL_CANCEL, UNAVAILABLE, Expected, Sent, download_start, failed_attempts,
                                        start_page, tally_download, tally_install, unavailable)

LAST_WAIT = "Waiting 30s before auto retry"
# The word depends on the connection, in reverse: a sandbox has none but to itself, so this means no connection.
WORD = "user_action"


def cancel_in_the_wait(scene, link: str) -> None:
    sent = Sent(scene)
    scene.services.download.answer(status=503, method="HEAD", times=3)
    run = scene.runs.start_install()
    scene.window.wait_for_page("progress")
    scene.wait_for(lambda: LAST_WAIT in run.log_so_far().messages("OnCacheAcquireComplete"), "the longest wait")
    asked = datetime.now(timezone.utc)
    scene.checks.exit_code(scene.runs.cancel(run), 0)
    # The engine ends applying with the download's own failure, and there is no later event of the download.
    brisk, tally = failed_attempts(link, [True] * 3)
    sent.check(Expected(run, thin=True, brisk=[*brisk, unavailable("inst.inst.fail", link)],
                        tally=[*start_page(), *tally, tally_install("error", UNAVAILABLE)]))
    after = (datetime.fromisoformat(sent.brisk()[-1]["ts"] + "+00:00") - asked).total_seconds()
    scene.checks.that("the wait is not waited out", after < 20, f"ended {after:.3f} s after the question")
    scene.checks.gone()


def cancel_in_the_transfer(scene, link: str) -> None:
    sent, rest = Sent(scene), threading.Event()
    scene.services.download.answer(hold=rest, method="GET", times=1)
    run = scene.runs.start_install(log="transfer")
    scene.window.wait_for_page("progress", "transfer")
    scene.wait_for(lambda: scene.services.requests("download")[-1].method == "GET", "the middle of the transfer")
    scene.runs.cancel(run, then=rest.set)
    scene.checks.cancelled(run, "in a transfer the engine")
    sent.check(Expected(run, thin=True,
                        brisk=[download_start(link), ("inst.dnld.canc", {"cnst": WORD}), INSTALL_CANCEL],
                        tally=[*start_page(), tally_download("start", "new", percent=0), tally_download("cancel", WORD),
                               tally_install("cancel", "user_action")]))
    scene.checks.gone()


def play(scene):
    link = scene.runs.make_thin_bundle()
    cancel_in_the_wait(scene, link)
    cancel_in_the_transfer(scene, link)
