"""A person is asked about the older client: closes and comes back, declines; in a second install accepts."""
from harness.desktop.window import ACTION1, ACTION2, CLOSE
from harness.scenario import older
from harness.scenario.registry import UNAVAILABLE, check_changes, listing
from harness.scenario.telemetry import OVERLAY, TALLY_INSTALL, Sent, overlay, start_page, thick_install

REMOVE = "before-files property PDX_UNINSTALL_BASTION"
UNINSTALL, NOT_NOW, CLOSES = OVERLAY


def install(scene, log: str, *clicks: str) -> None:
    sent = Sent(scene)
    scene.runs.script(REMOVE)
    run = scene.runs.start_install("PDX_MERIDIAN_COHORT=blue", log=log)
    scene.window.wait_for_page("older client", log)
    if CLOSES in clicks:
        scene.window.click(CLOSE, "prompt", log + "-close-prompt")
        scene.window.click(ACTION1, "older client", log + "-again")
    scene.checks.that(f"nothing is planned before the offer is {log}", not run.log_so_far().numbered("200"))
    scene.window.click(ACTION1 if UNINSTALL in clicks else ACTION2)
    run.ends(0, f"with the offer {log} the engine")
    answer = "1" if UNINSTALL in clicks else "0"
    scene.checks.equal("the package is given the answer", scene.runs.answer(REMOVE), answer)
    sent.check(thick_install(run, development=True, tally=[
        *start_page(cohort="blue"), *overlay(*clicks, cohort="blue"), *TALLY_INSTALL]))


def play(scene):
    scene.services  # before the first run
    scene.machine.make_configurable(older.ASKS)
    older.install(scene)
    install(scene, "declined", CLOSES, NOT_NOW)
    declined = listing(scene)
    scene.runs.uninstall()
    install(scene, "accepted", UNINSTALL)
    check_changes(scene, "the answer is the package's to follow", declined, UNAVAILABLE)
