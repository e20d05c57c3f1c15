"""What the sample client leaves on a machine, and the folder through which scenario and client exchange files."""
from harness.building.bundle import BUNDLE_VERSION, bundle_id

PRODUCT_KEY = "HKLM\\Software\\Corvane Works\\Palisade Desktop"
# Which game content the client is to install; in the 32-bit view.
PENDING_JOB = "HKCU\\Software\\Corvane Works\\Palisade Desktop\\pendingITDjob"

INSTALL_FOLDER = "C:\\Program Files\\Palisade"
FILES = ("PalisadeLauncher.exe", "PalisadeLaunchHelper.exe", "PalisadeDesktop.exe",
         "PalisadeBackgroundService.exe", "PalisadeConnect_microsoft.exe")
SERVICE = "PalisadeBackgroundService"

# The script of the client's custom actions, their record and the launcher's notes lie here.
EXCHANGE = "C:\\PalisadeTest"
LAUNCHES = EXCHANGE + "\\launches.txt"

# What others may do with the client's log while the package runs: 32 is a sharing violation, so that nobody may delete
# the file nor open it against its holder's reading and writing.
HELD = "use=0 delete=32 no-writer=32 no-reader=32"


def file(name: str, install_folder: str = INSTALL_FOLDER) -> str:
    return f"{install_folder}\\Palisade Desktop\\{name}"


LAUNCHER = file("PalisadeLauncher.exe")
STARTED = f'"{LAUNCHER}" /checkForUpdate'  # what the launcher notes of an ordinary start


def uninstall_entry(version: str = BUNDLE_VERSION) -> str:
    return "HKLM\\Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\" + bundle_id(version)


def values(install_folder: str = INSTALL_FOLDER,
           version: str = BUNDLE_VERSION) -> dict[tuple[str, int], dict[str, str]]:
    """The registry values of an install by a version of the bundle, on a machine that had no older product, by key and
    view."""
    launcher = file("PalisadeLauncher.exe", install_folder)
    connect = file("PalisadeConnect_microsoft.exe", install_folder)
    cached = f"\"C:\\ProgramData\\Package Cache\\{bundle_id(version)}\\PalisadeSetup.exe\""

    def protocol(name: str) -> tuple[str, int]:
        return f"HKCR\\{name}\\shell\\open\\command", 64

    return {
        (PRODUCT_KEY, 64): {
            "InstallLocation": install_folder + "\\",
            "LauncherAppPath": launcher,
            "PrevBastion2": "",
            "PrevGateLink": "",
            "OriginalUninstallString": cached + "  /uninstall",
            "OriginalQuietUninstallString": cached + " /uninstall /quiet",
        },
        (uninstall_entry(version), 32): {
            "UninstallString": f"\"{launcher}\" -uninstall",
            "QuietUninstallString": f"\"{launcher}\" -uninstall -silent",
        },
        ("HKLM\\Software\\Bastion", 32): {"ClientPath": launcher, "PrevClientPath": ""},
        ("HKLM\\Software\\Corvane Works\\Fenwick", 32): {"ClientPath": launcher, "PrevClientPath": ""},
        protocol("bastion"): {"": f"\"{launcher}\" \"%1\""},
        protocol("bastion2"): {"": f"\"{launcher}\" \"%1\""},
        protocol("gatelink"): {"": f"\"{launcher}\" \"%1\""},
        protocol("palisadeconnect.microsoft"): {"": f"\"{connect}\" \"%1\""},
    }
