"""A person installs from the thin variant: no newer one is named, the client is downloaded, both services are told all."""
from harness.checking.newer import BUCKET_PATH
from harness.checking.telemetry import UPDATE_HEADERS, check_attempts, check_telemetry, differences, thin_install
from harness.seeing.window import ACTION1


def play(scene):
    services = scene.services
    link = scene.make_thin_bundle()
    run = scene.start_to_welcome()
    scene.check_equal("before the person goes on a newer version is asked for, and nothing else",
                      [(r.service, r.method, r.path) for r in services.requests()], [("update", "GET", BUCKET_PATH)])
    clicked = services.seconds()
    scene.window.click(ACTION1)
    run.finish(120)
    scene.check_exit_code(run, 0)
    scene.check_installed()

    scene.check_equal("it is asked for once", [r.status for r in services.requests("update")], [200])
    scene.check_equal("with these headers", differences(services.requests("update")[0].headers, UPDATE_HEADERS), [])
    scene.check_equal("the package is fetched from the download host",
                      [(r.method, r.path, r.status) for r in services.requests("download")],
                      [(method, "/client/PalisadeApp.msi", 200) for method in ("HEAD", "GET")])
    check_telemetry(scene, **thin_install(run, link))
    early = [r.path for r in services.requests() if r.service != "update" and r.seconds < clicked]
    scene.check_equal("nothing was told or fetched until then", early, [])
    check_attempts(scene, 1)
    scene.check_equal("nothing else is asked for", {r.service for r in services.requests()},
                      {"update", "download", "brisk", "tally"})
