"""Makes a bundle: the real Burn engine's file, the UX cabinet with the library, the attached cabinet with the package.

The engine finds the cabinets by its section .wixburn, and all else in the manifest, the entry "0" of the UX cabinet.
"""
import hashlib
import shutil
import struct
import subprocess
import tempfile
import uuid
import xml.etree.ElementTree as xml
from pathlib import Path

from harness.building.signing import sign
from harness.places import ENGINE, VERSION_LIBRARY

PACKAGE_ID = "PalisadeApp.msi"
RUNTIME_ID = "Runtime.exe"
BUNDLE_ID = "{0B5A7C53-1E0D-4C7A-8F63-2D9C41E7B6A0}"
BUNDLE_UPGRADE_CODE = "{9E1F3B72-64D8-4A35-B0C9-7F52A8D1634E}"
BUNDLE_VERSION = "12.37.0.5294"

# What the bundle presets, besides its own file name as BundleExecutableName: value, hidden in the log, kept for later
# runs. A value of None declares without a value.
VARIABLES = {
    "PDX_REPAIR": ("0", False, False),
    "PDX_MERIDIAN_MODE": ("0", False, False),
    "InstallFolder": ("[ProgramFiles64Folder]Palisade", False, True),
    "DefaultInstallFolder": ("[ProgramFiles64Folder]Palisade", False, False),
    "IsThickInstaller": ("yes", False, False),
    "KESTREL_AUTHCODE": (None, True, False),
    "PDXTEST_SCRIPT": ("", False, False),
}

# What the client package is given, as properties of Windows Installer: variables, most under their own names.
PACKAGE_PROPERTIES = {name: f"[{name}]" for name in (
    "PDX_SHORTCUT_NAME", "PRODUCT_DISPLAY_NAME", "INSTALLER_ERROR_REPORTER_SHORTCUT_TITLE",
    "INSTALLER_RECOVERY_HELPER_SHORTCUT_TITLE", "PDX_UNINSTALL_BASTION", "PDXTEST_SCRIPT")} | {
    "INSTALLFOLDER": "[InstallFolder]", "CREATEDESKTOPSHORTCUT": "[CreateDesktopShortcut]",
    "WIXBUNDLEPROVIDERKEY": "[WixBundleProviderKey]", "PDXTEST_LOG": f"[WixBundleLog_{PACKAGE_ID}]"}

# Runtimes whose versions the bundle looks up: variable, release and processor under the runtime's own key.
RUNTIMES = {
    "VCRedist10X86InstalledVer": "10.0\\VC\\VCRedist\\x86",
    "VCRedist11X86InstalledVer": "11.0\\VC\\Runtimes\\x86",
    "VCRedist12X86InstalledVer": "12.0\\VC\\Runtimes\\x86",
    "VCRedist14X86InstalledVer": "14.0\\VC\\Runtimes\\x86",
    "VCRedist14X64InstalledVer": "14.0\\VC\\Runtimes\\x64",
}


def bundle_id(version: str = BUNDLE_VERSION) -> str:
    """Each version of the bundle has an id of its own, all of them the same upgrade code."""
    if version == BUNDLE_VERSION:
        return BUNDLE_ID
    return "{" + str(uuid.uuid5(uuid.UUID(BUNDLE_UPGRADE_CODE), version)).upper() + "}"


def make(target: Path, library: Path, package: Path, variables: dict[str, str] | None = None,
         download_url: str = "", version: str = BUNDLE_VERSION, runtime: Path | None = None,
         beside: dict[str, Path] | None = None) -> Path:
    """Writes the bundle `target` around the library and the client package; `variables` override what it presets. With
    a download address it is a thin one: it does not hold the client package, and the engine fetches it from there. A
    thick one may have a `runtime`, a program that is run without arguments before the client package. The files
    `beside` the library are more payload of its folder, by their names there."""
    if download_url:
        variables = {"IsThickInstaller": "no"} | (variables or {})
    with tempfile.TemporaryDirectory() as folder:
        work = Path(folder)
        payload = {"PalisadeBootstrapper.dll": library, "version.dll": sign(VERSION_LIBRARY, work / "version.dll")}
        payload |= beside or {}
        attached = None if download_url else _cabinet(
            work / "attached.cab", {"a0": package} | ({"a1": runtime} if runtime else {}))
        manifest = work / "manifest.xml"
        source = attached or download_url
        manifest.write_bytes(_manifest(target.name, payload, package, source, variables or {}, version, runtime))
        ux = _cabinet(work / "ux.cab", {"0": manifest} | {f"u{n}": file for n, file in enumerate(payload.values())})
        cabinets = [ux, attached] if attached else [ux]
        with target.open("wb") as bundle:
            bundle.write(_engine_for(bundle_id(version), [cabinet.stat().st_size for cabinet in cabinets]))
            for cabinet in cabinets:
                bundle.write(cabinet.read_bytes())
    return target


def package_facts(package: Path) -> dict[str, str]:
    """The property table of an MSI package: ProductCode, ProductVersion and so on."""
    table = subprocess.run(["msiinfo", "export", package, "Property"], check=True, capture_output=True, text=True)
    return dict(line.split("\t", 1) for line in table.stdout.splitlines()[3:])


def _engine_for(own_id: str, cabinet_sizes: list[int]) -> bytes:
    """The engine's file with its section .wixburn filled in."""
    engine = bytearray(ENGINE.read_bytes())
    section = struct.pack("<II16sIIIIII", 0x00F14300, 2, uuid.UUID(own_id).bytes_le, len(engine), 0, 0, 0, 1,
                          len(cabinet_sizes)) + struct.pack(f"<{len(cabinet_sizes)}I", *cabinet_sizes)
    offset, size = _section(engine, b".wixburn")
    if len(section) > size:
        raise ValueError("the engine's section is too small for that many containers")
    engine[offset:offset + len(section)] = section
    return bytes(engine)


def _section(image: bytes, name: bytes) -> tuple[int, int]:
    """Offset in the file and size of a section of a Windows executable."""
    header, = struct.unpack_from("<I", image, 0x3C)
    count, = struct.unpack_from("<H", image, header + 6)
    optional, = struct.unpack_from("<H", image, header + 20)
    for index in range(count):
        row = header + 24 + optional + 40 * index
        if image[row:row + 8].rstrip(b"\0") == name:
            size, offset = struct.unpack_from("<II", image, row + 16)
            return offset, size
    raise ValueError(f"no section {name.decode()} in the engine")


def _cabinet(target: Path, entries: dict[str, Path]) -> Path:
    """Packs files under the names that the manifest gives them."""
    folder = target.with_suffix("")
    folder.mkdir()
    for name, source in entries.items():
        shutil.copyfile(source, folder / name)
    subprocess.run(["gcab", "--create", "--zip", "--nopath", target, *entries], cwd=folder, check=True)
    return target


def _file_facts(file: Path) -> dict[str, str]:
    return {"FileSize": str(file.stat().st_size), "Hash": hashlib.sha1(file.read_bytes()).hexdigest().upper()}


def _manifest(bundle_name: str, payload: dict[str, Path], package: Path, source: Path | str, overrides: dict[str, str],
              version: str, runtime: Path | None) -> bytes:
    """The package's source is the attached cabinet or a download address."""
    manifest = xml.Element("BurnManifest", xmlns="http://schemas.microsoft.com/wix/2008/Burn")

    def add(parent: xml.Element, tag: str, **attributes: str) -> xml.Element:
        return xml.SubElement(parent, tag, attributes)

    add(manifest, "Log", PathVariable="WixBundleLog", Prefix="Palisade", Extension=".log")
    add(manifest, "RelatedBundle", Id=BUNDLE_UPGRADE_CODE, Action="Upgrade")
    # Offered to the library only; an ordinary run declines, and nothing is fetched from there.
    add(manifest, "Update", Location="https://updates.invalid/palisade.xml")

    variables = {"BundleExecutableName": (bundle_name, False, False)} | VARIABLES
    for name, value in overrides.items():
        _, hidden, kept = variables.get(name, (None, False, False))
        variables[name] = (value, hidden, kept)
    for name, (value, hidden, kept) in variables.items():
        given = {} if value is None else {"Value": value, "Type": "string"}
        add(manifest, "Variable", Id=name, Hidden="yes" if hidden else "no",
            Persisted="yes" if kept else "no", **given)
    for name, key in RUNTIMES.items():
        add(manifest, "RegistrySearch", Id=name, Variable=name, Root="HKLM", Value="Version", Type="value",
            Key=f"SOFTWARE\\Microsoft\\VisualStudio\\{key}", VariableType="string")

    ux = add(manifest, "UX")
    for number, (name, file) in enumerate(payload.items()):
        add(ux, "Payload", Id=name, FilePath=name, Packaging="embedded", SourcePath=f"u{number}", **_file_facts(file))

    if isinstance(source, Path):
        add(manifest, "Container", Id="Attached", FilePath=bundle_name, AttachedIndex="1", Attached="yes",
            Primary="yes", **_file_facts(source))
        place = {"Packaging": "embedded", "SourcePath": "a0", "Container": "Attached"}
    else:
        place = {"Packaging": "external", "SourcePath": PACKAGE_ID, "DownloadUrl": source}
    add(manifest, "Payload", Id=PACKAGE_ID, FilePath=PACKAGE_ID, **place, **_file_facts(package))
    add(manifest, "RollbackBoundary", Id="Boundary", Vital="yes")

    own_id = bundle_id(version)
    registration = add(manifest, "Registration", Id=own_id, ExecutableName=bundle_name, PerMachine="yes", Tag="",
                       Version=version, ProviderKey=own_id)
    add(registration, "Arp", Register="yes", DisplayName="Palisade app", DisplayVersion=version,
        Publisher="Corvane Works, Inc.")

    chain = add(manifest, "Chain")
    if runtime:
        add(manifest, "Payload", Id=RUNTIME_ID, FilePath=RUNTIME_ID, Packaging="embedded", SourcePath="a1",
            Container="Attached", **_file_facts(runtime))
        size = str(runtime.stat().st_size)
        added = add(chain, "ExePackage", Id=RUNTIME_ID, Cache="yes", CacheId=RUNTIME_ID, InstallSize=size, Size=size,
                    PerMachine="yes", Permanent="yes", Vital="yes", RollbackBoundaryForward="Boundary",
                    LogPathVariable=f"WixBundleLog_{RUNTIME_ID}", DetectCondition="", InstallArguments="",
                    UninstallArguments="", RepairArguments="", Repairable="no")
        add(added, "PayloadRef", Id=RUNTIME_ID)
    _add_package(chain, add, package)
    return xml.tostring(manifest, encoding="utf-8", xml_declaration=True)


def _add_package(chain: xml.Element, add, package: Path) -> None:
    facts = package_facts(package)
    size = str(package.stat().st_size)
    msi = add(chain, "MsiPackage", Id=PACKAGE_ID, Cache="yes", PerMachine="yes", Permanent="no", Vital="yes",
              CacheId=facts["ProductCode"] + "v" + facts["ProductVersion"], Size=size, InstallSize=size,
              RollbackBoundaryForward="Boundary", RollbackBoundaryBackward="Boundary",
              LogPathVariable=f"WixBundleLog_{PACKAGE_ID}",
              RollbackLogPathVariable=f"WixBundleRollbackLog_{PACKAGE_ID}",
              ProductCode=facts["ProductCode"], UpgradeCode=facts["UpgradeCode"], Language=facts["ProductLanguage"],
              Version=facts["ProductVersion"], DisplayInternalUI="no")
    for name, value in PACKAGE_PROPERTIES.items():
        add(msi, "MsiProperty", Id=name, Value=value)
    add(msi, "Provides", Key=facts["ProductCode"], Version=facts["ProductVersion"], DisplayName=facts["ProductName"])
    add(msi, "PayloadRef", Id=PACKAGE_ID)
