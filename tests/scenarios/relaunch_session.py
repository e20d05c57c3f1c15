"""A full installer asks the two telemetry services alone, in the session that a parent process names, as it stands."""
from harness.checking.telemetry import check_telemetry, thick_install

GIVEN = "Sitzung {7} der Mutter, ÄÖÜ"


def play(scene):
    scene.services  # there before the first run
    run = scene.run("/quiet", environment={"PDX_INSTALLER_SESSION_ID": GIVEN})
    scene.check_exit_code(run, 0)
    told = run.log.messages("TelemetryManager::createSessionId")
    scene.check_equal("the log names it", told, [f"Installer session: {GIVEN}"])
    scene.check_equal("only the two telemetry services are asked", {r.service for r in scene.services.requests()},
                      {"brisk", "tally"})
    check_telemetry(scene, **thick_install(run, shown=False) | {"session": GIVEN})
