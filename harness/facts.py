"""What the sample client leaves on a machine, and the folder through which scenarios and client speak."""
from harness.bundle import BUNDLE_ID

PRODUCT_KEY = "HKLM\\Software\\Corvane Works\\Palisade Desktop"
UNINSTALL_ENTRY = "HKLM\\Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\" + BUNDLE_ID

INSTALL_FOLDER = "C:\\Program Files\\Palisade"
CLIENT_FILES = ("PalisadeLauncher.exe", "PalisadeLaunchHelper.exe", "PalisadeDesktop.exe",
                "PalisadeBackgroundService.exe", "PalisadeConnect_microsoft.exe")

# The script of the client's custom actions, their record and the launcher's notes lie here.
EXCHANGE = "C:\\PalisadeTest"


def client_file(name: str, install_folder: str = INSTALL_FOLDER) -> str:
    return f"{install_folder}\\Palisade Desktop\\{name}"


def client_values(install_folder: str = INSTALL_FOLDER) -> list[tuple[str, str, int, str]]:
    """The registry values of an install on a machine that had no older product: key, name, view, text."""
    launcher = client_file("PalisadeLauncher.exe", install_folder)
    connect = client_file("PalisadeConnect_microsoft.exe", install_folder)
    cached = f"\"C:\\ProgramData\\Package Cache\\{BUNDLE_ID}\\PalisadeSetup.exe\""
    older = ("HKLM\\Software\\Bastion", "HKLM\\Software\\Corvane Works\\Fenwick")
    return [
        (PRODUCT_KEY, "InstallLocation", 64, install_folder + "\\"),
        (PRODUCT_KEY, "LauncherAppPath", 64, launcher),
        (PRODUCT_KEY, "PrevBastion2", 64, ""),
        (PRODUCT_KEY, "PrevGateLink", 64, ""),
        (PRODUCT_KEY, "OriginalUninstallString", 64, cached + "  /uninstall"),
        (PRODUCT_KEY, "OriginalQuietUninstallString", 64, cached + " /uninstall /quiet"),
        (UNINSTALL_ENTRY, "UninstallString", 32, f"\"{launcher}\" -uninstall"),
        (UNINSTALL_ENTRY, "QuietUninstallString", 32, f"\"{launcher}\" -uninstall -silent"),
        *((key, "ClientPath", 32, launcher) for key in older),
        *((key, "PrevClientPath", 32, "") for key in older),
        *((f"HKCR\\{name}\\shell\\open\\command", "", 64, f"\"{launcher}\" \"%1\"")
          for name in ("bastion", "bastion2", "gatelink")),
        ("HKCR\\palisadeconnect.microsoft\\shell\\open\\command", "", 64, f"\"{connect}\" \"%1\""),
    ]
