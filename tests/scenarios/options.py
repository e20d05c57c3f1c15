"""Arguments name=value become variables; folder and log file are those asked for, and are reported as such.

What is reported when an install begins follows folder, drive and what WMI knows."""
from harness.scenario.client import HELD
from harness.scenario.telemetry import Sent

FOLDER = "E:\\Spiele\\Größe Ünïcode 遊戲"
LOG = "E:\\Protokoll.log"
LOCATOR = "HKLM\\Software\\Classes\\CLSID\\{4590F811-1D3A-11D0-891F-00AA004B2E24}\\InprocServer32"
NOT_REGISTERED = "hr=80040154"
VARIABLES = {"A": "B=C", "EMPTY": "", "QUOTED": "two words  and more", "InstallFolder": FOLDER}


def check_record(scene, run, sent: Sent, what: str, path: str, drive: str, way: str) -> str:
    """The install's record, in the event, in the log, and how it was found out; gives the machine's hash."""
    event = sent.brisk("inst.inst.strt")[-1]
    time = event["param"].pop("intm")
    # Wine's WMI knows drives, but a partition without a name, so that the medium stays unknown.
    scene.checks.equal(f"{what}: the event", event["param"], {"inst": "new", "path": path, "dskm": "", "dtyp": drive})
    lines = [line for line in run.log.messages("OnExecuteBegin") if line.startswith("instTelemetry.")]
    scene.checks.equal(f"{what}: the log has the same", lines,
                       ["instTelemetry.diskMedia = ", f"instTelemetry.driveType(system/data) = {drive}",
                        "instTelemetry.installStatus = new", f"instTelemetry.installTime = {time}",
                        f"instTelemetry.path (custom/default) = {path}"])
    scene.checks.equal(f"{what}: how it was found out", run.log.texts("installTelemetry"), [way])
    return event["machash"]


def play(scene):
    sent = Sent(scene)
    (scene.out / "data").mkdir()
    scene.machine.add_drive("E", scene.out / "data")
    scene.runs.script("before-files sharing PDXTEST_LOG")
    run = scene.runs.run("/quiet", "A=B=C", "/X=1", "-X=1", "/Y=1", "-Z=1", "EMPTY=", "QUOTED=two words  and more",
                         "plain", "InstallFolder=" + FOLDER, log_file=LOG)
    variables = run.log.variables
    scene.checks.equal("arguments set variables", {name: variables.get(name) for name in VARIABLES}, VARIABLES)
    refused = {"X", "/X", "-X", "Y", "/Y", "Z", "-Z", "plain"} & variables.keys()
    scene.checks.that("what begins with \"/\" or \"-\" or has no \"=\" sets nothing", not refused, ", ".join(refused))
    scene.checks.installed(FOLDER)
    locked = [line.text for line in run.log.library_lines() if line.text.startswith("Locked ")]
    scene.checks.equal("the client's log is beside the engine's", locked,
                       [f"Locked {LOG.replace('.', '_000_PalisadeApp.msi.')}"])
    scene.checks.equal("and is held there too", scene.runs.answer("before-files sharing PDXTEST_LOG"), HELD)
    machine = check_record(scene, run, sent, "another drive", "custom", "data", "Install Root: E:")
    scene.runs.uninstall()

    for view in ("32", "64"):
        scene.machine.prefix.run("reg", "delete", LOCATOR, "/f", f"/reg:{view}", check=True)
    run = scene.runs.install(log="no-wmi")
    unknown = check_record(scene, run, sent, "no WMI", "default", "", "Error initializing WMI")
    scene.checks.that("no WMI: the log names what is missing",
                      run.log.has(f"^Failed to create WbemLocator in namespace: .*{NOT_REGISTERED}$"))
    scene.checks.that("no WMI: the machine has another hash", unknown != machine and len(unknown) == 40, unknown)
