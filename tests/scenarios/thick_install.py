"""A person installs from the thick variant: no update is asked for, nothing is downloaded, and both services are told."""
from harness.checking.telemetry import check_telemetry, thick_install
from harness.seeing.window import ACTION1


def play(scene):
    services = scene.services
    run = scene.start_to_welcome()
    scene.check_equal("nothing is sent before the person goes on", len(services.requests()), 0)
    scene.window.click(ACTION1)
    run.finish(90)
    scene.check_exit_code(run, 0)
    scene.check_installed()
    scene.check_equal("only the two telemetry services are asked", {r.service for r in services.requests()},
                      {"brisk", "tally"})
    check_telemetry(scene, **thick_install(run))
