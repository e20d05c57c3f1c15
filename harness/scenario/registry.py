"""The keys of the registry that the client, its package and the bundle write to, as a listing to compare."""
import json
import shutil

from harness.places import PROBE
from harness.scenario import client

INSTALLER = "HKLM\\Software\\Microsoft\\Windows\\CurrentVersion\\Installer\\UserData\\S-1-5-18"
UNINSTALL = "HKLM\\Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall"
COMPONENTS = INSTALLER + "\\Components"
PROTOCOLS = ("bastion", "bastion2", "gatelink", "palisadeconnect.microsoft")
PACKED_CODE = "A1B2C3D4E5F60718293A4B5C6D7E8F90"

UNAVAILABLE = {(view, client.PRODUCT_KEY, "IsUnavailable"): (None, "0x00000001") for view in (32, 64)}
PLACES = [("HKLM\\Software\\Bastion", 32), ("HKCU\\Software\\Corvane Works", 64), ("HKCR\\Installer", 64),
          ("HKCU\\Software\\Microsoft\\Windows\\CurrentVersion\\Run", 64),
          *((key, view) for key in ("HKLM\\Software\\Corvane Works", UNINSTALL, INSTALLER) for view in (32, 64)),
          *((f"HKCR\\{protocol}", 64) for protocol in PROTOCOLS)]

# All that programs write, with both views; takes half a minute.
WHOLE = [("HKLM\\Software", 64), ("HKLM\\System", 64), ("HKCU\\Software", 64)]

Listing = dict[tuple[int, str, str | None], str]


def listing(scene, places=PLACES) -> Listing:
    """Each value by view, key and name, and each key by the name None."""
    found: Listing = {}
    for place, view in places:
        for path, values in json.loads(scene.machine.command(f"tree {view} {place}")).items():
            key = f"{place}\\{path}" if path else place
            found[view, key, None] = ""
            # The installer names its copy of a package at random.
            found |= {(view, key, name): "" if name == "LocalPackage" else text for name, text in values.items()}
    return found


def changes(before: Listing, after: Listing) -> dict:
    """What has changed, as (before, after); None for what is not there."""
    return {at: (before.get(at), after.get(at)) for at in before.keys() | after.keys()
            if before.get(at) != after.get(at)}


def check_changes(scene, what: str, before: Listing, wanted: dict) -> None:
    """Of all values; Windows Installer leaves keys without any."""
    other = {at: change for at, change in changes(before, listing(scene)).items() if at[2] is not None}
    scene.checks.equal(f"{what}: nothing else of the registry has changed", other, wanted)


def below(found: Listing, key: str, view: int = 64) -> list[str]:
    """The names of the keys directly below one, in the registry's order."""
    names = {path[len(key) + 1:].split("\\")[0] for at, path, _ in found if at == view and path.startswith(key + "\\")}
    return sorted(names, key=str.upper)


def passed_over(found: Listing) -> list[str]:
    """The package's components that a purge leaves: it does not look at the one after each that it removes."""
    left, names = [], iter(below(found, COMPONENTS))
    for name in names:
        if is_ours(found, name) and is_ours(found, following := next(names, "")):
            left.append(following)
    return left


def is_ours(found: Listing, component: str) -> bool:
    return (64, f"{COMPONENTS}\\{component}", PACKED_CODE) in found


def run_service(scene, behaviour: str) -> None:
    """Runs a service from the client's folder in its own program's place."""
    program = client.file("PalisadeBackgroundService.exe")
    scene.machine.path(program).unlink()
    shutil.copyfile(PROBE, scene.machine.path(program))
    running = scene.machine.command(f'service {client.SERVICE} "{program}" service {client.SERVICE} {behaviour}')
    scene.checks.equal("the client's service runs", running, "running")
