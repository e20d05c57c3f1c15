"""The update service names a newer installer to a thin one: the engine fetches and starts that, which installs."""
import re
import shutil
import threading
from types import SimpleNamespace

from harness.desktop.strings import text
from harness.desktop.window import ACTION1, TITLE
from harness.scenario import client, newer
from harness.scenario.runs import SETUP
from harness.scenario.telemetry import Sent, thin_install

OTHER = client.EXCHANGE + "\\OtherSetup.exe"


class SentByTheNewer(Sent):
    """Each process has connections of its own; the older one, which posts first, keeps one a service."""

    def posts(self, service: str) -> list:
        every = super().posts(service)
        return [request for request in every if request.connection != every[0].connection]


def process_of(log) -> int:
    return int(re.search(r"processId\[(\d+)\]", log.messages("OnStartup")[0])[1])


def play(scene):
    sent, sent_by_the_newer, link = Sent(scene), SentByTheNewer(scene), newer.offer(scene)
    rest = threading.Event()
    scene.services.download.answer(hold=rest, method="GET", times=1)
    scene.window.use_names()
    run = scene.runs.start()
    scene.wait_for(lambda: len(scene.services.requests("download")) == 2, "the middle of the transfer")
    fetching = scene.window.wait_for_page("progress", "fetching")
    scene.checks.equal("the window names the download of the newer one", fetching.names.get(TITLE),
                       text("installer_download_progress_title"))
    rest.set()

    scene.window.wait_for_page("welcome", bound=120)
    first, second = newer.logs(scene)
    scene.checks.equal("of both installers' windows only the newer one's shows then",
                       {view.process: view.visible for view in scene.window.look_at_all()},
                       {process_of(first): False, process_of(second): True})
    scene.checks.that("before the click only the first one sends anything",
                      not any(event["param"]["autopatch"] for event in sent.brisk("inst.sess.strt")))

    shutil.copyfile(scene.machine.path(SETUP), scene.machine.path(OTHER))
    scene.runs.run("/quiet", program=OTHER, log="other", code=0xA7FF0480, whose="another copy beside it")

    scene.window.click(ACTION1)
    run.ends()
    scene.checks.installed(version=newer.VERSION)
    first, second, _ = newer.logs(scene)
    newer.check_replaced(scene, sent, link, first, second)
    sent_by_the_newer.check(thin_install(SimpleNamespace(log=second), link, start={"autopatch": True}))
