"""The same under `/quiet`: the newer installer installs, asks nothing, and both end by themselves."""
from harness.scenario import newer


def play(scene):
    link = newer.offer(scene)
    scene.script("""
        before-files mark under-way
        before-files wait-for seen
    """)
    run = scene.run_unseen("the newer one's package", bound=150)
    scene.check_exit_code(run, 0)
    scene.check_installed(version=newer.VERSION)
    older_log, newer_log = newer.logs(scene)
    newer.check_replaced(scene, link, older_log, newer_log)
    command = next(text for text in newer_log.messages("OnStartup") if text.startswith("Command line: "))
    scene.check("the newer one is started embedded, with the quiet switch",
                "-burn.embedded" in command and "/quiet" in command, command)
