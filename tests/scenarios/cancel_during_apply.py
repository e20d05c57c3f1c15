"""Cancelling while the package executes: Windows Installer is answered a cancel, all its changes are rolled back."""
from harness.desktop.window import ACTION1, CLOSE
from harness.scenario import client

TICKS = "after-files progress 20 50"
PASSES = ["wzPackageId=PalisadeApp.msi, fExecute=true", "wzPackageId=PalisadeApp.msi, fExecute=false"]


def play(scene):
    scene.runs.script(f"""
        before-files mark under-way
        before-files progress 20 50
        after-files exists {client.LAUNCHER}
        after-files mark files-are-there
        after-files wait-for cancelled
        {TICKS}
    """)
    run = scene.runs.start_install()
    scene.runs.wait_for_mark()
    scene.window.wait_for_page("progress")

    # The engine waits in its callback meanwhile: the package reports progress.
    scene.window.click(CLOSE, "prompt", "first-prompt")
    scene.window.click(ACTION1, "progress", "progress-again")
    scene.runs.wait_for_mark("files-are-there")
    scene.checks.equal("then the package continues", scene.runs.answer("before-files progress 20 50"), "done")

    scene.runs.cancel(run, then=lambda: scene.runs.mark("cancelled"))

    scene.checks.equal("the files were there", scene.runs.answer(f"after-files exists {client.LAUNCHER}"), "yes")
    scene.checks.equal("Windows Installer was answered a cancel in the install and none in the rollback",
                       scene.runs.answers(TICKS), ["cancelled", "done"])
    scene.checks.equal("the package ran and was rolled back", run.log.messages("OnExecutePackageBegin"), PASSES)
    scene.checks.equal("the first ended with a cancel, the second well", run.log.numbered("319"),
                       ["Applied execute package: PalisadeApp.msi, result: 0x80070642, restart: None",
                        "Applied rollback package: PalisadeApp.msi, result: 0x0, restart: None"])
    scene.checks.cancelled(run, "the engine")
    scene.checks.gone()
