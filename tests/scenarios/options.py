"""Arguments name=value become variables; folder and log file are those asked for, and told of as others than usual.

What is told of an install when it begins follows folder, drive and what WMI knows."""
from harness.scenario.telemetry import brisk_events
from harness.scenario.client import HELD

FOLDER = "E:\\Spiele\\Größe Ünïcode 遊戲"
LOG = "E:\\Protokoll.log"
LOCATOR = "HKLM\\Software\\Classes\\CLSID\\{4590F811-1D3A-11D0-891F-00AA004B2E24}\\InprocServer32"
NOT_REGISTERED = "hr=80040154"


def check_told(scene, run, what: str, path: str, drive: str, way: str) -> str:
    """The install's record, in the event, in the log, and how it was found out; gives the machine's hash."""
    event = brisk_events(scene, "inst.inst.strt")[-1]
    time = event["param"].pop("intm")
    # Wine's WMI knows drives, but a partition without a name, so that the medium stays unknown.
    scene.check_equal(f"{what}: what is told", event["param"], {"inst": "new", "path": path, "dskm": "", "dtyp": drive})
    lines = [line for line in run.log.messages("OnExecuteBegin") if line.startswith("instTelemetry.")]
    scene.check_equal(f"{what}: the log has the same", lines,
                      ["instTelemetry.diskMedia = ", f"instTelemetry.driveType(system/data) = {drive}",
                       "instTelemetry.installStatus = new", f"instTelemetry.installTime = {time}",
                       f"instTelemetry.path (custom/default) = {path}"])
    scene.check_equal(f"{what}: how it was found out",
                      [line.text for line in run.log.library_lines() if line.function == "installTelemetry"], [way])
    return event["machash"]


def play(scene):
    scene.services  # there before the first run
    (scene.out / "data").mkdir()
    scene.prefix.add_drive("E", scene.out / "data")
    scene.script("before-files sharing PDXTEST_LOG")
    run = scene.run("/quiet", "A=B=C", "/X=1", "-X=1", "/Y=1", "-Z=1", "EMPTY=", "QUOTED=two words  and more", "plain",
                    "InstallFolder=" + FOLDER, log_file=LOG)
    scene.check_exit_code(run, 0)
    variables = run.log.variables
    for name, wanted in {"A": "B=C", "EMPTY": "", "QUOTED": "two words  and more", "InstallFolder": FOLDER}.items():
        scene.check_equal(f"{name} is set", variables.get(name), wanted)
    refused = {"X", "/X", "-X", "Y", "/Y", "Z", "-Z", "plain"} & variables.keys()
    scene.check("what begins with \"/\" or \"-\" or has no \"=\" sets nothing", not refused, ", ".join(refused))
    scene.check_installed(FOLDER)
    locked = [line.text for line in run.log.library_lines() if line.text.startswith("Locked ")]
    scene.check_equal("the client's log lies beside the engine's", locked,
                      [f"Locked {LOG.replace('.', '_000_PalisadeApp.msi.')}"])
    scene.check_equal("and is held there too", scene.answer("before-files sharing PDXTEST_LOG"), HELD)
    machine = check_told(scene, run, "another drive", "custom", "data", "Install Root: E:")
    scene.uninstall()

    for view in ("32", "64"):
        scene.prefix.run("reg", "delete", LOCATOR, "/f", f"/reg:{view}", check=True)
    run = scene.run("/quiet", log="no-wmi")
    scene.check_exit_code(run, 0, "no WMI: the engine")
    unknown = check_told(scene, run, "no WMI", "default", "", "Error initializing WMI")
    scene.check("no WMI: the log tells what is missing",
                run.log.has(f"^Failed to create WbemLocator in namespace: .*{NOT_REGISTERED}$"))
    scene.check("no WMI: the machine has another hash", unknown != machine and len(unknown) == 40, unknown)
