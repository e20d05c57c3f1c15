"""The end of the Windows session: allowed before applying, refused from then on unless critical, and recorded."""
from harness.desktop.window import ACTION1

ENGINE, DIALOG = "WixBurnMessageWindow", "dialog"
ORDINARY, CRITICAL = 0, 0x40000000
ALLOWED, REFUSED = "1", "0"
ASKED = ["dwEndsession=0, nRecommendation=2", "dwEndsession=1073741824, nRecommendation=0"]


def ask_both(scene, window: str) -> list[str]:
    return [scene.window.command(f"ask {window} 0x11 0 {how}") for how in (ORDINARY, CRITICAL)]


def play(scene):
    scene.script("after-files mark under-way\nafter-files wait-for go-on\nafter-files fail 1603")
    run = scene.start_to_welcome()
    scene.check_equal("before applying the engine's window allows both", ask_both(scene, ENGINE), [ALLOWED, ALLOWED])
    scene.check_equal("so does the dialog", ask_both(scene, DIALOG), [ALLOWED, ALLOWED])
    scene.window.click(ACTION1)
    scene.wait_for_mark("under-way", "the package's last action")
    scene.check_equal("while the package runs the engine's window allows a critical one only",
                      ask_both(scene, ENGINE), [REFUSED, ALLOWED])
    scene.check_equal("the dialog has no objection", ask_both(scene, DIALOG), [ALLOWED, ALLOWED])
    scene.mark("go-on")
    scene.wait_for_page("prompt", "error")
    scene.check_equal("when applying has ended it is still so", ask_both(scene, ENGINE), [REFUSED, ALLOWED])
    scene.window.click(ACTION1)
    run.finish(60)
    scene.check_equal("each question reached the library", run.log.messages("OnSystemShutdown"), ASKED * 3)
    scene.check_exit_code(run, 1, "after a failure the engine")
    scene.check_equal("it is told as the failure that it was", run.log.closing_errors(), ["80070643"])

    # Of the two windows the dialog is the one that records.
    for log, window, why in (("engine-asked", ENGINE, "user_action"), ("dialog-asked", DIALOG, "logout_exit")):
        run = scene.start_to_welcome(log=log)
        scene.check_equal(f"{log}: the session may end", ask_both(scene, window), [ALLOWED, ALLOWED])
        scene.cancel(run)
        scene.check_cancelled(run, f"{log}: the engine", why)
    scene.check_gone()
