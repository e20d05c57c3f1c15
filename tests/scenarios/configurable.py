"""Where the embedded test certificate is trusted, override.cfg changes settings; elsewhere it is not even opened."""
from harness.scenario import client

RUN_KEY = "HKCU\\Software\\Microsoft\\Windows\\CurrentVersion\\Run"
CHANGED = """
[app]
meridian.enableMigration = false
[qa]
installer.allowWindows7 = false
[indev]
startOnBoot = true
"""
FOREIGN = "\"C:\\Program Files\\Palisade Two\\PalisadeLauncher.exe\" -silent"
# Beside an older client, which is removed where the move is on.
VARIABLES = "PDX_MERIDIAN_ENABLE", "PDX_UNINSTALL_BASTION", "PDX_ALLOW_WINDOWS_7"
OWN = ["1", "1", "1"]  # what the library's own settings make of them


def install(scene, log: str, opens: bool, settings: list[str | None]):
    """Installs, and checks whether the override file is opened, by any process, and is in force."""
    trace = scene.out / f"{log}-files.txt"
    with trace.open("wb") as errors:
        run = scene.runs.install(log=log, environment={"WINEDEBUG": "+file"}, stderr=errors)
    opened = [line for line in trace.read_text("utf-8", "replace").splitlines()
              if "CreateFile" in line and "override.cfg" in line]
    trace.unlink()
    scene.checks.equal(f"{log}: override.cfg is opened or not", bool(opened), opens)
    scene.checks.that(f"{log}: the start logs whether it is configurable",
                      run.log.has(rf"^\[STARTUP\] .* configurable\[{str(opens).lower()}\]"))
    scene.checks.equal(f"{log}: the settings", [run.log.variables.get(name) for name in VARIABLES], settings)


def check_start_on_boot(scene, when: str, wanted: str | None) -> None:
    scene.checks.equal(f"{when} the client's start with the session", scene.machine.value(RUN_KEY, "Fenwick"), wanted)


def play(scene):
    scene.machine.set_value("HKLM\\Software\\Bastion", "InstallSuccesfull", "true", view=32)
    scene.machine.override(CHANGED)
    install(scene, "untrusted", False, OWN)
    check_start_on_boot(scene, "without the trust an install does not set", None)
    scene.machine.set_value(RUN_KEY, "Fenwick", FOREIGN)
    scene.runs.uninstall()
    check_start_on_boot(scene, "an uninstall leaves what another program has put in the place of", FOREIGN)

    scene.machine.make_configurable()
    install(scene, "engine", True, ["0", None, "0"])
    check_start_on_boot(scene, "with the trust an install sets", f"\"{client.LAUNCHER}\" -silent")
    scene.runs.uninstall("second-uninstall")
    check_start_on_boot(scene, "an uninstall removes", None)
