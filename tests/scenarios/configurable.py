"""Where the embedded test certificate is trusted, override.cfg changes settings; elsewhere it is not even opened."""
from harness.scenario import client as facts

RUN_KEY = "HKCU\\Software\\Microsoft\\Windows\\CurrentVersion\\Run"
CHANGED = """
[app]
meridian.enableMigration = false
[qa]
hosts = ["one", "two"]
installer.allowWindows7 = false
[indev]
startOnBoot = true
"""
FOREIGN = "\"C:\\Program Files\\Palisade Two\\PalisadeLauncher.exe\" -silent"
ARRAY = "Unsupported value type (array) found in config file"


def run_traced(scene, log: str):
    """Runs the bundle; gives the run and whether any process opened the override file."""
    trace = scene.out / f"{log}-files.txt"
    with trace.open("wb") as errors:
        run = scene.run("/quiet", log=log, environment={"WINEDEBUG": "+file"}, stderr=errors)
    opened = [line for line in trace.read_text("utf-8", "replace").splitlines()
              if "CreateFile" in line and "override.cfg" in line]
    trace.unlink()
    return run, bool(opened)


def settings(run) -> list[str | None]:
    """Beside an older client, which goes where the move is on."""
    return [run.log.variables.get(name) for name in ("PDX_MERIDIAN_ENABLE", "PDX_UNINSTALL_BASTION",
                                                     "PDX_ALLOW_WINDOWS_7")]


def check_start_on_boot(scene, when: str, wanted: str | None) -> None:
    scene.check_equal(f"{when} the client's start with the session", scene.registry(RUN_KEY, "Fenwick"), wanted)


def told_configurable(run) -> bool:
    return run.log.has(r"^\[STARTUP\] .* configurable\[true\]")


def play(scene):
    scene.prefix.set_registry("HKLM\\Software\\Bastion", "InstallSuccesfull", "true", view=32)
    scene.override(CHANGED)
    run, opened = run_traced(scene, "untrusted")
    scene.check_exit_code(run, 0, "without the trust the engine")
    scene.check("the start tells that it is not configurable", run.log.has(r"^\[STARTUP\] .* configurable\[false\]"))
    scene.check("override.cfg is not opened", not opened)
    scene.check_equal("the settings are those it carries", settings(run), ["1", "1", "1"])

    check_start_on_boot(scene, "without the trust an install does not set", None)
    scene.prefix.set_registry(RUN_KEY, "Fenwick", FOREIGN)
    scene.uninstall()
    check_start_on_boot(scene, "an uninstall leaves what another program has put in the place of", FOREIGN)

    scene.make_configurable()
    run, opened = run_traced(scene, "engine")
    scene.check_exit_code(run, 0, "with the trust the engine")
    scene.check("the start tells that it is configurable", told_configurable(run))
    scene.check("override.cfg is opened", opened)
    scene.check_equal("it changes the settings before and behind the array", settings(run), ["0", None, "0"])
    arrays = [line for line in run.log.library_lines() if line.text == ARRAY]
    check_start_on_boot(scene, "with the trust an install sets",
                        f"\"{facts.client_file('PalisadeLauncher.exe')}\" -silent")
    scene.check("the array is logged as an error in both readings",
                [line.level for line in arrays] == ["ERROR", "ERROR"], f"{len(arrays)} lines")

    scene.override("[app\nmeridian.enableMigration = false\n")
    run, _ = run_traced(scene, "syntax-error")
    scene.check_exit_code(run, 0, "with a syntax error the engine")
    errors = [line.text for line in run.log.library_lines()
              if line.function == "LoadConfigStream" and line.level == "ERROR"]
    scene.check("the syntax error is logged in both readings", len(errors) == 2, " | ".join(errors))
    scene.check("the run is configurable all the same", told_configurable(run))
    scene.check_equal("and the settings are those it carries", settings(run), ["1", "1", "1"])
    scene.uninstall("second-uninstall")
    check_start_on_boot(scene, "an uninstall removes", None)
