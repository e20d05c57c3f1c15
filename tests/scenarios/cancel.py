"""Closing before anything is installed: continuing brings the page back, cancelling ends the run and leaves nothing."""
from harness.seeing.window import ACTION1, ACTION2, CLOSE, OPTIONS, PICTURE, TITLE


def check_cancelled(scene, run, whose: str) -> None:
    scene.check_cancelled(run, whose)
    scene.check("nothing was planned", run.log.numbered("100") and not run.log.numbered("200"))
    scene.check_gone()


def play(scene):
    run = scene.start()
    welcome = scene.wait_for_page("welcome")
    scene.window.click(CLOSE)
    prompt = scene.wait_for_page("prompt", "close-prompt")
    scene.check_equal("the prompt has a picture, a title, two buttons and the cross", set(prompt.controls),
                      {PICTURE, TITLE, ACTION1, ACTION2, CLOSE})
    scene.window.click(ACTION1)
    again = scene.wait_for_page("welcome", "welcome-again")
    scene.check_equal("continuing brings the first page back as it was", again.controls, welcome.controls)

    scene.window.click(OPTIONS)
    options = scene.wait_for_page("options")
    scene.window.press("Escape")
    scene.wait_for_page("prompt", "close-prompt-over-options")
    scene.window.click(ACTION1)
    again = scene.wait_for_page("options", "options-again")
    scene.check_equal("and the second, closed by Escape", again.controls, options.controls)

    scene.window.click(CLOSE)
    scene.wait_for_page("prompt", "close-prompt-again")
    scene.window.click(ACTION2)
    run.finish(60)
    check_cancelled(scene, run, "after a cancel the engine")

    second = scene.start(log="second-press")
    scene.wait_for_page("welcome")
    scene.window.click(CLOSE)
    scene.wait_for_page("prompt", "close-prompt-before-second-press")
    scene.window.click(CLOSE)
    second.finish(60)
    check_cancelled(scene, second, "after a second press over the prompt the engine")

    double = scene.start(log="double-click")
    scene.wait_for_page("welcome")
    scene.window.click_twice(CLOSE)
    double.finish(60)
    check_cancelled(scene, double, "after a double click the engine")
