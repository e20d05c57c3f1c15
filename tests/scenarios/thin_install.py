"""A person installs from the thin variant: no newer one is named, the client is downloaded, both services are told all."""
from harness.places import PACKAGE
from harness.telemetry import (AGENT, INSTALL_START, INSTALL_SUCCESS, SESSION_STOP, check_attempts, check_telemetry,
                               command_line, download_start, download_success, session_start, start_page,
                               tally_download, tally_install)
from harness.window import ACTION1

# The sandbox has the loopback adapter alone, and that has no hardware address: the bucket is that of an empty one.
BUCKET = "/autopatch/upgrade/buckets/62"


def play(scene):
    services = scene.services
    link = scene.make_thin_bundle()
    run = scene.start()
    scene.wait_for_page("welcome")
    scene.check_equal("before the person goes on a newer version is asked for, and nothing else",
                      [(r.service, r.method, r.path) for r in services.requests()], [("update", "GET", BUCKET)])
    scene.window.click(ACTION1)
    run.finish(120)
    scene.check_exit_code(run, 0)
    scene.check_installed()

    scene.check_equal("it is asked for once, by this installer",
                      [(r.status, r.headers.get("User-Agent")) for r in services.requests("update")], [(200, AGENT)])
    scene.check_equal("the package is fetched from the download host",
                      [(r.method, r.path, r.status) for r in services.requests("download")],
                      [(method, "/client/PalisadeApp.msi", 200) for method in ("HEAD", "GET")])
    brisk = [session_start(command_line(run)), download_start(link), download_success(link, PACKAGE.stat().st_size),
             INSTALL_START, INSTALL_SUCCESS, SESSION_STOP]
    tally = start_page() + [tally_download("start", "new", percent=0),
                            tally_download("finish", "success", percent=100.0),
                            tally_install("start", "new"), tally_install("finish", "success")]
    check_telemetry(scene, thin=True, brisk=brisk, tally=tally)
    check_attempts(scene, 1)
    scene.check_equal("nothing else is asked for", {r.service for r in services.requests()},
                      {"update", "download", "brisk", "tally"})
