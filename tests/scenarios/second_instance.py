"""A second copy that starts while the first runs gets error 1152 and detects nothing; the first is unharmed."""
import shutil

from harness.client import facts
from harness.staging.scene import SETUP

SECOND = facts.EXCHANGE + "\\SecondSetup.exe"


def play(scene):
    shutil.copyfile(scene.path(SETUP), scene.path(SECOND))
    scene.script("""
        before-files mark first-is-under-way
        before-files wait-for second-has-ended
    """)
    first = scene.start("/quiet", log="first")
    scene.wait_for_mark("first-is-under-way", "the first run's package")
    second = scene.run("/quiet", program=SECOND)
    scene.mark("second-has-ended")
    first.finish(90)

    scene.check_exit_code(second, 0xA7FF0480, "the second")
    errors = second.log.messages("OnError")
    scene.check("its error has the code 1152", len(errors) == 1 and ", dwCode=1152, " in errors[0], errors)
    scene.check("it detects nothing", not second.log.messages("OnDetectBegin") and not second.log.numbered("100"))
    scene.check_equal("its closing lines tell a7ff0480", second.log.closing_errors(), ["a7ff0480"])
    scene.check_exit_code(first, 0, "the first")
    scene.check_equal("the first was under way all the time",
                      scene.answer("before-files wait-for second-has-ended"), "came")
    scene.check_installed()

    third = scene.run("/quiet", log="third")
    scene.check_exit_code(third, 0, "a third, after the first has ended,")
