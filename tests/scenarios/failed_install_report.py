"""A failed run's report: the user sees it sent, nothing waits for it, and it holds all but the user's name."""
import json
import re
import threading

from harness.building.bundle import PACKAGE_ID, RUNTIME_ID
from harness.desktop.strings import text
from harness.desktop.window import ACTION1, CLOSE, PROGRESS, QUESTION, TITLE
from harness.places import PACKAGE, VERSION
from harness.scenario import client
from harness.scenario.machine import TEMP
from harness.scenario.telemetry import TRACKING_ID, Sent
from harness.services.reports import sections

SERVICE_LOG = "C:\\ProgramData\\Palisade Desktop\\Logs\\PalisadeBackgroundService.log"
BLOCK = 0x40000  # bytes of a log that the library reads at a time
PROFILE, SCRUBBED = "C:\\users\\root\\", "C:\\users\\####\\"
FORWARD = PROFILE.replace("\\", "/")
LINES = (f"at {PROFILE}AppData\\Grüße 100%s {{}} & <x>.txt\r\n\r\n{PROFILE}a;{PROFILE}b root\n"
         f"{FORWARD}c игрок ゲーム\r\n")
LONG = "x" * (BLOCK - 9) + PROFILE + "y" * BLOCK + PROFILE + "\n"
MARK = "\ufeff"
CODE = "KESTREL_AUTHCODE=ge h\"eim"


def scrubbed(content: str) -> str:
    content = re.sub(r'(KESTREL_AUTHCODE(?:=|\]; result=\[))(ge h\\?"eim|\*{5})', r"\1####", content)
    return content.replace(PROFILE, SCRUBBED).replace(FORWARD, SCRUBBED.replace("\\", "/"))


def write_logs(scene, stem: str) -> dict[str, str]:
    """Logs as other programs leave them, while the package runs; gives what the report has to hold of each."""
    runtime, client = f"{stem}_000_{RUNTIME_ID}", f"{stem}_001_{PACKAGE_ID}.log"
    logs = {  # path: text, encoding
        SERVICE_LOG: (LINES + "the last line has no end " + PROFILE, "utf-8"),
        f"{TEMP}\\{runtime}.log": (MARK + LINES * 2, "utf-16-le"),
        f"{TEMP}\\{runtime}.log.1": (LONG + LINES, "utf-8"),
        f"{TEMP}\\{runtime}.old": ("", "utf-8"),
        f"{TEMP}\\{runtime}_2.txt": (MARK + LONG + LINES, "utf-16-le"),
        f"{TEMP}\\{client}": (MARK + LINES, "utf-16-le"),
        f"{TEMP}\\{stem}_001_{PACKAGE_ID}_rollback.log": ("", "utf-8"),  # of the rollback; empty under Wine
    }
    for path, (content, encoding) in logs.items():
        if not path.endswith("_rollback.log"):
            scene.machine.path(path).parent.mkdir(parents=True, exist_ok=True)
            scene.machine.path(path).write_bytes(content.encode(encoding))
    # Beside them what no report takes: a folder of that name, another run's log, a file of the user's.
    scene.machine.path(f"{TEMP}\\{runtime}.folder").mkdir()
    for name in (f"Palisade_20200101000000_000_{RUNTIME_ID}.log", "private.log"):
        scene.machine.path(f"{TEMP}\\{name}").write_text("private")
    return {path.rpartition("\\")[2]: content for path, (content, _) in logs.items()}


def check_package(scene, run, logs: dict[str, str], bundle_log: str) -> None:
    """The package that is stored, section by section."""
    checks, services = scene.checks, scene.services
    announced = services.requests("reports")[0]
    checks.equal("nothing that the services are sent is wrong", services.received.faults, [])
    checks.that("of the thick variant", b"<launchSource>thick<" in announced.raw)
    found = sections(services.received.stored[0])
    service, *others = logs
    checks.equal("the package's sections in order", [name for name, _ in found],
                 ["userData.json", "HardwareSurvey.json", service, *sorted([*others, bundle_log], key=str.upper)])
    held = {name: content.decode("utf-8") for name, content in found}
    check_facts(scene, held, announced)
    for name, content in logs.items():
        checks.that(f"{name} is there, each line scrubbed", held.get(name) == scrubbed(content),
                    f"{held.get(name, '')[:300]!r}, wanted {scrubbed(content)[:300]!r}")
    own = held.get(bundle_log, "").replace("\r\n", "\n")
    whole = scrubbed(run.log.text)
    checks.that("the engine's log is there up to the report, each line scrubbed",
                whole.startswith(own.lstrip(MARK)) and "OnShutdown" in own, own[-300:])
    checks.that("which had the user's folder in it", run.log.text.count(PROFILE) > whole.count(PROFILE) == 0)
    checks.that("and the login code twice", run.log.text.count("ge h") == 2 and "KESTREL_AUTHCODE=####" in own)
    checks.that("no login code is left", not re.search(r'ge h|"eim', "".join(held.values())))
    checks.that("no name is left", not re.search(r"users[\\/]root[\\/]", "".join(held.values()), re.I))


def check_facts(scene, held: dict[str, str], announced) -> None:
    """What the package holds of user and machine, beside the logs."""
    checks, machine = scene.checks, announced.headers["x-machine-hash"]
    user, survey = (json.loads(held[name]) for name in ("userData.json", "HardwareSurvey.json"))
    version = survey["os"].get("version", "")
    checks.equal("the user's facts", user, {
        "Category": "100", "UserID": user["UserID"], "Free text": "", "CE Number": "", "User Name": machine,
        "Client Version": VERSION})
    checks.that("by the id of the announcement", f"<bastionId>{user['UserID']}<".encode() in announced.raw, user)
    checks.equal("the machine's facts", survey, {
        "os": {"architecture": "AMD64", "name": announced.headers["osVersion"], "version": version},
        "system": {"machineId": machine}})
    checks.that("by a version of three numbers", re.fullmatch(r"10\.0\.\d{5}", version), version)
    checks.equal("each JSON is one line with its keys in order",
                 [held[name] for name in ("userData.json", "HardwareSurvey.json")],
                 [json.dumps(of, sort_keys=True, separators=(",", ":")) for of in (user, survey)])


def while_it_is_sent(scene, run) -> None:
    """The page's bar moves; a second attempt starts all the same, and the cross ends the page at once."""
    page = scene.window.wait_for_page("progress", "sending")
    scene.checks.equal("the page names the report", page.names[TITLE], text("ERROR_DIALOG_CRASH_SEND-REPORT"))
    scene.window.wait_for_movement(PROGRESS)
    scene.checks.that("its window answers", scene.window.answers())

    scene.runs.script()
    scene.runs.install(log="second", log_file=client.EXCHANGE + "\\second.log")
    scene.checks.installed()
    scene.checks.equal("the first still shows its page", scene.window.page(), "progress")
    scene.window.click(CLOSE)
    scene.wait_for(scene.window.is_gone, "the end of the window", 5)
    scene.checks.that("the cross hides the page, with no question", not run.ended)


def play(scene):
    services, sent = scene.services, Sent(scene)
    scene.window.use_names()
    scene.runs.make_bundle(runtime=PACKAGE.parent / "PalisadeLauncher.exe")
    scene.runs.pause("before-files fail 1603")
    go_on = threading.Event()
    services.reports.answer(hold=go_on, times=1)
    run = scene.runs.start_install(CODE)
    scene.runs.wait_for_mark()
    stem = min(scene.runs.logs()).stem
    logs = write_logs(scene, stem)
    scene.runs.mark()
    scene.window.wait_for_page("prompt", "error")
    scene.checks.that("the box is ticked", scene.window.is_checked(QUESTION))
    scene.window.click(ACTION1)
    services.wait_for(1, "reports")
    while_it_is_sent(scene, run)
    go_on.set()
    run.ends(1)
    scene.checks.equal("it is logged as the failure it was", run.log.closing_errors(), ["80070643"])
    scene.checks.equal("the upload is logged", run.log.messages("`anonymous-namespace'::uploadData"),
                       [f"Uploaded report with trackingId={TRACKING_ID}"])
    scene.checks.equal("the failure is reported with the report's id",
                       [event["param"].get("report_id") for event in sent.brisk("inst.inst.fail")], [TRACKING_ID])
    scene.checks.equal("one report is sent", [len(services.requests(name)) for name in ("reports", "storage")], [1, 1])
    check_package(scene, run, logs, f"{stem}.log")
