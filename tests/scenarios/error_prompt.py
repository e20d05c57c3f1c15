"""A failing package ends in the error page; its check box, left alone or unticked, decides on the error report."""
from harness.scenario.telemetry import (FAILED, INSTALL_START, SESSION_STOP, TALLY_INSTALL, check_telemetry,
                                        command_line, script_failure, session_start, start_page, tally_install,
                                        told_so_far)
from harness.desktop.strings import text
from harness.desktop.window import ACTION1, BODY, CLOSE, PICTURE, QUESTION, TITLE

SETTING = "Setting numeric variable 'PDX_SUBMIT_ERROR_REPORT' to value "


def start(scene, script: str, log: str):
    scene.script(script)
    run = scene.start_to_welcome(log=log)
    logo = scene.window.pixels(scene.window.look().controls[PICTURE])
    scene.window.click(ACTION1)
    return run, logo


def written(run) -> list[str]:
    return [line.removeprefix(SETTING) for line in run.log.numbered("000") if line.startswith(SETTING)]


def play(scene):
    services = scene.services
    scene.use_names()
    run, logo = start(scene, "after-files fail 1603", "engine")
    prompt = scene.wait_for_page("prompt", "error")
    scene.check_equal("the error page has a picture, two texts, the box, one button and the cross",
                      set(prompt.controls), {PICTURE, TITLE, BODY, QUESTION, ACTION1, CLOSE})
    scene.check_equal("it says what happened, and what the box is for",
                      tuple(prompt.names.get(control) for control in (TITLE, BODY, QUESTION)),
                      (text("INSTALLER_ERROR_UNKNOWN_TITLE"), text("INSTALLER_ERROR_UNKNOWN"),
                       text("DIALOG_CLEAR-CACHE_CHECKMARK_LABEL")))
    scene.check("its picture is another than the first page's",
                scene.window.pixels(prompt.controls[PICTURE]) != logo)
    scene.window.click(ACTION1)
    run.finish(60)
    scene.check_exit_code(run, 1)
    scene.check_equal("the box was left checked", written(run), ["1"])
    scene.check_equal("the closing lines tell the failure", run.log.closing_errors(), ["80070643"])
    scene.check_gone()

    told, reports = told_so_far(scene), len(services.requests("reports"))
    unticked, _ = start(scene, "before-files fail 1603", "unticked")
    scene.wait_for_page("prompt", "error-before-click")
    scene.window.click(QUESTION)
    scene.window.picture("error-unticked")
    scene.window.click(ACTION1)
    unticked.finish(60)
    scene.check_exit_code(unticked, 1, "with the box unticked the engine")
    scene.check_equal("the box was unticked", written(unticked), ["0"])
    scene.check_equal("a report went out before, and none does now",
                      [reports, *services.requests("reports")[reports:]], [1])
    execution, failure = script_failure("inst")
    del failure[1]["report_id"]
    check_telemetry(scene, thin=False, since=told,
                    brisk=[session_start(command_line(unticked)), INSTALL_START, execution, failure, SESSION_STOP],
                    tally=[*start_page(), TALLY_INSTALL[0], *[tally_install("error", FAILED)] * 2])

    # A message of the package's own comes while it runs, and the end has an error page of its own.
    both, _ = start(scene, """
        after-files say error Something broke
        after-files wait-for seen
        after-files fail 1603
    """, "both")
    scene.wait_for_page("prompt", "error-on-the-way")
    scene.window.click(QUESTION)
    scene.window.click(ACTION1)
    scene.wait_for_page("progress")
    scene.mark("seen")
    scene.wait_for_page("prompt", "error-at-the-end")
    scene.window.click(ACTION1)
    both.finish(60)
    scene.check_exit_code(both, 1, "with two error pages the engine")
    scene.check_equal("the box is checked anew on each", written(both), ["0", "1"])
    scene.check_equal("and the button answers the package", scene.answer("after-files say error Something broke"), "1")
