"""A session's identifier that a parent process gives is used as it stands, whatever its form, at both services."""
from harness.checking.telemetry import check_telemetry, thick_install

GIVEN = "Sitzung {7} der Mutter, ÄÖÜ"


def play(scene):
    scene.services  # there before the first run
    run = scene.run("/quiet", environment={"PDX_INSTALLER_SESSION_ID": GIVEN})
    scene.check_exit_code(run, 0)
    told = run.log.messages("TelemetryManager::createSessionId")
    scene.check_equal("the log names it", told, [f"Installer session: {GIVEN}"])
    check_telemetry(scene, **thick_install(run, shown=False) | {"session": GIVEN})
