"""A person uninstalls: asked to close the client that runs, then to confirm; progress, and a closing prompt."""
from harness.desktop.strings import text
from harness.desktop.window import ACTION1, ACTION2, CLOSE, PICTURE, QUESTION, TITLE

CLIENT_MUTEX = "Global\\PalisadeDesktop.exe"


def answer(scene, control, picture, page="prompt"):
    """Answers the prompt that shows; gives what shows afterwards."""
    before = scene.window.look()
    scene.window.click(control)
    scene.wait_for(lambda: (view := scene.window.look()) and view.visible and view.page == page
                   and view.controls != before.controls, f"the page after {picture}")
    return scene.window.wait_for_page(page, picture)


def retry(scene):
    """Retries while the client runs; gives the prompt that asks again. It looks like the one before, but a new page
    takes the focus from the button."""
    scene.window.press("Tab")
    scene.window.wait_for_focus(ACTION1)
    scene.window.click(ACTION1)
    scene.wait_for(lambda: (view := scene.window.look()) and view.focus != ACTION1, "a page after the retry", 10)
    return scene.window.wait_for_page("prompt", "still-running")


def play(scene):
    scene.window.use_names()
    scene.runs.install()

    scene.checks.equal("the client runs", scene.machine.command(f"hold {CLIENT_MUTEX}"), "held")
    run = scene.runs.start("/uninstall", log="given-up")
    running = scene.window.wait_for_page("prompt", "client-running")
    scene.checks.that("two buttons, the logo and no check box", QUESTION not in running.controls and
                      {ACTION1, ACTION2, PICTURE} <= running.controls.keys(), sorted(running.controls))
    scene.window.click(ACTION2)
    run.ends(0, "a run that the person gives up")
    scene.checks.that("it logs why", run.log.has(r"^Palisade Desktop is still running\.  Canceling uninstall$"))
    scene.checks.that("it plans nothing", not run.log.numbered("200"))
    scene.checks.installed()

    scene.runs.script("before-files wait-for seen", "before-files progress 3 100")
    run = scene.runs.start("/uninstall")
    scene.window.wait_for_page("prompt", "client-running-again")
    again = retry(scene)
    scene.checks.equal("a retry while it runs asks again", again.names.get(TITLE),
                       text("INSTALLER_UNINSTALL_CLIENT_RUNNING_TITLE"))
    scene.checks.equal("with the page of the first time", again.controls, running.controls)
    scene.machine.command("release")
    confirm = answer(scene, ACTION1, "confirm")
    scene.checks.that("confirmed by one of two buttons", {ACTION1, ACTION2} <= confirm.controls.keys())
    progress = answer(scene, ACTION1, "progress", "progress")
    scene.checks.that("the cross is there while it works", CLOSE in progress.controls)
    scene.runs.mark()
    complete = scene.window.wait_for_page("prompt", "complete")
    scene.checks.that("one button is left", ACTION1 in complete.controls and ACTION2 not in complete.controls)
    scene.window.click(ACTION1)
    run.ends()
    scene.checks.gone()
