"""The same under `/quiet`: the newer installer installs, asks nothing, and both end by themselves."""
from harness import newer


def play(scene):
    newer.thin_installer(scene)
    newer.offer(scene)
    run = scene.run("/quiet", bound=150)
    scene.check_exit_code(run, 0)
    scene.check_installed(version=newer.VERSION)
    older_log, newer_log = newer.logs(scene)
    newer.check_replaced(scene, older_log, newer_log)
    command = next(text for text in newer_log.messages("OnStartup") if text.startswith("Command line: "))
    scene.check("the newer one is started embedded, with the quiet switch",
                "-burn.embedded" in command and "/quiet" in command, command)
    scene.check("no window shows", scene.window.look() is None)
