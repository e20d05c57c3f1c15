"""Who installs is asked about the older client: closes and comes back, declines; in a second install accepts."""
from harness.scenario import older
from harness.scenario.registry import UNAVAILABLE, check_changes, listing
from harness.scenario.telemetry import (OVERLAY, TALLY_INSTALL, check_telemetry, overlay, start_page, thick_install,
                                        told_so_far)
from harness.desktop.window import ACTION1, ACTION2, CLOSE

REMOVE = "before-files property PDX_UNINSTALL_BASTION"
UNINSTALL, NOT_NOW, CLOSES = OVERLAY


def install(scene, log: str, *clicks: str) -> None:
    told = told_so_far(scene)
    scene.script(REMOVE)
    run = scene.start_install("PDX_MERIDIAN_COHORT=blue", log=log)
    scene.wait_for_page("older client", log)
    if CLOSES in clicks:
        scene.window.click(CLOSE)
        scene.wait_for_page("prompt", log + "-close-prompt")
        scene.window.click(ACTION1)
        scene.wait_for_page("older client", log + "-again")
    scene.check(f"nothing is planned before the offer is {log}", not run.log_so_far().numbered("200"))
    scene.window.click(ACTION1 if UNINSTALL in clicks else ACTION2)
    run.finish(90)
    scene.check_exit_code(run, 0, f"with the offer {log} the engine")
    scene.check_equal("the package is told the answer", scene.answer(REMOVE), "1" if UNINSTALL in clicks else "0")
    check_telemetry(scene, since=told, development=True, **thick_install(run) | {
        "tally": [*start_page(cohort="blue"), *overlay(*clicks, cohort="blue"), *TALLY_INSTALL]})


def play(scene):
    scene.services  # there before the first run
    scene.make_configurable()
    scene.override("[app]\nmeridian.promptBastionUninstall = true\n")
    older.install(scene)
    install(scene, "declined", CLOSES, NOT_NOW)
    declined = listing(scene)
    scene.uninstall()
    install(scene, "accepted", UNINSTALL)
    check_changes(scene, "the answer is the package's to follow", declined, UNAVAILABLE)
