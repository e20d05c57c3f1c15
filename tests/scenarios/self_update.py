"""A thin installer is told of a newer one: the engine fetches and starts that, and its welcome page installs."""
import re
import shutil

from harness import facts, newer
from harness.scene import SETUP
from harness.window import ACTION1

OTHER = facts.EXCHANGE + "\\OtherSetup.exe"


def process_of(log) -> int:
    return int(re.search(r"processId\[(\d+)\]", log.messages("OnStartup")[0])[1])


def play(scene):
    newer.thin_installer(scene)
    newer.offer(scene)
    run = scene.start()
    view = scene.wait_for_page("welcome", bound=120)
    older_log, newer_log = newer.logs(scene)
    scene.check("the page that asks is the newer installer's",
                view.process == process_of(newer_log) != process_of(older_log), view.process)
    scene.check("nothing is told before the person goes on, but by the first one",
                not any(event["param"]["autopatch"] for request in scene.services.requests("brisk")
                        for event in request.body if (event["g"], event["s"]) == ("sess", "strt")))

    shutil.copyfile(scene.path(SETUP), scene.path(OTHER))
    other = scene.run("/quiet", program=OTHER, log="other")
    scene.check_exit_code(other, 0xA7FF0480, "another copy beside it")

    scene.window.click(ACTION1)
    run.finish(90)
    scene.check_exit_code(run, 0)
    scene.check_installed(version=newer.VERSION)
    older_log, newer_log, _ = newer.logs(scene)
    newer.check_replaced(scene, older_log, newer_log)
