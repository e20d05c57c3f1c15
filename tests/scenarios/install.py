"""A person installs by mouse: welcome, a click on LET'S GO, the client's download, progress, and the window closes.

The update service names no newer installer to the thin one. Both telemetry services are sent every event."""
from harness.desktop.window import ACTION1, CLOSE, OPTIONS
from harness.scenario.newer import BUCKET_PATH
from harness.scenario.telemetry import UPDATE_HEADERS, Sent, differences, thin_install
from tests.scenarios.install_options import SHORTCUTS


def play(scene):
    services, sent, link = scene.services, Sent(scene), scene.runs.make_thin_bundle()
    scene.runs.script("before-files wait-for seen", "before-files progress 5 100")
    run = scene.runs.start()
    welcome = scene.window.wait_for_page("welcome")
    scene.checks.that("the page offers its options, one button and the cross",
                      {OPTIONS, ACTION1, CLOSE} <= welcome.controls.keys(), sorted(welcome.controls))
    scene.checks.that("nothing is planned before the click", not run.log_so_far().numbered("200"))
    scene.checks.equal("until then a newer version is asked for, and nothing else",
                       [(r.service, r.method, r.path) for r in services.requests()], [("update", "GET", BUCKET_PATH)])
    clicked = services.seconds()
    scene.window.click(ACTION1, "progress")
    scene.runs.mark()
    run.ends(bound=120)
    scene.checks.that("the window has closed", scene.window.look() is None)
    scene.checks.installed()
    scene.checks.equal("CreateDesktopShortcut is set", run.log.variables.get("CreateDesktopShortcut"), "1")
    found = [path for path in SHORTCUTS if scene.machine.exists(path)]
    scene.checks.that("one shortcut is on the desktop", len(found) == 1, found)

    scene.checks.equal("the update service is asked once", [r.status for r in services.requests("update")], [200])
    scene.checks.equal("with these headers", differences(services.requests("update")[0].headers, UPDATE_HEADERS), [])
    scene.checks.equal("the package is fetched from the download host",
                       [(r.method, r.path, r.status) for r in services.requests("download")],
                       [(method, "/client/PalisadeApp.msi", 200) for method in ("HEAD", "GET")])
    sent.check(thin_install(run, link))
    sent.check_attempts(1)
    early = [r.path for r in services.requests() if r.service != "update" and r.seconds < clicked]
    scene.checks.equal("nothing was sent or fetched until the click", early, [])
    scene.checks.equal("no other service is asked", {r.service for r in services.requests()},
                       {"update", "download", "brisk", "tally"})
