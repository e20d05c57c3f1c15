"""A failed run's report: the user sees it go out, nobody waits for it, and it holds all that support needs but the name."""
import json
import re
import threading

from harness.building.bundle import PACKAGE_ID, RUNTIME_ID
from harness.scenario.telemetry import TRACKING_ID
from harness.scenario import client as facts
from harness.places import PACKAGE
from harness.desktop.strings import text
from harness.desktop.window import ACTION1, CLOSE, PROGRESS, QUESTION, TITLE
from harness.services.reports import sections
from harness.scenario.scene import TEMP

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
        f"{TEMP}\\{stem}_001_{PACKAGE_ID}_rollback.log": ("", "utf-8"),  # of the way back; empty under Wine
    }
    for path, (content, encoding) in logs.items():
        if not path.endswith("_rollback.log"):
            scene.path(path).parent.mkdir(parents=True, exist_ok=True)
            scene.path(path).write_bytes(content.encode(encoding))
    # Beside them what no report takes: a folder of that name, another run's log, a file of the user's.
    scene.path(f"{TEMP}\\{runtime}.folder").mkdir()
    for name in (f"Palisade_20200101000000_000_{RUNTIME_ID}.log", "private.log"):
        scene.path(f"{TEMP}\\{name}").write_text("nobody's business")
    return {path.rpartition("\\")[2]: content for path, (content, _) in logs.items()}


def check_package(scene, run, logs: dict[str, str], bundle_log: str) -> None:
    services = scene.services
    scene.check_equal("nothing that the services are sent is wrong", services.received.faults, [])
    found = sections(services.received.stored[0])
    service, *others = logs
    rows = sorted([*others, bundle_log], key=str.upper)
    scene.check_equal("the package's sections in order", [name for name, _ in found],
                      ["userData.json", "HardwareSurvey.json", service, *rows])
    held = {name: content.decode("utf-8") for name, content in found}
    machine = services.requests("reports")[0].headers["x-machine-hash"]
    scene.check("of the thick variant", b"<launchSource>thick<" in services.requests("reports")[0].raw)
    user = json.loads(held["userData.json"])
    scene.check_equal("the user is told of", user, {
        "Category": "100", "UserID": user["UserID"], "Free text": "", "CE Number": "", "User Name": machine,
        "Client Version": "12.37.0.5294"})
    scene.check("by the id of the announcement", f"<bastionId>{user['UserID']}<".encode()
                in services.requests("reports")[0].raw, user)
    survey = json.loads(held["HardwareSurvey.json"])
    version = survey["os"].get("version", "")
    scene.check_equal("the machine is told of", survey, {
        "os": {"architecture": "AMD64", "name": services.requests("reports")[0].headers["osVersion"],
               "version": version}, "system": {"machineId": machine}})
    scene.check("by a version of three numbers", re.fullmatch(r"10\.0\.\d{5}", version), version)
    scene.check_equal("each JSON is one line with its keys in order",
                      [held[name] for name in ("userData.json", "HardwareSurvey.json")],
                      [json.dumps(of, sort_keys=True, separators=(",", ":")) for of in (user, survey)])
    for name, content in logs.items():
        scene.check(f"{name} is there, each line scrubbed", held.get(name) == scrubbed(content),
                    f"{held.get(name, '')[:300]!r}, wanted {scrubbed(content)[:300]!r}")
    own = held.get(bundle_log, "").replace("\r\n", "\n")
    whole = scrubbed(run.log.text)
    scene.check("the engine's log is there up to the report, each line scrubbed",
                whole.startswith(own.lstrip(MARK)) and "OnShutdown" in own, own[-300:])
    scene.check("which had the user's folder in it", run.log.text.count(PROFILE) > whole.count(PROFILE) == 0)
    scene.check("and the login code twice", run.log.text.count("ge h") == 2 and "KESTREL_AUTHCODE=####" in own, own[:4000])
    scene.check("no login code is left", not re.search(r'ge h|"eim', "".join(held.values())))
    scene.check("no name is left", not re.search(r"users[\\/]root[\\/]", "".join(held.values()), re.I))


def play(scene):
    services = scene.services
    scene.use_names()
    scene.make_bundle(runtime=PACKAGE.parent / "PalisadeLauncher.exe")
    scene.script("before-files mark under-way\nbefore-files wait-for go-on\nbefore-files fail 1603")
    go_on = threading.Event()
    services.reports.answer(hold=go_on, times=1)
    run = scene.start_install(CODE)
    scene.wait_for_mark("under-way", "the package's action")
    stem = min(scene.engine_logs()).stem
    logs = write_logs(scene, stem)
    scene.mark("go-on")
    scene.wait_for_page("prompt", "error")
    scene.check("the box is ticked", scene.window.is_checked(QUESTION))
    scene.window.click(ACTION1)

    services.wait_for(1, "reports")
    page = scene.wait_for_page("progress", "sending")
    scene.check_equal("the page says what goes on", page.names[TITLE], text("ERROR_DIALOG_CRASH_SEND-REPORT"))
    looks = set()
    scene.wait_for(lambda: looks.add(scene.window.pixels(page.controls[PROGRESS])) or len(looks) > 3, "a moving bar")
    scene.check("its bar moves", len(looks) > 3, f"{len(looks)} positions")
    scene.check_equal("its window answers", scene.window.command("ask dialog 0 0 0"), "0")

    # The service stays silent: a second attempt starts all the same, and the cross ends the first one's page at once.
    scene.script("")
    second = scene.run("/quiet", log="second", log_file=facts.EXCHANGE + "\\second.log")
    scene.check_exit_code(second, 0, "a second attempt meanwhile")
    scene.check_installed()
    scene.check_equal("the first still shows its page", scene.window.page(), "progress")
    scene.window.click(CLOSE)
    scene.wait_for(lambda: not any(view.visible or view.others for view in scene.window.look_at_all()),
                   "the end of the window", 5)
    scene.check("the cross hides the page, with no question", not run.ended)
    go_on.set()
    run.finish(60)
    scene.check_exit_code(run, 1)
    scene.check_equal("it is told as the failure it was", run.log.closing_errors(), ["80070643"])
    scene.check_equal("the upload is logged", run.log.messages("`anonymous-namespace'::uploadData"),
                      [f"Uploaded report with trackingId={TRACKING_ID}"])
    failures = [event["param"].get("report_id") for post in services.requests("brisk") for event in post.body
                if event["s"] == "fail"]
    scene.check_equal("the failure is told with the report's id", failures, [TRACKING_ID])
    scene.check_equal("one report goes out", [len(services.requests(name)) for name in ("reports", "storage")], [1, 1])
    check_package(scene, run, logs, f"{stem}.log")
