"""Cancelling a repair after its service has ended: the clean-up is completed, and nothing is installed."""
from harness.desktop.window import CLOSE
from harness.scenario import client
from harness.scenario.registry import run_service
from harness.scenario.telemetry import Sent


def play(scene):
    scene.services  # before the first run
    scene.window.use_names()
    scene.runs.install()
    run_service(scene, "normal")
    sent, held = Sent(scene), client.file("held.log")
    scene.machine.path(held).write_text("in use")
    scene.checks.equal("a file keeps the clean-up waiting", scene.machine.command(f"hold-file {held}"), "held")
    run = scene.runs.start("PDX_REPAIR=1")
    scene.wait_for(lambda: scene.machine.command(f"service-state {client.SERVICE}") == "0", "the end of the service")
    # Without the question: the clean-up waits only 5 seconds for a file.
    scene.window.click_twice(CLOSE)
    scene.window.wait_for_end()
    scene.machine.command("release")
    scene.checks.cancelled(run.finish(60), "the engine")
    scene.checks.nothing_planned(run, "the repair")
    scene.checks.equal("the telemetry reports a cancelled repair", sent.names(),
                       (["inst.sess.strt", "inst.repr.strt", "inst.repr.canc", "inst.sess.stop"], ["install"]))
    scene.checks.that("the client is gone", not scene.machine.exists(client.INSTALL_FOLDER))
    scene.checks.equal("and its record", scene.machine.values(client.PRODUCT_KEY), {})
