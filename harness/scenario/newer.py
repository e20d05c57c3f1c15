"""A newer installer for a thin one to be replaced by, on the deployment's own hosts."""
from urllib.parse import urlsplit

from harness.scenario import client
from harness.scenario.engine_log import EngineLog
from harness.scenario.telemetry import Sent
from harness.services import configured

VERSION = "12.38.0.1"
REPLY = {"recommended": {"version": VERSION}}
FILE = client.EXCHANGE + "\\newer\\PalisadeSetup.exe"
# A sandbox has the loopback adapter alone, and that has no hardware address: the bucket is that of an empty one.
BUCKET_PATH = "/autopatch/upgrade/buckets/62"
INSTALLER_PATH = urlsplit(configured("installer.downloadurl")[0]).path
REPLACES = ["Plan begin, 1 packages, action: UpdateReplaceEmbedded"]


def offer(scene) -> str:
    """Makes the scenario's installer a thin one, names a newer version to it and serves that, which is thin too. Gives
    the client's address."""
    link = scene.runs.make_thin_bundle()
    scene.services.download.serve(INSTALLER_PATH, scene.runs.make_bundle(FILE, version=VERSION, download_url=link))
    scene.services.update.answer(body=REPLY)
    return link


def logs(scene) -> list[EngineLog]:
    """The logs of all installers, in the order of their starts."""
    return [EngineLog(file) for file in sorted(scene.runs.logs())]


def check_replaced(scene, sent: Sent, link: str, first: EngineLog, second: EngineLog) -> None:
    """The first installer asked once and fetched the second, which did not ask, and fetched the client."""
    checks = scene.checks
    asked, fetched = scene.services.requests("update"), scene.services.requests("download")
    checks.equal("one update is asked for, by bucket", [r.path for r in asked], [BUCKET_PATH])
    checks.equal("the newer installer is fetched, then the client", [(r.method, r.path) for r in fetched],
                 [(method, path) for path in (INSTALLER_PATH, urlsplit(link).path) for method in ("HEAD", "GET")])
    checks.equal("the first plans its own replacement", first.numbered("200"), REPLACES)
    checks.equal("the newer one an install", second.numbered("200"), ["Plan begin, 1 packages, action: Install"])
    checks.that("the newer one looks for no bucket", not second.has("^Using bucket value"))
    checks.equal("and has no error", second.messages("OnError") + second.closing_errors(), [])
    checks.equal("its end is a good one", second.exit_code, 0)
    starts = [event["param"]["autopatch"] for event in sent.brisk("inst.sess.strt")]
    checks.equal("both report their start, one as an update", sorted(starts), [False, True])
    sessions = {event["session"] for event in sent.brisk()}
    checks.that("in one session", len(sessions) == 1, sessions)
