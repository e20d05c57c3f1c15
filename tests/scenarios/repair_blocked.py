"""What a repair cannot stop or delete ends it with error 3017, and no later step runs; a later repair ends well."""
import os

from harness.desktop.strings import text
from harness.desktop.window import ACTION1, PROGRESS, TITLE
from harness.scenario import client
from harness.scenario.registry import changes, listing, run_service
from harness.scenario.telemetry import Sent, brisk_name

PROGRAMS = f"{client.INSTALL_FOLDER}\\Palisade Desktop"
HELD = f"{PROGRAMS}\\held.log"
FAILED = "a7ff0bc9"
NOT_OURS = "C:\\Program Files"
LURED = "C:\\lured\\Palisade"  # below a link of somebody who does not own what it leads to
STOPPING = "Failed to stop background service"
ROWS = [  # what is in the way, the service's behaviour, what is held, the operation reported, the last line
    ("refuses", "refuses", "", 49, STOPPING),
    ("hangs", "stuck", "", 49, STOPPING),
    ("stays-listed", "normal", f"hold-service {client.SERVICE}", 50, "Failed to delete background service"),
    ("file-held", "", f"hold-file {HELD}", 51, f"Failed to remove file {HELD}: error=00000020"),
]


def blocked(scene, what, behaviour, hold, operation, last) -> dict:
    """A repair that one thing blocks; gives the changes of the registry."""
    checks, command = scene.checks, scene.machine.command
    sent, before, files = Sent(scene), listing(scene), sorted(scene.machine.path(PROGRAMS).iterdir())
    if behaviour:
        run_service(scene, behaviour)
    if hold:
        checks.equal(f"{what}: it is held", command(hold), "held")
    run = scene.runs.start("PDX_REPAIR=1", log="engine" if what == "file-held" else what)
    if what == "file-held":
        bar = scene.window.wait_for_page("progress", what + "-meanwhile").controls[PROGRESS]
        shot = scene.window.pixels(bar)
        scene.wait_for(lambda: scene.window.pixels(bar) != shot, f"{what}: a move of the bar", 3)
        checks.that(f"{what}: and the window answers", scene.window.answers())
    prompt = scene.window.wait_for_page("prompt", what)
    checks.equal(f"{what}: the error page", prompt.names.get(TITLE), text("INSTALLER_ERROR_UNKNOWN_TITLE"))
    scene.window.click(ACTION1)
    run.finish(60)
    command("release")
    checks.exit_code(run, 0xA7FF0BC9, what)
    checks.nothing_planned(run, what)
    lines = run.log.texts("performRepairCleanup", "deleteDirectoryTree")
    checks.equal(f"{what}: the log names what could not be removed", lines, [last])
    checks.equal(f"{what}: the telemetry reports which step failed",
                 [(brisk_name(event), event["param"]["ecod"], event["param"]["eopr"]) for event in sent.brisk()
                  if "ecod" in event.get("param", {})],
                 [("inst.repr.erro", FAILED, operation), ("inst.repr.fail", FAILED, operation)])
    if what != "file-held":
        checks.equal(f"{what}: no file is gone", sorted(scene.machine.path(PROGRAMS).iterdir()), files)
    if behaviour:
        command(f"end-service {client.SERVICE}")
    return changes(before, listing(scene))


def play(scene):
    scene.services  # before the first run
    scene.window.use_names()
    scene.runs.install()
    installed = listing(scene)
    scene.machine.path(HELD).write_text("in use")
    product, entry = client.PRODUCT_KEY, client.uninstall_entry()
    own = installed[64, product, "OriginalUninstallString"], installed[64, product, "OriginalQuietUninstallString"]
    first = {(view, product, "IsUnavailable"): (None, "0x00000001") for view in (32, 64)} | {
        (32, product, None): (None, ""),
        (32, entry, "UninstallString"): (installed[32, entry, "UninstallString"], own[0]),
        (32, entry, "QuietUninstallString"): (installed[32, entry, "QuietUninstallString"], own[1])}
    desktop = scene.machine.start_client()
    kept = scene.machine.path("C:\\elsewhere\\Palisade\\save.dat")
    kept.parent.mkdir(parents=True)
    kept.touch()
    os.chown(kept.parent.parent, 1, 1)
    scene.machine.path("C:\\lured").symlink_to(kept.parent.parent)
    for what, location in (("refused", NOT_OURS), ("lured", LURED)):
        scene.machine.set_value(product, "InstallLocation", location)
        refusal = f'The recorded install folder is not deleted: "{location}"'
        scene.checks.equal(f"{what}: the registry is as it was", blocked(scene, what, "", "", 51, refusal), {})
    scene.checks.that("what the link leads to is whole", kept.exists())
    scene.checks.that("and with the client running", desktop.poll() is None)
    scene.machine.set_value(product, "InstallLocation", client.INSTALL_FOLDER + "\\")
    for row in ROWS:
        scene.checks.equal(f"{row[0]}: the registry is as it was, except for the changes before the first step",
                           blocked(scene, *row), first if row is ROWS[0] else {})

    scene.runs.run("PDX_REPAIR=1", "/quiet", log="later", whose="with nothing in its way the engine")
    other = {at for at in changes(installed, listing(scene)) if at[2] != "PrevGateLink"}
    scene.checks.equal("the registry is as after the install", other, set())
    scene.checks.files_there()
    scene.checks.that("and what was held is gone", not scene.machine.exists(HELD))
