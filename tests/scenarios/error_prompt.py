"""A failing package ends in the error page; its check box, left alone or unticked, decides on the error report."""
from harness.desktop.strings import text
from harness.desktop.window import ACTION1, BODY, CLOSE, PICTURE, QUESTION, TITLE
from harness.scenario.telemetry import (FAILED, INSTALL_START, TALLY_INSTALL, Expected, Sent, script_failure,
                                        start_page, tally_install)

SETTING = "Setting numeric variable 'PDX_SUBMIT_ERROR_REPORT' to value "


def check_box(scene, run, what: str, wanted: list[str]) -> None:
    values = [line.removeprefix(SETTING) for line in run.log.numbered("000") if line.startswith(SETTING)]
    scene.checks.equal(what, values, wanted)


def left_checked(scene) -> None:
    scene.runs.script("after-files fail 1603")
    run = scene.runs.start_install()
    prompt = scene.window.wait_for_page("prompt", "error")
    scene.checks.equal("the error page has a picture, two texts, the box, one button and the cross",
                       set(prompt.controls), {PICTURE, TITLE, BODY, QUESTION, ACTION1, CLOSE})
    scene.checks.equal("it names the failure and the purpose of the box",
                       tuple(prompt.names.get(control) for control in (TITLE, BODY, QUESTION)),
                       (text("INSTALLER_ERROR_UNKNOWN_TITLE"), text("INSTALLER_ERROR_UNKNOWN"),
                        text("DIALOG_CLEAR-CACHE_CHECKMARK_LABEL")))
    scene.window.click(ACTION1)
    run.ends(1)
    check_box(scene, run, "the box was left checked", ["1"])
    scene.checks.equal("the closing lines log the failure", run.log.closing_errors(), ["80070643"])
    scene.checks.equal("a report is sent", len(scene.services.requests("reports")), 1)
    scene.checks.gone()


def unticked(scene) -> None:
    sent = Sent(scene)
    scene.runs.script("before-files fail 1603")
    run = scene.runs.start_install(log="unticked")
    scene.window.wait_for_page("prompt", "error-before-click")
    scene.window.click(QUESTION)
    scene.window.picture("error-unticked")
    scene.window.click(ACTION1)
    run.ends(1, "with the box unticked the engine")
    check_box(scene, run, "the box was unticked", ["0"])
    scene.checks.equal("no other report is sent", len(scene.services.requests("reports")), 1)
    execution, failure = script_failure("inst")
    del failure[1]["report_id"]
    sent.check(Expected(run, brisk=[INSTALL_START, execution, failure],
                        tally=[*start_page(), TALLY_INSTALL[0], *[tally_install("error", FAILED)] * 2]))


def two_pages(scene) -> None:
    """The package sends an error while it runs, and the run's end has another error page."""
    message = "after-files say error Something broke"
    scene.runs.script(message, "after-files wait-for seen", "after-files fail 1603")
    run = scene.runs.start_install(log="both")
    scene.window.wait_for_page("prompt", "error-on-the-way")
    scene.window.click(QUESTION)
    scene.window.click(ACTION1, "progress")
    scene.runs.mark()
    scene.window.wait_for_page("prompt", "error-at-the-end")
    scene.window.click(ACTION1)
    run.ends(1, "with two error pages the engine")
    check_box(scene, run, "the box is checked anew on each", ["0", "1"])
    scene.checks.equal("and the button answers the package", scene.runs.answer(message), "1")


def play(scene):
    scene.services  # before the first run
    scene.window.use_names()
    left_checked(scene)
    unticked(scene)
    two_pages(scene)
