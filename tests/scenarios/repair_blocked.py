"""What a repair cannot take down ends it with error 3017, and nothing after that is touched; later it ends well."""
from harness.scenario.registry import changes, listing, run_service
from harness.scenario import telemetry
from harness.scenario import client as facts
from harness.desktop.strings import text
from harness.desktop.window import ACTION1, PROGRESS, TITLE

PROGRAMS = f"{facts.INSTALL_FOLDER}\\Palisade Desktop"
HELD = f"{PROGRAMS}\\held.log"
FAILED = "a7ff0bc9"
NOT_OURS = "C:\\Program Files"
STOPPING = "Failed to stop background service"
ROWS = [  # what is in the way, the service's behaviour, what is held, the operation told, the last line
    ("refuses", "refuses", "", 49, STOPPING),
    ("hangs", "stuck", "", 49, STOPPING),
    ("stays-listed", "normal", f"hold-service {facts.SERVICE}", 50, "Failed to delete background service"),
    ("file-held", "", f"hold-file {HELD}", 51, f"Failed to remove file {HELD}: error=00000020"),
]


def blocked(scene, what, behaviour, hold, operation, last):
    before, files = listing(scene), sorted(scene.path(PROGRAMS).iterdir())
    told = telemetry.told_so_far(scene)
    if behaviour:
        scene.check_equal(f"{what}: the service runs", run_service(scene, behaviour), "running")
    if hold:
        scene.check_equal(f"{what}: it is held", scene.window.command(hold), "held")
    run = scene.start("PDX_REPAIR=1", log="engine" if what == "file-held" else what)
    if what == "file-held":
        bar = scene.wait_for_page("progress", what + "-meanwhile").controls[PROGRESS]
        shot = scene.window.pixels(bar)
        scene.wait_for(lambda: scene.window.pixels(bar) != shot, f"{what}: a move of the bar", 3)
        scene.check_equal(f"{what}: and the window answers", scene.window.command("ask dialog 0 0 0"), "0")
    prompt = scene.wait_for_page("prompt", what)
    scene.check_equal(f"{what}: the error page", prompt.names.get(TITLE), text("INSTALLER_ERROR_UNKNOWN_TITLE"))
    scene.window.click(ACTION1)
    run.finish(60)
    scene.window.command("release")
    scene.check_exit_code(run, 0xA7FF0BC9, what)
    scene.check(f"{what}: nothing is detected", not run.log.numbered("100"))
    done = [line.text for line in run.log.library_lines()
            if line.function in ("performRepairCleanup", "deleteDirectoryTree")]
    scene.check_equal(f"{what}: the log tells what stayed", done, [last])
    events = [event for post in scene.services.requests("brisk")[told["brisk"]:] for event in post.body]
    scene.check_equal(f"{what}: the telemetry tells which step failed",
                      [(f"{event['m']}.{event['g']}.{event['s']}", event["param"]["ecod"], event["param"]["eopr"])
                       for event in events if "ecod" in event.get("param", {})],
                      [("inst.repr.erro", FAILED, operation), ("inst.repr.fail", FAILED, operation)])
    if what != "file-held":
        scene.check_equal(f"{what}: no file is gone", sorted(scene.path(PROGRAMS).iterdir()), files)
    if behaviour:
        scene.window.command(f"end-service {facts.SERVICE}")
    return changes(before, listing(scene))


def play(scene):
    scene.services
    scene.use_names()
    scene.check_exit_code(scene.run("/quiet", log="install"), 0, "the install")
    installed = listing(scene)
    scene.path(HELD).write_text("somebody writes here")
    product, entry = facts.PRODUCT_KEY, facts.uninstall_entry()
    own = installed[64, product, "OriginalUninstallString"], installed[64, product, "OriginalQuietUninstallString"]
    first = {(view, product, "IsUnavailable"): (None, "0x00000001") for view in (32, 64)} | {
        (32, product, None): (None, ""),
        (32, entry, "UninstallString"): (installed[32, entry, "UninstallString"], own[0]),
        (32, entry, "QuietUninstallString"): (installed[32, entry, "QuietUninstallString"], own[1])}
    client = scene.prefix.start(facts.client_file("PalisadeDesktop.exe"), "--stay")
    scene.wait_for(lambda: "--stay" in scene.read(facts.LAUNCHES), "the client's start")
    scene.prefix.set_registry(product, "InstallLocation", NOT_OURS)
    scene.check_equal("a folder that is not the client's is refused with the registry as it was",
                      blocked(scene, "refused", "", "", 51,
                              f'The recorded install folder is not deleted: "{NOT_OURS}"'), {})
    scene.check("and with the client running", client.poll() is None)
    scene.prefix.set_registry(product, "InstallLocation", facts.INSTALL_FOLDER + "\\")
    for row in ROWS:
        scene.check_equal(f"{row[0]}: the registry is as it was, but for what comes ahead of the gate",
                          blocked(scene, *row), first if row is ROWS[0] else {})

    scene.check_exit_code(scene.run("PDX_REPAIR=1", "/quiet", log="later"), 0, "with nothing in its way the engine")
    other = {at for at in changes(installed, listing(scene)) if at[2] != "PrevGateLink"}
    scene.check_equal("the registry is as after the install", other, set())
    scene.check_equal("the client's files are there", scene.client_state()[0], set(facts.CLIENT_FILES))
    scene.check("and what was held is gone", not scene.exists(HELD))
