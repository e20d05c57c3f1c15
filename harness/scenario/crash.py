"""A crash as user, maker and system have it: one box, one event, and the debugger that the system starts behind it."""
import re
import shutil

from harness.building import bundle
from harness.scenario.telemetry import TIME, brisk_identity, differences, session_of
from harness.scenario import client as facts
from harness.machine.prefix import WINDOWS_KEY
from harness.places import BUILD
from harness.desktop.strings import text
from harness.services import Services

PROGRAM = "PalisadeSetup.exe"
DEBUGGER = facts.EXCHANGE + "\\debugger.exe"
ACCESS_FAULT = 0xC0000005
UNCAUGHT_EXCEPTION = 0xE0504458
NO_MODULES = "25"  # the first part of a signature for which no module of the stack was found
_CODE = re.compile(r"ec-([0-9A-F]{2})-([0-9A-F]{4})")


def watch(scene) -> Services:
    """Makes the machine note each exception that reaches the system itself, behind all filters of the process. Gives the
    services, which are there from now on."""
    services = scene.services
    shutil.copyfile(BUILD / "release/harness/client/PalisadeLauncher.exe", scene.path(DEBUGGER))
    for view in 32, 64:
        scene.prefix.set_registry(WINDOWS_KEY + "\\AeDebug", "Debugger", f"\"{DEBUGGER}\" %ld %ld", view=view)
        scene.prefix.set_registry(WINDOWS_KEY + "\\AeDebug", "Auto", "1", view=view)
    return services


def check_crash(scene, run, what: str, code: int, language: str = "EN", **identity) -> str:
    """Waits for the crash of a run, sees it through to the end of its process, and gives the signature. `identity` is
    what is other than usual of whom the event is told for."""
    told = len(scene.services.requests("brisk"))
    box = text("installer_error_unknown_title", language), text("installer_error_unknown", language)
    scene.wait_for(scene.window.boxes, f"{what}: the box")
    scene.check_equal(f"{what}: one box shows, in the user's language", scene.window.boxes(), [box])
    scene.check(f"{what}: the process waits for it", not run.ended and not scene.exists(facts.LAUNCHES))
    scene.wait_for(lambda: len(scene.services.requests("brisk")) > told, f"{what}: the event", 30)
    scene.wait_for(lambda: scene.window.keyboard() == box[0], f"{what}: the keyboard in the box", 20)
    scene.window.press("Return")

    run.finish(60)
    scene.check_equal(f"{what}: the engine tells no end", run.exit_code, None)
    scene.check_equal(f"{what}: its process ends with the exception's code", run.process_code, code & 0xff)
    scene.check_equal(f"{what}: no other box shows", scene.window.boxes(), [])
    started = scene.read(facts.LAUNCHES).splitlines()
    scene.check_equal(f"{what}: the system has it once behind the installer", len(started), 1)
    scene.path(facts.LAUNCHES).unlink(missing_ok=True)
    return _check_told(scene, what, scene.services.requests("brisk")[told:], session_of(run), identity)


def _check_told(scene, what: str, posts: list, session: str, identity: dict) -> str:
    """The event alone: what is not urgent still waited for the user, and went with the process."""
    events = [event for post in posts for event in post.body]
    development = identity.pop("development", False)
    attributes = {"exe": PROGRAM, "shut": 0, "vers": bundle.BUNDLE_VERSION, "code": _CODE}
    wanted = brisk_identity(session, thin=False) | identity | {"m": "erro", "g": "crit", "s": "cras", "ts": TIME}
    wanted |= {"param": attributes | ({"is_development": 1} if development else {})}
    scene.check_equal(f"{what}: one event is told", [f"{e['m']}.{e['g']}.{e['s']}" for e in events], ["erro.crit.cras"])
    rows = differences(events[0], wanted) if events else []
    scene.check(f"{what}: it has every attribute and no other", not rows, "\n".join(rows))
    code = events[0]["param"]["code"] if events else ""
    scene.check(f"{what}: its signature is of a stack with modules", _CODE.fullmatch(code) and
                not code.startswith(f"ec-{NO_MODULES}-"), code)
    return code
