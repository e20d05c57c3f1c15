"""The end of the Windows session: allowed before applying, refused from then on unless critical, and recorded."""
from harness.desktop.window import ACTION1

ENGINE, DIALOG = "WixBurnMessageWindow", "dialog"
ORDINARY, CRITICAL = 0, 0x40000000
ALLOWED, REFUSED = "1", "0"
ASKED = ["dwEndsession=0, nRecommendation=2", "dwEndsession=1073741824, nRecommendation=0"]


def ask_both(scene, window: str) -> list[str]:
    return [scene.window.ask(window, f"0x11 0 {how}") for how in (ORDINARY, CRITICAL)]


def play(scene):
    scene.runs.pause("after-files fail 1603", when="after-files")
    run = scene.runs.start(page="welcome")
    scene.checks.equal("before applying the engine's window allows both", ask_both(scene, ENGINE), [ALLOWED, ALLOWED])
    scene.checks.equal("so does the dialog", ask_both(scene, DIALOG), [ALLOWED, ALLOWED])
    scene.window.click(ACTION1)
    scene.runs.wait_for_mark()
    scene.checks.equal("while the package runs the engine's window allows a critical one only",
                       ask_both(scene, ENGINE), [REFUSED, ALLOWED])
    scene.checks.equal("the dialog has no objection", ask_both(scene, DIALOG), [ALLOWED, ALLOWED])
    scene.runs.mark()
    scene.window.wait_for_page("prompt", "error")
    scene.checks.equal("when applying has ended it is still so", ask_both(scene, ENGINE), [REFUSED, ALLOWED])
    scene.window.click(ACTION1)
    run.ends(1, "after a failure the engine")
    scene.checks.equal("each question reached the library", run.log.messages("OnSystemShutdown"), ASKED * 3)
    scene.checks.equal("it is logged as the failure that it was", run.log.closing_errors(), ["80070643"])

    # Of the two windows the dialog is the one that records.
    for log, window, why in (("engine-asked", ENGINE, "user_action"), ("dialog-asked", DIALOG, "logout_exit")):
        run = scene.runs.start(log=log, page="welcome")
        scene.checks.equal(f"{log}: the session may end", ask_both(scene, window), [ALLOWED, ALLOWED])
        scene.checks.cancelled(scene.runs.cancel(run), f"{log}: the engine", why)
    scene.checks.gone()
