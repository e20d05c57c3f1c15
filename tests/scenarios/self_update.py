"""A thin installer is told of a newer one: the engine fetches and starts that, and its welcome page installs."""
import re
import shutil
import threading
from types import SimpleNamespace

from harness.scenario import newer
from harness.scenario.telemetry import brisk_events, check_telemetry, command_line, session_start, thin_install
from harness.scenario import client as facts
from harness.desktop.strings import text
from harness.desktop.window import ACTION1, TITLE
from harness.scenario.scene import SETUP

OTHER = facts.EXCHANGE + "\\OtherSetup.exe"


def process_of(log) -> int:
    return int(re.search(r"processId\[(\d+)\]", log.messages("OnStartup")[0])[1])


def play(scene):
    link = newer.offer(scene)
    rest = threading.Event()
    scene.services.download.answer(hold=rest, method="GET", times=1)
    scene.use_names()
    run = scene.start()
    scene.wait_for(lambda: len(scene.services.requests("download")) == 2, "the middle of the transfer")
    fetching = scene.wait_for_page("progress", "fetching")
    scene.check_equal("while the newer one is fetched, the window says so", fetching.names.get(TITLE),
                      text("installer_download_progress_title"))
    rest.set()

    scene.wait_for_page("welcome", bound=120)
    older_log, newer_log = newer.logs(scene)
    scene.check_equal("of both installers' windows only the newer one's shows then",
                      {view.process: view.visible for view in scene.window.look_at_all()},
                      {process_of(older_log): False, process_of(newer_log): True})
    scene.check("nothing is told before the person goes on, but by the first one",
                not any(event["param"]["autopatch"] for event in brisk_events(scene, "inst.sess.strt")))

    shutil.copyfile(scene.path(SETUP), scene.path(OTHER))
    other = scene.run("/quiet", program=OTHER, log="other")
    scene.check_exit_code(other, 0xA7FF0480, "another copy beside it")

    scene.window.click(ACTION1)
    run.finish(90)
    scene.check_exit_code(run, 0)
    scene.check_installed(version=newer.VERSION)
    older_log, newer_log, _ = newer.logs(scene)
    newer.check_replaced(scene, link, older_log, newer_log)
    check_told(scene, SimpleNamespace(log=newer_log), link)


def check_told(scene, run, link: str) -> None:
    """The newer one reports a whole install, as an update's. Each process has connections of its own; the older one, which
    is the first to post, keeps one a service."""
    def posts(service: str) -> list:
        every = scene.services.requests(service)
        return [request for request in every if request.connection != every[0].connection]

    told = thin_install(run, link)
    told["brisk"][0] = session_start(command_line(run), autopatch=True)
    newer_alone = SimpleNamespace(check=scene.check, check_equal=scene.check_equal, services=SimpleNamespace(
        requests=posts, brisk=scene.services.brisk, tally=scene.services.tally))
    check_telemetry(newer_alone, **told)
