"""Cancelling a repair: before the service step nothing is removed; later the clean-up ends, nothing is installed."""
from harness.desktop.window import CLOSE
from harness.scenario import client
from harness.scenario.registry import check_changes, listing, run_service
from harness.scenario.telemetry import Sent

REPAIR_INITIALIZING = 0x8034
RUNNING = "4"


def service_state(scene) -> str:
    return scene.machine.command(f"service-state {client.SERVICE}")


def check_ended(scene, run, what: str, sent: Sent) -> None:
    scene.checks.cancelled(run, f"{what}: the engine")
    scene.checks.nothing_planned(run, what)
    scene.checks.equal(f"{what}: the telemetry reports a cancelled repair", sent.names(),
                       (["inst.sess.strt", "inst.repr.strt", "inst.repr.canc", "inst.sess.stop"], ["install"]))


def early(scene) -> None:
    def files() -> list:
        return sorted(scene.machine.path(client.INSTALL_FOLDER).rglob("*"))

    sent, before, files_before = Sent(scene), listing(scene), files()
    desktop = scene.machine.start_client()
    go_on = scene.window.hold_sender(REPAIR_INITIALIZING)
    run = scene.runs.start("PDX_REPAIR=1", log="early", page="progress")
    scene.runs.cancel(run, then=go_on)
    check_ended(scene, run, "early", sent)
    check_changes(scene, "early", before, {})
    scene.checks.equal("early: the files are there", files(), files_before)
    scene.checks.that("early: the client runs on", desktop.poll() is None)
    scene.checks.equal("early: and its service", service_state(scene), RUNNING)


def late(scene) -> None:
    sent, held = Sent(scene), client.file("held.log")
    scene.machine.path(held).write_text("in use")
    scene.checks.equal("late: a file keeps the clean-up waiting", scene.machine.command(f"hold-file {held}"), "held")
    run = scene.runs.start("PDX_REPAIR=1")
    scene.wait_for(lambda: service_state(scene) == "0", "the end of the service")
    # Without the question: the clean-up waits only 5 seconds for a file.
    scene.window.click_twice(CLOSE)
    scene.window.wait_for_end()
    scene.machine.command("release")
    check_ended(scene, run.finish(60), "late", sent)
    scene.checks.that("late: the client is gone", not scene.machine.exists(client.INSTALL_FOLDER))
    scene.checks.equal("late: and its record", scene.machine.values(client.PRODUCT_KEY), {})


def play(scene):
    scene.services  # before the first run
    scene.window.use_names()
    scene.runs.install()
    run_service(scene, "normal")
    early(scene)
    late(scene)
