"""A run that may not start detects nothing and ends with its error: on Windows 6.0, and beside another that runs."""
import shutil

from harness.scenario import client
from harness.scenario.runs import SETUP

SECOND = client.EXCHANGE + "\\SecondSetup.exe"


def check_refused(scene, run, what: str, code: int) -> None:
    status = 0xA7FF0000 + code
    scene.checks.exit_code(run, status, f"{what}: the engine")
    errors = run.log.messages("OnError")
    scene.checks.that(f"{what}: its one error is {code}", len(errors) == 1 and f", dwCode={code}, " in errors[0],
                      errors)
    scene.checks.equal(f"{what}: it detects nothing", run.log.messages("OnDetectBegin") + run.log.numbered("100"), [])
    scene.checks.equal(f"{what}: the closing lines log it", run.log.closing_errors(), [f"{status:x}"])


def check_version(scene, run, version: str) -> None:
    system = "".join(run.log.numbered("001"))
    scene.checks.that(f"the engine runs on {version}", f"Windows v{version} " in system, system)


def play(scene):
    scene.machine.windows_version("vista")
    run = scene.runs.start("/quiet").finish()
    check_version(scene, run, "6.0")
    check_refused(scene, run, "on 6.0", 1150)
    scene.checks.equal("nothing is installed", scene.machine.client_files(), set())

    scene.machine.windows_version("win7")
    shutil.copyfile(scene.machine.path(SETUP), scene.machine.path(SECOND))
    scene.runs.pause()
    first = scene.runs.start("/quiet", log="windows-7")
    scene.runs.wait_for_mark()
    second = scene.runs.start("/quiet", program=SECOND, log="second").finish()
    scene.runs.mark()
    first.ends(0, "there the engine")
    check_refused(scene, second, "a second beside the first", 1152)
    scene.checks.equal("the first was under way all the time", scene.runs.answer("before-files wait-for seen"), "came")
    check_version(scene, first, "6.1")
    scene.checks.equal("PDX_ALLOW_WINDOWS_7 is set there", first.log.variables.get("PDX_ALLOW_WINDOWS_7"), "1")
    scene.checks.installed()
    scene.runs.run("/quiet", "IGNORE_ALREADY_INSTALLED=1", log="third", whose="a third, after the first has ended,")
