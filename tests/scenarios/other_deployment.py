"""The library built with another deployment's configuration files asks that deployment's hosts, and no other."""
from urllib.parse import urlsplit

from harness.building import bundle
from harness.places import OTHER_CONFIGURATIONS, OTHER_LIBRARY, PACKAGE
from harness.scenario import newer
from harness.scenario.telemetry import Sent, thin_install
from harness.services import configured

KEYS = {"update": "updater.url", "download": "installer.downloadurl", "brisk": "telemetry.brisk.url",
        "tally": "telemetry.tally.url"}
ADDRESSES = {service: urlsplit(configured(key, (OTHER_CONFIGURATIONS,))[0]) for service, key in KEYS.items()}
HOSTS = {service: address.netloc for service, address in ADDRESSES.items()}
PATH = f"/client/{bundle.PACKAGE_ID}"


def check_hosts(scene, what: str) -> None:
    scene.checks.equal(f"{what} the other deployment's hosts",
                       {(request.service, request.headers["Host"]) for request in scene.services.requests()},
                       set(HOSTS.items()))


def play(scene):
    services, sent = scene.services, Sent(scene)
    services.download.serve(PATH, PACKAGE)
    link = f"https://{HOSTS['download']}{PATH}"
    scene.runs.make_bundle(library=OTHER_LIBRARY, download_url=link)

    run = scene.runs.start_install().ends()
    scene.checks.installed()
    sent.check(thin_install(run, link, hosts=HOSTS))
    check_hosts(scene, "an install asks")
    scene.runs.uninstall()

    # The newer installer is not there, so that the run ends its first download with an error.
    before = len(services.requests("download"))
    services.update.answer(body=newer.REPLY)
    run = scene.runs.start(log="replacement")
    scene.wait_for(lambda: services.requests("download")[before:], "the download of a newer installer")
    scene.runs.cancel(run)
    scene.checks.equal("a newer installer is fetched by its version",
                       {request.path for request in services.requests("download")[before:]},
                       {ADDRESSES["download"].path.format(version=newer.VERSION)})
    check_hosts(scene, "a replacement asks")
