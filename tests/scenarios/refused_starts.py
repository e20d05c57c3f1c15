"""A run that may not start detects nothing and ends with its error: on Windows 6.0, and beside another that runs."""
import shutil

from harness.scenario import client as facts
from harness.scenario.scene import SETUP

SECOND = facts.EXCHANGE + "\\SecondSetup.exe"


def check_refused(scene, run, what: str, code: int) -> None:
    status = 0xA7FF0000 + code
    scene.check_exit_code(run, status, f"{what}: the engine")
    errors = run.log.messages("OnError")
    scene.check(f"{what}: its one error is {code}", len(errors) == 1 and f", dwCode={code}, " in errors[0], errors)
    scene.check(f"{what}: it detects nothing", not run.log.messages("OnDetectBegin") and not run.log.numbered("100"))
    scene.check_equal(f"{what}: the closing lines tell it", run.log.closing_errors(), [f"{status:x}"])


def check_version(scene, run, version: str) -> None:
    told = run.log.numbered("001")
    scene.check(f"the engine runs on {version}", f"Windows v{version} " in "".join(told), told)


def play(scene):
    scene.windows_version("vista")
    run = scene.run("/quiet")
    check_version(scene, run, "6.0")
    check_refused(scene, run, "on 6.0", 1150)
    scene.check_equal("nothing is installed", scene.client_state()[0], set())

    scene.windows_version("win7")
    shutil.copyfile(scene.path(SETUP), scene.path(SECOND))
    scene.script("""
        before-files mark first-is-under-way
        before-files wait-for second-has-ended
    """)
    first = scene.start("/quiet", log="windows-7")
    scene.wait_for_mark("first-is-under-way", "the first run's package")
    second = scene.run("/quiet", program=SECOND, log="second")
    scene.mark("second-has-ended")
    first.finish(90)
    check_refused(scene, second, "a second beside the first", 1152)
    scene.check_equal("the first was under way all the time",
                      scene.answer("before-files wait-for second-has-ended"), "came")
    check_version(scene, first, "6.1")
    scene.check_exit_code(first, 0, "there the engine")
    scene.check_equal("PDX_ALLOW_WINDOWS_7 is set there", first.log.variables.get("PDX_ALLOW_WINDOWS_7"), "1")
    scene.check_installed()
    third = scene.run("/quiet", "IGNORE_ALREADY_INSTALLED=1", log="third")
    scene.check_exit_code(third, 0, "a third, after the first has ended,")
