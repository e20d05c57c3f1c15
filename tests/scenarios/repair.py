"""A person repairs: all of the client is removed, nothing else, and the library, loaded again, installs it."""
from harness.desktop.strings import text
from harness.desktop.window import ACTION2, TITLE
from harness.scenario import client
from harness.scenario.registry import (COMPONENTS, INSTALLER, PACKED_CODE, UNINSTALL, changes, listing, passed_over,
                                       run_service)
from harness.scenario.telemetry import INSTALL_START, INSTALL_SUCCESS, Expected, Sent, tally_install

# What the machine had before the client was installed: an older product with its program, another's links, and records.
OLDER = [
    (32, "HKLM\\Software\\Bastion", "ClientPath", "C:\\Bastion\\Bastion.exe"),
    (64, "HKCR\\bastion2\\shell\\open\\command", "", "\"C:\\Bastion\\Bastion.exe\" \"%1\""),
    (64, "HKCR\\gatelink\\shell\\open\\command", "", "gate \"%1\""),
]
OTHERS = [
    (32, UNINSTALL + "\\Another", "DisplayName", "Palisade Desktop 2"),
    # Between one that is removed and the package's own, which would not be looked at after it.
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
# A component that another product shares is removed too.
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
    """From the moment at which the client's package first ran to that at which it runs again."""
    entry = client.uninstall_entry()
    passed = {(64, f"{COMPONENTS}\\{name}", value): (None, installed[64, f"{COMPONENTS}\\{name}", value])
              for name in passed_over(installed) for value in (None, PACKED_CODE)}
    empty = [(32, "HKLM\\Software\\Corvane Works"), (64, "HKLM\\Software\\Corvane Works"),
             (64, "HKCR\\Installer\\Features"), (64, "HKCR\\Installer\\UpgradeCodes"), (64, "HKCR\\bastion"),
             (64, "HKCR\\bastion\\shell"), (64, "HKCR\\bastion\\shell\\open"),
             (64, "HKCR\\bastion\\shell\\open\\command")]
    return ({at: (value, None) for at, value in before.items() if at in rows_of(OURS) or at[1] == SHARED} | passed
            | {(view, key, None): (None, "") for view, key in empty}
            # The one command that the package notes is that of both links.
            | {(64, "HKCR\\bastion\\shell\\open\\command", ""): (None, OLDER[1][3]),
               (32, entry, "Installed"): (None, "0x00000001")})


def use_client(scene) -> None:
    """Its service and one of its programs run, and its folder has a read-only file that is not its own."""
    run_service(scene, "slow")
    stray = scene.machine.path(f"{client.INSTALL_FOLDER}\\Games\\save.dat")
    stray.parent.mkdir()
    stray.write_text("not the client's")
    stray.chmod(0o444)  # for Wine too


def check_lives(scene, log, process: int) -> None:
    starts = [line for line in log.messages("OnStartup") if line.startswith("[STARTUP]")]
    scene.checks.that("the library starts twice, in the process of the first dialog",
                      len(starts) == 2 and starts[0] == starts[1] and f"processId[{process}]" in starts[0], starts)
    scene.checks.equal("the first life's window had ended before the second's was made", log.texts("UIThreadFunc"),
                       ["Entering UIThreadFunc", "Exiting UIThreadFunc"] * 2)
    scene.checks.equal("no desktop shortcut is asked for", log.variables.get("CreateDesktopShortcut"), "")


def play(scene):
    scene.services  # before the first run
    scene.window.use_names()
    for view, key, name, value in OLDER + OTHERS + OURS:
        scene.machine.set_value(key, name, value, view)
    for name in ("F0000000000000000000000000000001", PACKED_CODE):
        scene.machine.set_value(SHARED, name, "C:\\shared.dll")
    scene.runs.pause()
    install = scene.runs.start("/quiet", log="install")
    scene.runs.wait_for_mark()
    before = listing(scene)
    scene.runs.mark()
    install.ends(0, "the install")
    installed = listing(scene)
    use_client(scene)
    desktop = scene.machine.start_client()

    sent = Sent(scene)
    scene.runs.pause()
    run = scene.runs.start(page="prompt")
    process = scene.window.look().process
    page = scene.window.click(ACTION2, "progress", "repairing")
    scene.checks.equal("the page names the repair", page.names.get(TITLE), text("installer_initializing_repair_title"))
    scene.runs.wait_for_mark()
    scene.wait_for(lambda: desktop.poll() is not None, "the client's end", 5)
    scene.checks.equal("the service is gone", scene.machine.command(f"service-state {client.SERVICE}"), "0")
    scene.checks.that("the folder is gone, with all that was in it", not scene.machine.exists(client.INSTALL_FOLDER))
    apart = {at: change for at, change in changes(before, listing(scene)).items() if at[2] != "BundleResumeCommandLine"}
    wanted = wanted_changes(before, installed)
    scene.checks.that("the registry is as before the client was installed", apart == wanted,
                      "\n".join(map(str, sorted(apart.items() ^ wanted.items(), key=str))))
    scene.runs.mark()
    run.ends()

    check_lives(scene, run.log, process)
    scene.checks.that("the window is gone", scene.window.look() is None)
    scene.checks.files_there()
    again = changes(installed, listing(scene))
    gone = {at for at in before if at in rows_of(OURS) or at[1] == SHARED}
    scene.checks.that("the registry is as after the first install", again.keys() == gone,
                      "\n".join(map(str, again.keys() ^ gone)))
    # Nothing is sent of the first life: nobody has gone on from its question.
    repaired = INSTALL_START[1] | {"inst": "repair", "path": "custom"}
    versions = {"lnvr": "3.4.1.101", "lhvr": "3.4.1.102", "apvr": "3.4.1.103", "bgvr": "3.2.1.0"}
    sent.check(Expected(run, start={"repair": "1"},
                        tally=[tally_install("start", "repair"), tally_install("finish", "success")],
                        brisk=[("inst.repr.strt", versions), ("inst.inst.strt", repaired),
                               ("inst.repr.succ", INSTALL_SUCCESS[1] | {"stst": "repair"})]))
