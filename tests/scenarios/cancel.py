"""Closing before anything is installed: continuing shows the page again, cancelling ends the run and leaves nothing."""
from harness.desktop.window import ACTION1, ACTION2, CLOSE, OPTIONS, PICTURE, TITLE


def check_continued(scene, page: str, how: str, close) -> None:
    """Closes the page and continues."""
    before = scene.window.wait_for_page(page).controls
    close()
    prompt = scene.window.wait_for_page("prompt", f"{page}-closed")
    scene.checks.equal(f"{how}: the prompt has a picture, a title, two buttons and the cross", set(prompt.controls),
                       {PICTURE, TITLE, ACTION1, ACTION2, CLOSE})
    again = scene.window.click(ACTION1, page, f"{page}-again")
    scene.checks.equal(f"{how}: continuing shows the page as it was", again.controls, before)


def check_cancelled(scene, run, how: str) -> None:
    scene.checks.cancelled(run, f"after {how} the engine")
    scene.checks.that("nothing was planned", run.log.numbered("100") and not run.log.numbered("200"))
    scene.checks.gone()


def play(scene):
    run = scene.runs.start()
    check_continued(scene, "welcome", "by the cross", lambda: scene.window.click(CLOSE))
    scene.window.click(OPTIONS)
    check_continued(scene, "options", "by Escape", lambda: scene.window.press("Escape"))
    check_cancelled(scene, scene.runs.cancel(run), "a cancel")

    run = scene.runs.start(log="double-click", page="welcome")
    scene.window.click_twice(CLOSE)
    check_cancelled(scene, run.finish(60), "a double click")
