"""Closing before anything is installed: continuing brings the page back, cancelling ends the run and leaves nothing."""
from harness.desktop.window import ACTION1, ACTION2, CLOSE, OPTIONS, PICTURE, TITLE


def check_continued(scene, page: str, how: str, close) -> None:
    """Closes the page and continues."""
    before = scene.wait_for_page(page).controls
    close()
    prompt = scene.wait_for_page("prompt", f"{page}-closed")
    scene.check_equal(f"{how}: the prompt has a picture, a title, two buttons and the cross", set(prompt.controls),
                      {PICTURE, TITLE, ACTION1, ACTION2, CLOSE})
    scene.window.click(ACTION1)
    again = scene.wait_for_page(page, f"{page}-again")
    scene.check_equal(f"{how}: continuing brings the page back as it was", again.controls, before)


def check_cancelled(scene, run, how: str) -> None:
    scene.check_cancelled(run, f"after {how} the engine")
    scene.check("nothing was planned", run.log.numbered("100") and not run.log.numbered("200"))
    scene.check_gone()


def press_again(scene) -> None:
    scene.window.click(CLOSE)
    scene.wait_for_page("prompt", "before-second-press")
    scene.window.click(CLOSE)


def play(scene):
    run = scene.start()
    check_continued(scene, "welcome", "by the cross", lambda: scene.window.click(CLOSE))
    scene.window.click(OPTIONS)
    check_continued(scene, "options", "by Escape", lambda: scene.window.press("Escape"))
    check_cancelled(scene, scene.cancel(run), "a cancel")

    for how, close in (("a second press", lambda: press_again(scene)),
                       ("a double click", lambda: scene.window.click_twice(CLOSE))):
        run = scene.start_to_welcome(log=how.replace(" ", "-"))
        close()
        check_cancelled(scene, run.finish(60), how)
