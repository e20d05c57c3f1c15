"""A person repairs: all of the client is taken away, nothing else, and it is installed in the library's second life."""
from harness.scenario import telemetry
from harness.scenario.registry import (COMPONENTS, INSTALLER, PACKED_CODE, UNINSTALL, changes, listing,
                                      passed_over, run_service)
from harness.scenario import client as facts
from harness.desktop.strings import text
from harness.desktop.window import ACTION2, TITLE

# What the machine had before the client came: an older product with its program, another's links, and records.
OLDER = [
    (32, "HKLM\\Software\\Bastion", "ClientPath", "C:\\Bastion\\Bastion.exe"),
    (64, "HKCR\\bastion2\\shell\\open\\command", "", "\"C:\\Bastion\\Bastion.exe\" \"%1\""),
    (64, "HKCR\\gatelink\\shell\\open\\command", "", "gate \"%1\""),
]
OTHERS = [
    (32, UNINSTALL + "\\Another", "DisplayName", "Palisade Desktop 2"),
    # Between one that goes and the package's own, which would not be looked at behind it.
    (64, UNINSTALL + "\\Another", "DisplayName", "Palisade Desktop 2"),
    (64, INSTALLER + "\\Products\\F0000000000000000000000000000001\\InstallProperties", "DisplayName", "palisade app"),
    (64, "HKCR\\Installer\\Products\\F0000000000000000000000000000001", "ProductName", "Palisade Desktop 2"),
    (64, COMPONENTS + "\\F0000000000000000000000000000001", "F0000000000000000000000000000001", "C:\\another.exe"),
]
OURS = [
    (32, UNINSTALL + "\\A zone", "DisplayName", "Palisade Desktop"),
    (64, UNINSTALL + "\\A zone", "DisplayName", "Bastion Beta"),
    (64, INSTALLER + "\\Products\\F0000000000000000000000000000003\\InstallProperties", "DisplayName", "Palisade app"),
    (64, "HKCR\\Installer\\Dependencies\\Zone", "DisplayName", "Palisade Desktop"),
    (64, "HKCR\\Installer\\Products\\F0000000000000000000000000000003", "ProductName", "Bastion Beta"),
]
# A component that another product shares goes too.
SHARED = COMPONENTS + "\\00000000000000000000000000000001"


def rows_of(entries):
    """The keys and values that entries are, as a listing has them."""
    rows = {}
    for view, key, name, value in entries:
        rows |= {(view, key, None): "", (view, key, name): value}
        if key.endswith("\\InstallProperties"):
            rows[view, key.rpartition("\\")[0], None] = ""
    return rows


def wanted_changes(before, installed):
    """From the moment at which the client's package first came to that at which it comes again."""
    entry = facts.uninstall_entry()
    behind = {(64, f"{COMPONENTS}\\{name}", value): (None, installed[64, f"{COMPONENTS}\\{name}", value])
              for name in passed_over(installed) for value in (None, PACKED_CODE)}
    empty = [(32, "HKLM\\Software\\Corvane Works"), (64, "HKLM\\Software\\Corvane Works"),
             (64, "HKCR\\Installer\\Features"), (64, "HKCR\\Installer\\UpgradeCodes"), (64, "HKCR\\bastion"),
             (64, "HKCR\\bastion\\shell"), (64, "HKCR\\bastion\\shell\\open"),
             (64, "HKCR\\bastion\\shell\\open\\command")]
    return ({at: (value, None) for at, value in before.items() if at in rows_of(OURS) or at[1] == SHARED} | behind
            | {(view, key, None): (None, "") for view, key in empty}
            # The one command that the package notes is that of both links.
            | {(64, "HKCR\\bastion\\shell\\open\\command", ""): (None, OLDER[1][3]),
               (32, entry, "Installed"): (None, "0x00000001")})


def play(scene):
    scene.services
    scene.use_names()
    for view, key, name, value in OLDER + OTHERS + OURS:
        scene.prefix.set_registry(key, name, value, view)
    for name in ("F0000000000000000000000000000001", PACKED_CODE):
        scene.prefix.set_registry(SHARED, name, "C:\\shared.dll")
    pause = """
        before-files mark under-way
        before-files wait-for seen
    """
    scene.script(pause)
    install = scene.start("/quiet", log="install")
    scene.wait_for_mark("under-way", "the package")
    before = listing(scene)
    scene.mark("seen")
    scene.check_exit_code(install.finish(60), 0, "the install")
    installed = listing(scene)

    scene.check_equal("the client's service runs", run_service(scene, "slow"), "running")
    client = scene.prefix.start(facts.client_file("PalisadeDesktop.exe"), "--stay")
    scene.wait_for(lambda: "--stay" in scene.read(facts.LAUNCHES), "the client's start")
    stray = f"{facts.INSTALL_FOLDER}\\Games\\save.dat"
    scene.path(stray).parent.mkdir()
    scene.path(stray).write_text("a file of nobody's")
    scene.path(stray).chmod(0o444)  # read-only, for Wine too

    told = telemetry.told_so_far(scene)
    scene.script(pause)
    run = scene.start()
    first = scene.wait_for_page("prompt", "launch-or-repair")
    scene.window.click(ACTION2)
    page = scene.wait_for_page("progress", "repairing")
    scene.check_equal("the page tells of a repair", page.names.get(TITLE), text("installer_initializing_repair_title"))
    scene.wait_for_mark("under-way", "the package's second coming")
    scene.wait_for(lambda: client.poll() is not None, "the client's end", 5)
    scene.check_equal("the service is gone", scene.window.command(f"service-state {facts.SERVICE}"), "0")
    scene.check("the folder is gone, with all that was in it", not scene.exists(facts.INSTALL_FOLDER))
    apart = {at: change for at, change in changes(before, listing(scene)).items()
             if at[2] != "BundleResumeCommandLine"}
    wanted = wanted_changes(before, installed)
    scene.check("the registry is as before the client came", apart == wanted,
                "\n".join(map(str, sorted(apart.items() ^ wanted.items(), key=str))))
    scene.mark("seen")
    run.finish(60)
    scene.check_exit_code(run, 0)

    log = run.log
    starts = [line for line in log.messages("OnStartup") if line.startswith("[STARTUP]")]
    scene.check("the library starts twice, in the process of the first dialog",
                len(starts) == 2 and starts[0] == starts[1] and f"processId[{first.process}]" in starts[0], starts)
    scene.check_equal("the first life's window had ended when the second's came",
                      [line.text for line in log.library_lines() if line.function == "UIThreadFunc"],
                      ["Entering UIThreadFunc", "Exiting UIThreadFunc"] * 2)
    scene.check_equal("no desktop shortcut is asked for", log.variables.get("CreateDesktopShortcut"), "")
    scene.check_equal("both lives are of one session", len(set(log.messages("TelemetryManager::createSessionId"))), 1)
    scene.check("the window is gone", scene.window.look() is None)
    files, _ = scene.client_state()
    scene.check_equal("the client's files are there", files, set(facts.CLIENT_FILES))
    again = changes(installed, listing(scene))
    gone = {at for at in before if at in rows_of(OURS) or at[1] == SHARED}
    scene.check("the registry is as after the first install", again.keys() == gone,
                "\n".join(map(str, again.keys() ^ gone)))
    line = telemetry.command_line(run)
    # Of the first life nothing is sent, for nobody has gone on from its question.
    repaired = telemetry.INSTALL_START[1] | {"inst": "repair", "path": "custom"}
    success = telemetry.INSTALL_SUCCESS[1] | {"stst": "repair"}
    versions = {"lnvr": "3.4.1.101", "lhvr": "3.4.1.102", "apvr": "3.4.1.103", "bgvr": "3.2.1.0"}
    telemetry.check_telemetry(
        scene, thin=False, since=told,
        tally=[telemetry.tally_install("start", "repair"), telemetry.tally_install("finish", "success")],
        brisk=[telemetry.session_start(line, repair="1"), ("inst.repr.strt", versions), ("inst.inst.strt", repaired),
               ("inst.repr.succ", success), telemetry.SESSION_STOP])
