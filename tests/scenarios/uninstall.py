"""A person uninstalls: asked to close the client that runs, then to confirm; progress, and a last word."""
from harness.desktop.strings import text
from harness.desktop.window import ACTION1, ACTION2, CLOSE, PICTURE, QUESTION, TITLE

CLIENT_MUTEX = "Global\\PalisadeDesktop.exe"


def answer(scene, control, picture, page="prompt"):
    """Answers the prompt on show; gives what shows afterwards."""
    before = scene.window.look()
    scene.window.click(control)
    scene.wait_for(lambda: (view := scene.window.look()) and view.visible and view.page == page
                   and view.controls != before.controls, f"the page behind {picture}")
    return scene.wait_for_page(page, picture)


def retry(scene):
    """Retries while the client runs; gives the prompt that asks again. It looks like the one before, and is told from
    it by the focus: a page that is shown takes it from the button."""
    scene.wait_for(scene.window.keyboard, "the keyboard")
    scene.window.press("Tab")
    scene.wait_for(lambda: scene.window.look().focus == ACTION1, "the focus of the retry button", 10)
    scene.window.click(ACTION1)
    scene.wait_for(lambda: (view := scene.window.look()) and view.focus != ACTION1, "a page behind the retry", 10)
    return scene.wait_for_page("prompt", "still-running")


def play(scene):
    scene.use_names()
    scene.check_exit_code(scene.run("/quiet", log="install"), 0, "the install")

    scene.check_equal("the client runs", scene.window.command(f"hold {CLIENT_MUTEX}"), "held")
    given_up = scene.start("/uninstall", log="given-up")
    running = scene.wait_for_page("prompt", "client-running")
    scene.check("two buttons, the logo and no check box", {ACTION1, ACTION2, PICTURE} <= running.controls.keys() and
                QUESTION not in running.controls, sorted(running.controls))
    scene.window.click(ACTION2)
    given_up.finish(60)
    scene.check_exit_code(given_up, 0, "a run that the person gives up")
    scene.check("it tells why", given_up.log.has(r"^Palisade Desktop is still running\.  Canceling uninstall$"))
    scene.check("it plans nothing", not given_up.log.numbered("200"))
    scene.check_installed()

    scene.script("""
        before-files wait-for seen
        before-files progress 3 100
    """)
    run = scene.start("/uninstall")
    scene.wait_for_page("prompt", "client-running-again")
    again = retry(scene)
    scene.check_equal("a retry while it runs asks again", again.names.get(TITLE),
                      text("INSTALLER_UNINSTALL_CLIENT_RUNNING_TITLE"))
    scene.check_equal("with the page of the first time", again.controls, running.controls)
    scene.window.command("release")
    confirm = answer(scene, ACTION1, "confirm")
    scene.check("confirmed by one of two buttons", {ACTION1, ACTION2} <= confirm.controls.keys())
    progress = answer(scene, ACTION1, "progress", "progress")
    scene.check("the cross is there while it works", CLOSE in progress.controls)
    scene.mark("seen")
    complete = scene.wait_for_page("prompt", "complete")
    scene.check("one button is left", ACTION1 in complete.controls and ACTION2 not in complete.controls)
    scene.window.click(ACTION1)
    run.finish(60)
    scene.check_exit_code(run, 0)
    scene.check_gone()
