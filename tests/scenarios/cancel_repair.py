"""Cancelling a repair: before the service step nothing is taken; later the clean-up finishes and nothing is installed."""
from harness.scenario.registry import check_changes, listing, run_service
from harness.scenario.telemetry import names_since, told_so_far
from harness.scenario import client as facts
from harness.desktop.window import CLOSE

REPAIR_INITIALIZING = 0x8034
RUNNING = "4"


def service_state(scene) -> str:
    return scene.window.command(f"service-state {facts.SERVICE}")


def check_ended(scene, run, what: str, told: dict[str, int]) -> None:
    scene.check_cancelled(run, f"{what}: the engine")
    scene.check(f"{what}: nothing is detected", not run.log.numbered("100"))
    scene.check_equal(f"{what}: the telemetry reports a cancelled repair", names_since(scene, told),
                      (["inst.sess.strt", "inst.repr.strt", "inst.repr.canc", "inst.sess.stop"], ["install"]))


def early(scene) -> None:
    before, files = listing(scene), sorted(scene.path(facts.INSTALL_FOLDER).rglob("*"))
    told = told_so_far(scene)
    client = scene.prefix.start(facts.client_file("PalisadeDesktop.exe"), "--stay")
    scene.wait_for(lambda: "--stay" in scene.read(facts.LAUNCHES), "the client's start")
    go_on = scene.hold_sender(REPAIR_INITIALIZING)
    run = scene.start("PDX_REPAIR=1", log="early")
    scene.wait_for_page("progress", "early")
    scene.cancel(run, then=go_on)
    check_ended(scene, run, "early", told)
    check_changes(scene, "early", before, {})
    scene.check_equal("early: the files are there", sorted(scene.path(facts.INSTALL_FOLDER).rglob("*")), files)
    scene.check("early: the client runs on", client.poll() is None)
    scene.check_equal("early: and its service", service_state(scene), RUNNING)


def late(scene) -> None:
    told = told_so_far(scene)
    held = facts.client_file("held.log")
    scene.path(held).write_text("somebody writes here")
    scene.check_equal("late: a file keeps the clean-up waiting", scene.window.command(f"hold-file {held}"), "held")
    run = scene.start("PDX_REPAIR=1")
    scene.wait_for(lambda: service_state(scene) == "0", "the end of the service")
    # Without the question, for a file is waited for only for 5 seconds.
    scene.window.click_twice(CLOSE)
    scene.wait_for(lambda: not scene.window.look(), "the end of the window")
    scene.window.command("release")
    check_ended(scene, run.finish(60), "late", told)
    scene.check("late: the client is gone", not scene.exists(facts.INSTALL_FOLDER))
    scene.check_equal("late: and its record", scene.registry_values(facts.PRODUCT_KEY), {})


def play(scene):
    scene.services
    scene.use_names()
    scene.check_exit_code(scene.run("/quiet", log="install"), 0, "the install")
    scene.check_equal("the client's service runs", run_service(scene, "normal"), "running")
    early(scene)
    late(scene)
