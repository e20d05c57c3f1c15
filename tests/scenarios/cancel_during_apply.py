"""Cancelling while the package executes: Windows Installer hears of it, all its changes go back, nothing is left."""
from harness.scenario import client as facts
from harness.desktop.window import ACTION1, CLOSE

TICKS = "after-files progress 20 50"
PASSES = ["wzPackageId=PalisadeApp.msi, fExecute=true", "wzPackageId=PalisadeApp.msi, fExecute=false"]


def play(scene):
    launcher = facts.client_file("PalisadeLauncher.exe")
    scene.script(f"""
        before-files mark under-way
        before-files progress 20 50
        after-files exists {launcher}
        after-files mark files-are-there
        after-files wait-for cancelled
        {TICKS}
    """)
    run = scene.start_install()
    scene.wait_for_mark("under-way", "the package's first action")
    scene.wait_for_page("progress")

    # The engine waits in its callback meanwhile, for the package goes on telling its progress.
    scene.window.click(CLOSE)
    scene.wait_for_page("prompt", "first-prompt")
    scene.window.click(ACTION1)
    scene.wait_for_page("progress", "progress-again")
    scene.wait_for_mark("files-are-there", "the package's last action")
    scene.check_equal("continuing goes on installing", scene.answer("before-files progress 20 50"), "done")

    scene.cancel(run, then=lambda: scene.mark("cancelled"))

    scene.check_equal("the files had come", scene.answer(f"after-files exists {launcher}"), "yes")
    scene.check_equal("Windows Installer was answered a cancel on the way there and none on the way back",
                      scene.answers(TICKS), ["cancelled", "done"])
    scene.check_equal("the package ran there and back", run.log.messages("OnExecutePackageBegin"), PASSES)
    scene.check_equal("which ended with a cancel there and well on the way back", run.log.numbered("319"),
                      ["Applied execute package: PalisadeApp.msi, result: 0x80070642, restart: None",
                       "Applied rollback package: PalisadeApp.msi, result: 0x0, restart: None"])
    scene.check_cancelled(run, "the engine")
    scene.check_gone()
