"""Cancelling a download: while it waits for its next attempt the run ends at once, in a transfer it is told as its cancel."""
import threading
from datetime import datetime, timezone

from harness.checking.telemetry import (INSTALL_CANCEL, SESSION_STOP, UNAVAILABLE, check_telemetry, command_line,
                                        download_start, failed_attempts, session_start, start_page, tally_download,
                                        tally_install, told_so_far, unavailable)
from harness.seeing.window import ACTION1, ACTION2, CLOSE

LAST_WAIT = "Waiting 30s before auto retry"
# The word goes by the connection, the wrong way round: a sandbox has none but to itself, so this means no connection.
WORD = "user_action"


def start(scene, log: str):
    run = scene.start(log=log)
    scene.wait_for_page("welcome", f"{log}-welcome")
    scene.window.click(ACTION1)
    scene.wait_for_page("progress", f"{log}-progress")
    return run


def ask(scene, log: str) -> None:
    scene.window.click(CLOSE)
    scene.wait_for_page("prompt", f"{log}-prompt")


def cancel_in_the_wait(scene, link: str) -> None:
    scene.services.download.answer(status=503, method="HEAD", times=3)
    run = start(scene, "engine")
    scene.wait_for(lambda: LAST_WAIT in run.log_so_far().messages("OnCacheAcquireComplete"), "the longest wait")
    ask(scene, "engine")
    clicked = datetime.now(timezone.utc)
    scene.window.click(ACTION2)
    run.finish(60)
    scene.check_exit_code(run, 0)
    # The engine ends applying with the download's own failure, and nothing told of that download since then.
    brisk, tally = failed_attempts(link, [True] * 3)
    check_telemetry(scene, thin=True, brisk=[session_start(command_line(run)), *brisk,
                                             unavailable("inst.inst.fail", link), SESSION_STOP],
                    tally=[*start_page(), *tally, tally_install("error", UNAVAILABLE)])
    told = [event["ts"] for post in scene.services.requests("brisk") for event in post.body]
    after = (datetime.fromisoformat(told[-1] + "+00:00") - clicked).total_seconds()
    scene.check("the wait is not waited out", after < 20, f"ended {after:.3f} s after the click")
    scene.check_gone()


def cancel_in_the_transfer(scene, link: str) -> None:
    told = told_so_far(scene)
    rest = threading.Event()
    scene.services.download.answer(hold=rest, method="GET", times=1)
    run = start(scene, "transfer")
    scene.wait_for(lambda: scene.services.requests("download")[-1].method == "GET", "the middle of the transfer")
    ask(scene, "transfer")
    scene.window.click(ACTION2)
    scene.wait_for(lambda: not scene.window.look(), "the end of the window")
    rest.set()
    run.finish(60)
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
