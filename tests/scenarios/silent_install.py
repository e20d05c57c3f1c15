"""`/quiet` installs the client: files, registry values, log lines, callbacks, message channel, client log.

Both telemetry services, and no other, are sent events, in the session that a parent process names, unchanged."""
import re
from itertools import zip_longest

from harness.places import VERSION
from harness.scenario.client import HELD
from harness.scenario.telemetry import Sent, thick_install

PACKAGE = "wzPackageId=PalisadeApp.msi"
PAYLOAD = "wzPackageOrContainerId=PalisadeApp.msi, wzPayloadId=PalisadeApp.msi"
DONE = r"hrStatus=Success\."

# The engine's callbacks on its main thread and on its cache thread, in its order, with what the library logs of each.
MAIN_THREAD = [
    ("OnDetectBegin", "fInstalled=false, cPackages=1"),
    ("OnDetectUpdateBegin", "wzUpdateLocation=https://updates.invalid/palisade.xml, nRecommendation=0"),
    ("OnDetectUpdateComplete", DONE + ", wzUpdateLocation="),
    ("OnDetectPackageBegin", PACKAGE),
    ("OnDetectPackageComplete", f"{PACKAGE}, {DONE}, state=BOOTSTRAPPER_PACKAGE_STATE_ABSENT"),
    ("OnDetectComplete", DONE),
    ("OnPlanBegin", "cPackages=1"),
    ("OnPlanPackageBegin", f"{PACKAGE}, pRequestedState=BOOTSTRAPPER_REQUEST_STATE_PRESENT"),
    ("OnPlanPackageComplete", f"{PACKAGE}, {DONE}, state=BOOTSTRAPPER_PACKAGE_STATE_ABSENT, "
                              "requested=BOOTSTRAPPER_REQUEST_STATE_PRESENT, "
                              "execute=BOOTSTRAPPER_ACTION_STATE_INSTALL, "
                              "rollback=BOOTSTRAPPER_ACTION_STATE_UNINSTALL"),
    ("OnPlanComplete", DONE),
    ("OnApplyPhaseCount", "dwPhaseCount=2"),
    *((name, f"Entering {name}") for name in ("OnApplyBegin", "OnElevate", "OnRegisterBegin")),
    ("OnRegisterComplete", DONE),
    ("OnExecuteBegin", "cExecutingPackages=1"),
    ("OnExecutePackageBegin", f"{PACKAGE}, fExecute=true"),
    ("OnExecutePackageComplete", f"{PACKAGE}, {DONE}, restart=BOOTSTRAPPER_APPLY_RESTART_NONE, nRecommendation=0"),
    ("OnExecuteComplete", DONE),
    ("OnUnregisterBegin", "Entering OnUnregisterBegin"),
    ("OnUnregisterComplete", DONE),
    ("OnApplyComplete", DONE + ", restart=BOOTSTRAPPER_APPLY_RESTART_NONE"),
    ("OnShutdown", "Entering OnShutdown"),
]
CACHE_THREAD = [
    ("OnCacheBegin", "Entering OnCacheBegin"),
    ("OnCachePackageBegin", rf"{PACKAGE}, cCachePayloads=1, dw64PackageCacheSize=\d+"),
    ("OnCacheVerifyBegin", PAYLOAD),
    ("OnCacheVerifyComplete", f"{PAYLOAD}, {DONE}, nRecommendation=0"),
    ("OnCachePackageComplete", f"{PACKAGE}, {DONE}, nRecommendation=0"),
    ("OnCacheComplete", DONE),
]
SESSION = "Sitzung {7} der Mutter, ÄÖÜ"
STARTUP = [
    r"\[STARTUP\] app\[PalisadeSetup\.exe\], configurable\[false\], processId\[\d+\]",
    f"Version: {re.escape(VERSION)}",
    r"Command line: \[.* /quiet\]",
]

# The older client's key, which decides what happens to it, and the product's own.
ABSENT = ["Failed to open subkey Software\\Bastion",
          "Failed to open subkey Software\\Corvane Works\\Palisade Desktop"]


def difference(found: list[tuple[str, str]], wanted: list[tuple[str, str]]) -> str:
    """The first place where the callbacks differ; empty if there is none."""
    for index, (seen, want) in enumerate(zip_longest(found, wanted, fillvalue=("", ""))):
        if seen[0] != want[0] or not re.fullmatch(want[1], seen[1]):
            return f"callback {index + 1} is {seen}, wanted {want}"
    return ""


def play(scene):
    sent = Sent(scene)
    scene.runs.script("""
        before-files say actiondata PDX_SET_VARIABLE:A=B=C
        before-files say warning PDX_SET_VARIABLE:WARNED=yes
        before-files say actiondata PDX_SET_VARIABLE:NO_SIGN
        before-files say actiondata not at the beginning PDX_SET_VARIABLE:LATE=1
        before-files say actiondata XDX_SET_VARIABLE:OTHER=1
        before-files property PDX_SHORTCUT_NAME
        before-files property PRODUCT_DISPLAY_NAME
        before-files sharing PDXTEST_LOG
        after-files say actiondata PDX_SET_VARIABLE:LAST=of all
    """)
    run = scene.runs.run("/quiet", environment={"PDX_INSTALLER_SESSION_ID": SESSION})
    scene.checks.installed()

    lines = run.log.library_lines()
    raw = run.log.raw_library_lines()
    scene.checks.that("every line of the library has the exact format", len(lines) == len(raw) > 0,
                f"{len(lines)} of {len(raw)}")
    scene.checks.that("all are marked as of an elevated process", {line.marker for line in lines} == {"*"})
    scene.checks.that("errors, and nothing else, are errors to the engine",
                all((line.level == "ERROR") == (line.engine_kind == "e") for line in lines))
    scene.checks.equal("the only errors are the keys that a fresh machine lacks, each looked for once",
                      [line.text for line in lines if line.level == "ERROR"], ABSENT)
    started = run.log.messages("OnStartup")[:3]
    scene.checks.that("the start logs program, version and command line",
                len(started) == 3 and all(map(re.fullmatch, STARTUP, started)), " | ".join(started))

    callbacks = [(line.thread, line.function.removeprefix("BootstrapperApplication::"), line.text) for line in lines
                 if line.level == "TRACE" and line.function.startswith("BootstrapperApplication::On")]
    cache = {thread for thread, name, _ in callbacks if name == "OnCacheBegin"}
    for name, wanted, here in (("the engine's callbacks are in order", MAIN_THREAD, False),
                               ("those of its cache thread too", CACHE_THREAD, True)):
        found = [(name, text) for thread, name, text in callbacks if (thread in cache) == here]
        problem = difference(found, wanted)
        scene.checks.that(name, not problem, problem or f"{len(found)} callbacks")

    wanted = {"A": "B=C", "WARNED": "yes", "LAST": "of all", "PDX_ALLOW_WINDOWS_7": "1"}
    scene.checks.equal("custom actions set variables: a second \"=\" kept, whatever the message's kind, the last one",
                      {name: run.log.variables.get(name) for name in wanted}, wanted)
    execution = run.log.text.partition("::OnExecutePackageBegin:")[2]
    scene.checks.equal("nothing else does: no \"=\", not at the beginning, no command",
                      re.findall(r"Setting \w+ variable '(.*?)' to", execution), ["A", "WARNED", "LAST"])
    names = ("PDX_SHORTCUT_NAME", "PRODUCT_DISPLAY_NAME")
    scene.checks.equal("the package is given the names",
                       [scene.runs.answer(f"before-files property {name}") for name in names],
                       ["Palisade", "Palisade app"])

    scene.checks.equal("the client's log is held for reading and writing, shared for both",
                      scene.runs.answer("before-files sharing PDXTEST_LOG"), HELD)
    scene.checks.that("and it was locked in the temporary folder", run.log.has(
        r"^Locked C:\\users\\####\\Temp\\Palisade_\d+_000_PalisadeApp\.msi\.log$"))
    scene.checks.only_logs_left()

    scene.checks.equal("only the two telemetry services are asked", {r.service for r in scene.services.requests()},
                      {"brisk", "tally"})
    sent.check(thick_install(run, shown=False, session=SESSION))
