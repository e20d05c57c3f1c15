"""A newer installer for a thin one to be replaced by, on the deployment's own hosts."""
from urllib.parse import urlsplit

from harness.scenario.engine_log import EngineLog
from harness.scenario.telemetry import brisk_events
from harness.scenario import client as facts
from harness.services import configured

VERSION = "12.38.0.1"
FILE = facts.EXCHANGE + "\\newer\\PalisadeSetup.exe"
# A sandbox has the loopback adapter alone, and that has no hardware address: the bucket is that of an empty one.
BUCKET_PATH = "/autopatch/upgrade/buckets/62"
INSTALLER_PATH = urlsplit(configured("installer.downloadurl")[0]).path


def offer(scene) -> str:
    """Makes the scenario's installer a thin one, names a newer version to it and serves that. The newer one is thin too:
    it could ask again. Gives the client's address."""
    link = scene.make_thin_bundle()
    scene.services.download.serve(INSTALLER_PATH, scene.make_bundle(FILE, version=VERSION, download_url=link))
    scene.services.update.answer(body={"recommended": {"version": VERSION}})
    return link


def logs(scene) -> list[EngineLog]:
    """The logs of all installers, in the order of their starts."""
    return [EngineLog(file) for file in sorted(scene.engine_logs())]


def check_replaced(scene, link: str, first: EngineLog, second: EngineLog) -> None:
    """The first installer asked once and fetched the second, which did not ask, and fetched the client."""
    scene.check_equal("one update is asked for, by bucket", [r.path for r in scene.services.requests("update")],
                      [BUCKET_PATH])
    scene.check_equal("the newer installer is fetched, then the client",
                      [(r.method, r.path) for r in scene.services.requests("download")],
                      [(method, path) for path in (INSTALLER_PATH, urlsplit(link).path) for method in ("HEAD", "GET")])
    scene.check_equal("the first plans its own replacement", first.numbered("200"),
                      ["Plan begin, 1 packages, action: UpdateReplaceEmbedded"])
    scene.check_equal("the newer one an install", second.numbered("200"), ["Plan begin, 1 packages, action: Install"])
    scene.check("the newer one looks for no bucket", not second.has("^Using bucket value"))
    scene.check_equal("and has no error", second.messages("OnError") + second.closing_errors(), [])
    scene.check_equal("its end is a good one", second.exit_code, 0)
    starts = [event["param"]["autopatch"] for event in brisk_events(scene, "inst.sess.strt")]
    scene.check_equal("both tell their start, one as an update", sorted(starts), [False, True])
    sessions = {event["session"] for event in brisk_events(scene)}
    scene.check("in one session", len(sessions) == 1, sessions)
