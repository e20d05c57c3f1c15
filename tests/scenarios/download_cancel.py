"""Cancelling a download: while it waits for its next attempt the run ends at once, in a transfer it is told as its cancel."""
import threading
from datetime import datetime, timezone

from harness.scenario.telemetry import (INSTALL_CANCEL, SESSION_STOP, UNAVAILABLE, brisk_events, check_telemetry,
                                        command_line, download_start, failed_attempts, session_start, start_page,
                                        tally_download, tally_install, told_so_far, unavailable)

LAST_WAIT = "Waiting 30s before auto retry"
# The word goes by the connection, the wrong way round: a sandbox has none but to itself, so this means no connection.
WORD = "user_action"


def cancel_in_the_wait(scene, link: str) -> None:
    scene.services.download.answer(status=503, method="HEAD", times=3)
    run = scene.start_install()
    scene.wait_for_page("progress")
    scene.wait_for(lambda: LAST_WAIT in run.log_so_far().messages("OnCacheAcquireComplete"), "the longest wait")
    asked = datetime.now(timezone.utc)
    scene.cancel(run)
    scene.check_exit_code(run, 0)
    # The engine ends applying with the download's own failure, and nothing told of that download since then.
    brisk, tally = failed_attempts(link, [True] * 3)
    check_telemetry(scene, thin=True, brisk=[session_start(command_line(run)), *brisk,
                                             unavailable("inst.inst.fail", link), SESSION_STOP],
                    tally=[*start_page(), *tally, tally_install("error", UNAVAILABLE)])
    after = (datetime.fromisoformat(brisk_events(scene)[-1]["ts"] + "+00:00") - asked).total_seconds()
    scene.check("the wait is not waited out", after < 20, f"ended {after:.3f} s after the question")
    scene.check_gone()


def cancel_in_the_transfer(scene, link: str) -> None:
    told = told_so_far(scene)
    rest = threading.Event()
    scene.services.download.answer(hold=rest, method="GET", times=1)
    run = scene.start_install(log="transfer")
    scene.wait_for_page("progress", "transfer")
    scene.wait_for(lambda: scene.services.requests("download")[-1].method == "GET", "the middle of the transfer")
    scene.cancel(run, then=rest.set)
    scene.check_cancelled(run, "in a transfer the engine")
    check_telemetry(scene, thin=True, since=told,
                    brisk=[session_start(command_line(run)), download_start(link),
                           ("inst.dnld.canc", {"cnst": WORD}), INSTALL_CANCEL, SESSION_STOP],
                    tally=[*start_page(), tally_download("start", "new", percent=0), tally_download("cancel", WORD),
                           tally_install("cancel", "user_action")])
    scene.check_gone()


def play(scene):
    link = scene.make_thin_bundle()
    cancel_in_the_wait(scene, link)
    cancel_in_the_transfer(scene, link)
