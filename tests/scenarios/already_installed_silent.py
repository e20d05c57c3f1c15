"""IGNORE_ALREADY_INSTALLED=1 on a machine with the client ends the run with success, nothing detected."""
from harness.client import facts


def play(scene):
    scene.check_exit_code(scene.run("/quiet", log="install"), 0, "the install")

    run = scene.run("/quiet", "IGNORE_ALREADY_INSTALLED=1")
    scene.check_exit_code(run, 0)
    scene.check("nothing is detected", not run.log.messages("OnDetectBegin") and not run.log.numbered("100"))
    scene.check_equal("the library asked the engine to quit",
                      run.log.numbered("500"), ["Shutting down, exit code: 0x0"])
    scene.check_equal("the run ends in order", run.log.messages("OnShutdown"), ["Entering OnShutdown"])
    scene.check_installed()

    # With a 0 the same run answers the prompt by its default, which starts the client.
    scene.check_exit_code(scene.run("/quiet", "IGNORE_ALREADY_INSTALLED=0", log="without"), 0, "with a 0 the engine")
    scene.wait_for(lambda: scene.read(facts.LAUNCHES), "the client's start")
    launcher = facts.client_file("PalisadeLauncher.exe")
    scene.check_equal("and the client starts to look for updates, now for the first time",
                      scene.read(facts.LAUNCHES).splitlines(), [f'"{launcher}" /checkForUpdate'])
