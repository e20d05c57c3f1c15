"""A crash as user, maker and system have it: one box, one event, and the debugger that the system starts after it."""
import re
import shutil

from harness.building import bundle
from harness.desktop.strings import text
from harness.machine.prefix import WINDOWS_KEY
from harness.places import PROGRAMS
from harness.scenario import client
from harness.scenario.telemetry import TIME, Sent, brisk_identity, brisk_name, differences, session_of

PROGRAM = "PalisadeSetup.exe"
DEBUGGER = client.EXCHANGE + "\\debugger.exe"
ACCESS_FAULT = 0xC0000005
UNCAUGHT_EXCEPTION = 0xE0504458
NO_MODULES = "25"  # the first part of a signature for which no module of the stack was found
_CODE = re.compile(r"ec-([0-9A-F]{2})-([0-9A-F]{4})")


def watch(scene) -> None:
    """Makes the machine note each exception that reaches the system itself, after all filters of the process."""
    scene.services  # before the first run
    shutil.copyfile(PROGRAMS / "client/PalisadeLauncher.exe", scene.machine.path(DEBUGGER))
    for view in 32, 64:
        scene.machine.set_value(WINDOWS_KEY + "\\AeDebug", "Debugger", f"\"{DEBUGGER}\" %ld %ld", view=view)
        scene.machine.set_value(WINDOWS_KEY + "\\AeDebug", "Auto", "1", view=view)


def check_crash(scene, sent: Sent, run, what: str, code: int, language: str = "EN", **identity) -> str:
    """Waits for the crash of a run, sees it through to the end of its process, and gives the signature. `identity` is
    what the event says of machine and user other than usual."""
    checks, window = scene.checks, scene.window
    box = text("installer_error_unknown_title", language), text("installer_error_unknown", language)
    scene.wait_for(window.boxes, f"{what}: the box")
    checks.equal(f"{what}: one box shows, in the user's language", window.boxes(), [box])
    checks.that(f"{what}: the process waits for it", not run.ended and not scene.machine.notes())
    scene.wait_for(sent.brisk, f"{what}: the event", 30)
    scene.wait_for(lambda: window.keyboard() == box[0], f"{what}: the keyboard in the box", 20)
    window.press("Return")

    run.finish(60)
    checks.equal(f"{what}: the engine logs no end", run.exit_code, None)
    checks.equal(f"{what}: its process ends with the exception's code", run.process_code, code & 0xff)
    checks.equal(f"{what}: no other box shows", window.boxes(), [])
    checks.equal(f"{what}: the system has it once after the installer", len(scene.machine.notes()), 1)
    scene.machine.forget_notes()
    return _check_event(scene, what, sent.brisk(), session_of(run), identity)


def _check_event(scene, what: str, events: list[dict], session: str, identity: dict) -> str:
    """The event alone: what is not urgent still waited for the user, and is lost with the process."""
    development = identity.pop("development", False)
    attributes = {"exe": PROGRAM, "shut": 0, "vers": bundle.BUNDLE_VERSION, "code": _CODE}
    wanted = brisk_identity(session, thin=False) | identity | {"m": "erro", "g": "crit", "s": "cras", "ts": TIME}
    wanted |= {"param": attributes | ({"is_development": 1} if development else {})}
    scene.checks.equal(f"{what}: one event is sent", list(map(brisk_name, events)), ["erro.crit.cras"])
    rows = differences(events[0], wanted) if events else []
    scene.checks.that(f"{what}: it has every attribute and no other", not rows, "\n".join(rows))
    code = events[0]["param"]["code"] if events else ""
    scene.checks.that(f"{what}: its signature is of a stack with modules", _CODE.fullmatch(code) and
                      not code.startswith(f"ec-{NO_MODULES}-"), code)
    return code
