"""A person installs by mouse: welcome, a click on LET'S GO, the client's download, progress, and the window closes.

No newer installer is named to the download installer, and both services are told all."""
from harness.scenario.newer import BUCKET_PATH
from harness.scenario.telemetry import UPDATE_HEADERS, check_attempts, check_telemetry, differences, thin_install
from harness.desktop.window import ACTION1, CLOSE, OPTIONS
from tests.scenarios.install_options import SHORTCUTS


def play(scene):
    services = scene.services
    link = scene.make_thin_bundle()
    scene.script("""
        before-files wait-for seen
        before-files progress 5 100
    """)
    run = scene.start()
    welcome = scene.wait_for_page("welcome")
    scene.check("the page offers its options, one button and the cross",
                {OPTIONS, ACTION1, CLOSE} <= welcome.controls.keys(), sorted(welcome.controls))
    scene.check("nothing is planned before the click", not run.log_so_far().numbered("200"))
    scene.check_equal("until then a newer version is asked for, and nothing else",
                      [(r.service, r.method, r.path) for r in services.requests()], [("update", "GET", BUCKET_PATH)])
    clicked = services.seconds()
    scene.window.click(ACTION1)
    scene.wait_for_page("progress")
    scene.mark("seen")
    run.finish(120)
    scene.check_exit_code(run, 0)
    scene.check("the window has closed", scene.window.look() is None)
    scene.check_installed()
    scene.check_equal("CreateDesktopShortcut is set", run.log.variables.get("CreateDesktopShortcut"), "1")
    found = [path for path in SHORTCUTS if scene.exists(path)]
    scene.check("one shortcut lies on the desktop", len(found) == 1, found)

    scene.check_equal("it is asked for once", [r.status for r in services.requests("update")], [200])
    scene.check_equal("with these headers", differences(services.requests("update")[0].headers, UPDATE_HEADERS), [])
    scene.check_equal("the package is fetched from the download host",
                      [(r.method, r.path, r.status) for r in services.requests("download")],
                      [(method, "/client/PalisadeApp.msi", 200) for method in ("HEAD", "GET")])
    check_telemetry(scene, **thin_install(run, link))
    early = [r.path for r in services.requests() if r.service != "update" and r.seconds < clicked]
    scene.check_equal("nothing was told or fetched until the click", early, [])
    check_attempts(scene, 1)
    scene.check_equal("nothing else is asked for", {r.service for r in services.requests()},
                      {"update", "download", "brisk", "tally"})
