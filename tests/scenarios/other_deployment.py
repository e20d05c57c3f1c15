"""The library built with another deployment's configuration files asks that deployment's hosts, and no other."""
from urllib.parse import urlsplit

from harness.building import bundle
from harness.scenario import newer
from harness.scenario.telemetry import check_telemetry, thin_install
from harness.places import OTHER_CONFIGURATIONS, OTHER_LIBRARY, PACKAGE
from harness.services import configured

KEYS = {"update": "updater.url", "download": "installer.downloadurl", "brisk": "telemetry.brisk.url",
        "tally": "telemetry.tally.url"}
ADDRESSES = {service: urlsplit(configured(key, (OTHER_CONFIGURATIONS,))[0]) for service, key in KEYS.items()}
HOSTS = {service: address.netloc for service, address in ADDRESSES.items()}
PATH = f"/client/{bundle.PACKAGE_ID}"


def play(scene):
    services = scene.services
    services.download.serve(PATH, PACKAGE)
    link = f"https://{HOSTS['download']}{PATH}"
    scene.make_bundle(library=OTHER_LIBRARY, download_url=link)

    run = scene.start_install().finish(90)
    scene.check_exit_code(run, 0)
    scene.check_installed()
    check_telemetry(scene, **thin_install(run, link), hosts=HOSTS)
    check_hosts(scene, "an install asks")
    scene.uninstall()

    # The newer installer is not there, so that the run comes as far as its first download.
    before = len(services.requests("download"))
    services.update.answer(body={"recommended": {"version": newer.VERSION}})
    run = scene.start(log="replacement")
    scene.wait_for(lambda: services.requests("download")[before:], "the download of a newer installer")
    scene.cancel(run)
    scene.check_equal("a newer installer is fetched by its version",
                      {request.path for request in services.requests("download")[before:]},
                      {ADDRESSES["download"].path.format(version=newer.VERSION)})
    check_hosts(scene, "a replacement asks")


def check_hosts(scene, what: str) -> None:
    scene.check_equal(f"{what} the other deployment's hosts",
                      {(request.service, request.headers["Host"]) for request in scene.services.requests()},
                      set(HOSTS.items()))
