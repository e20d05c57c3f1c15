"""The end of the Windows session: allowed before applying, refused from then on unless critical, and recorded."""
from harness.client import facts
from harness.seeing.window import ACTION1, ACTION2, CLOSE

ENGINE, DIALOG = "WixBurnMessageWindow", "dialog"
ORDINARY, CRITICAL = 0, 0x40000000
ALLOWED, REFUSED = "1", "0"
ASKED = ["dwEndsession=0, nRecommendation=2", "dwEndsession=1073741824, nRecommendation=0"]


def ask(scene, window: str, how: int) -> str:
    return scene.window.command(f"ask {window} 0x11 0 {how}")


def ask_both(scene, window: str) -> list[str]:
    return [ask(scene, window, how) for how in (ORDINARY, CRITICAL)]


def start(scene, last_step: str, log: str):
    """Starts a run whose package waits before its last step."""
    for left in ("under-way", "go-on"):
        scene.path(f"{facts.EXCHANGE}\\{left}").unlink(missing_ok=True)
    scene.script(f"after-files mark under-way\nafter-files wait-for go-on\nafter-files {last_step}")
    run = scene.start(log=log)
    scene.wait_for_page("welcome", f"{log}-welcome")
    return run


def install(scene) -> None:
    scene.window.click(ACTION1)
    scene.wait_for(lambda: scene.exists(facts.EXCHANGE + "\\under-way"), "the package's last action")


def go_on(scene) -> None:
    scene.path(facts.EXCHANGE + "\\go-on").touch()


def cancel(scene, log: str) -> None:
    scene.window.click(CLOSE)
    scene.wait_for_page("prompt", f"{log}-close-prompt")
    scene.window.click(ACTION2)
    scene.wait_for(lambda: not scene.window.look(), "the end of the window")


def play(scene):
    run = start(scene, "fail 1603", "engine")
    scene.check_equal("before applying the engine's window allows both", ask_both(scene, ENGINE), [ALLOWED, ALLOWED])
    scene.check_equal("so does the dialog", ask_both(scene, DIALOG), [ALLOWED, ALLOWED])
    install(scene)
    scene.check_equal("while the package runs the engine's window allows a critical one only",
                      ask_both(scene, ENGINE), [REFUSED, ALLOWED])
    scene.check_equal("the dialog has no objection", ask_both(scene, DIALOG), [ALLOWED, ALLOWED])
    go_on(scene)
    scene.wait_for_page("prompt", "error")
    scene.check_equal("when applying has ended it is still so", ask_both(scene, ENGINE), [REFUSED, ALLOWED])
    scene.window.click(ACTION1)
    run.finish(60)
    scene.check_equal("each question reached the library", run.log.messages("OnSystemShutdown"), ASKED * 3)
    scene.check_exit_code(run, 1, "after a failure the engine")
    scene.check_equal("it is told as the failure that it was", run.log.closing_errors(), ["80070643"])

    # Of the two windows the dialog is the one that records.
    engine_asked = start(scene, "progress 20 50", "engine-asked")
    ask_both(scene, ENGINE)
    cancel(scene, "engine-asked")
    engine_asked.finish(60)
    scene.check_equal("the engine's window is asked", engine_asked.log.messages("OnSystemShutdown"), ASKED)
    scene.check_cancelled(engine_asked, "then the engine")

    before = start(scene, "progress 20 50", "dialog-asked-before")
    scene.check_equal("the dialog is asked before applying", ask(scene, DIALOG, ORDINARY), ALLOWED)
    cancel(scene, "dialog-asked-before")
    before.finish(60)
    scene.check_cancelled(before, "then the engine", "logout_exit")

    during = start(scene, "progress 20 50", "dialog-asked-during")
    install(scene)
    scene.check_equal("the dialog is asked while the package runs", ask(scene, DIALOG, CRITICAL), ALLOWED)
    cancel(scene, "dialog-asked-during")
    go_on(scene)
    during.finish(60)
    scene.check_cancelled(during, "then the engine", "logout_exit")
    scene.check_gone()
