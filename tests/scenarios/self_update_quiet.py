"""A self-update under `/quiet`: the newer installer installs, asks nothing, and both end by themselves."""
from harness.scenario import newer
from harness.scenario.telemetry import Sent


def play(scene):
    sent, link = Sent(scene), newer.offer(scene)
    scene.runs.pause()
    run = scene.runs.run_unseen("the newer one's package", bound=150)
    scene.checks.exit_code(run, 0)
    scene.checks.installed(version=newer.VERSION)
    first, second = newer.logs(scene)
    newer.check_replaced(scene, sent, link, first, second)
    command = next(text for text in second.messages("OnStartup") if text.startswith("Command line: "))
    scene.checks.that("the newer one is started embedded, with the quiet switch",
                      "-burn.embedded" in command and "/quiet" in command, command)
