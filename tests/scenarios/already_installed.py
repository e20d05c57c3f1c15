"""Run again on a machine with the client: the person launches it."""
from harness.client import facts
from harness.seeing.window import ACTION1, ACTION2

LAUNCHER = facts.client_file("PalisadeLauncher.exe")


def play(scene):
    scene.check_exit_code(scene.run("/quiet", log="install"), 0, "the install")
    run = scene.start()
    view = scene.wait_for_page("prompt", "already-installed")
    scene.check("launch or repair", {ACTION1, ACTION2} <= view.controls.keys(), sorted(view.controls))
    scene.window.click(ACTION1)
    run.finish(60)
    scene.check_exit_code(run, 0)
    scene.wait_for(lambda: scene.read(facts.LAUNCHES), "the client's start")
    scene.check_equal("the client starts to look for updates",
                      scene.read(facts.LAUNCHES).splitlines(), [f'"{LAUNCHER}" /checkForUpdate'])
    scene.check("nothing is detected or planned", not run.log.numbered("100") and not run.log.numbered("200"))
