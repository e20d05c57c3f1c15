"""Makes a bundle: the real Burn engine's file, the UX cabinet with the library, the attached cabinet with the package.

The engine finds the cabinets by its section .wixburn, and all else in the manifest, the entry "0" of the UX cabinet.
"""
import hashlib
import shutil
import struct
import subprocess
import sys
import tempfile
import uuid
import xml.etree.ElementTree as xml
from pathlib import Path

from harness.building import sample
from harness.building.sample import UTIL, WIX
from harness.building.signing import sign
from harness.places import ENGINE, LIBRARY, PACKAGE, VERSION, VERSION_LIBRARY

PACKAGE_ID = "PalisadeApp.msi"
RUNTIME_ID = "Runtime.exe"
BUNDLE_ID = "{0B5A7C53-1E0D-4C7A-8F63-2D9C41E7B6A0}"
BUNDLE_VERSION = VERSION

# What a scenario has the client package's custom actions do, and where that package's log is: no real bundle has them.
SCRIPT_VARIABLE = "PDXTEST_SCRIPT"
SCRIPT_PROPERTIES = {SCRIPT_VARIABLE: f"[{SCRIPT_VARIABLE}]", "PDXTEST_LOG": f"[WixBundleLog_{PACKAGE_ID}]"}


def bundle_id(version: str = BUNDLE_VERSION) -> str:
    """Each version of the bundle has an id of its own, all of them the same upgrade code."""
    if version == BUNDLE_VERSION:
        return BUNDLE_ID
    return "{" + str(uuid.uuid5(uuid.UUID(BUNDLE_ID), version)).upper() + "}"


def make(target: Path, library: Path, package: Path, variables: dict[str, str] | None = None,
         download_url: str = "", version: str = BUNDLE_VERSION, runtime: Path | None = None,
         beside: dict[str, Path] | None = None) -> Path:
    """Writes the bundle of sample/Bundle.wxs as `target`, around the library and the client package; `variables`
    override what it presets. With a download address it is a thin one: it does not hold the client package, and the
    engine fetches it from there. A thick one may have a `runtime`, a program that runs before the client package. The
    files `beside` the library are more payload of its folder, by their names there."""
    with tempfile.TemporaryDirectory() as folder:
        work = Path(folder)
        definitions = {"Version": version, "FileName": target.name, "Library": str(library),
                       "VersionLibrary": str(sign(VERSION_LIBRARY, work / "version.dll")),
                       "ClientPackage": str(package)}
        definitions |= {"ClientAddress": download_url} if download_url else {}
        definitions |= {"Runtime": str(runtime)} if runtime else {}
        source = sample.read(definitions)
        application = source.find(WIX + "BootstrapperApplication")
        payload = {row.get("Name"): Path(row.get("SourceFile")) for row in (application, *application)} | (beside or {})
        held = {f"a{n}": Path(row.get("SourceFile")) for n, row in enumerate(source.find(WIX + "Chain"))
                if row.get("Compressed") == "yes"}
        attached = _cabinet(work / "attached.cab", held) if held else None
        manifest = work / "manifest.xml"
        manifest.write_bytes(_manifest(source, target.name, payload, attached, variables or {}))
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


def _manifest(source: xml.Element, bundle_name: str, payload: dict[str, Path], attached: Path | None,
              overrides: dict[str, str]) -> bytes:
    """What the toolset's linker makes of the source, as far as the engine needs it."""
    manifest = xml.Element("BurnManifest", xmlns="http://schemas.microsoft.com/wix/2008/Burn")
    log = source.find(WIX + "Log")
    _add(manifest, "Log", PathVariable="WixBundleLog", Prefix=log.get("Prefix"), Extension=log.get("Extension"))
    _add(manifest, "RelatedBundle", Id=source.get("UpgradeCode"), Action="Upgrade")
    _add(manifest, "Update", Location=source.find(WIX + "Update").get("Location"))

    rows = {row.get("Name"): row.attrib for row in source.findall(WIX + "Variable")}
    for name in (SCRIPT_VARIABLE, *overrides):
        rows[name] = rows.get(name, {}) | {"Value": overrides.get(name, ""), "Type": "string"}
    for name, row in rows.items():
        given = {key: row[key] for key in ("Value", "Type") if key in row}
        _add(manifest, "Variable", Id=name, Hidden=row.get("Hidden", "no"), Persisted=row.get("Persisted", "no"),
             **given)
    for row in source.findall(UTIL + "RegistrySearch"):
        _add(manifest, "RegistrySearch", **row.attrib, Id=row.get("Variable"), Type="value", VariableType="string")

    ux = _add(manifest, "UX")
    for number, (name, file) in enumerate(payload.items()):
        _add(ux, "Payload", Id=name, FilePath=name, Packaging="embedded", SourcePath=f"u{number}", **_file_facts(file))
    if attached:
        _add(manifest, "Container", Id="Attached", FilePath=bundle_name, AttachedIndex="1", Attached="yes",
             Primary="yes", **_file_facts(attached))
    _add(manifest, "RollbackBoundary", Id="Boundary", Vital="yes")

    version = source.get("Version")
    own_id = bundle_id(version)
    registration = _add(manifest, "Registration", Id=own_id, ExecutableName=bundle_name, PerMachine="yes", Tag="",
                        Version=version, ProviderKey=own_id)
    _add(registration, "Arp", Register="yes", DisplayName=source.get("Name"), DisplayVersion=version,
         Publisher=source.get("Manufacturer"))

    chain = _add(manifest, "Chain")
    for number, row in enumerate(source.find(WIX + "Chain")):
        name, file = row.get("Name"), Path(row.get("SourceFile"))
        place = ({"Packaging": "embedded", "SourcePath": f"a{number}", "Container": "Attached"}
                 if row.get("Compressed") == "yes" else
                 {"Packaging": "external", "SourcePath": name, "DownloadUrl": row.get("DownloadUrl")})
        _add(manifest, "Payload", Id=name, FilePath=name, **place, **_file_facts(file))
        package = _add_msi(chain, row, file) if row.tag == WIX + "MsiPackage" else _add_program(chain, row, file)
        _add(package, "PayloadRef", Id=name)
    chain[0].set("RollbackBoundaryForward", "Boundary")
    chain[-1].set("RollbackBoundaryBackward", "Boundary")
    return xml.tostring(manifest, encoding="utf-8", xml_declaration=True)


def _add(parent: xml.Element, tag: str, **attributes: str) -> xml.Element:
    return xml.SubElement(parent, tag, attributes)


def _add_package(chain: xml.Element, tag: str, row: xml.Element, file: Path, **attributes: str) -> xml.Element:
    size = str(file.stat().st_size)
    return _add(chain, tag, Id=row.get("Id"), Cache="yes", PerMachine="yes", Vital="yes", Size=size, InstallSize=size,
                Permanent=row.get("Permanent", "no"), LogPathVariable=f"WixBundleLog_{row.get('Id')}", **attributes)


def _add_program(chain: xml.Element, row: xml.Element, file: Path) -> xml.Element:
    return _add_package(chain, "ExePackage", row, file, CacheId=row.get("Id"), Repairable="no",
                        DetectCondition=row.get("DetectCondition"), InstallArguments=row.get("InstallCommand"),
                        UninstallArguments="", RepairArguments="")


def _add_msi(chain: xml.Element, row: xml.Element, file: Path) -> xml.Element:
    facts = package_facts(file)
    msi = _add_package(chain, "MsiPackage", row, file, CacheId=facts["ProductCode"] + "v" + facts["ProductVersion"],
                       RollbackLogPathVariable=f"WixBundleRollbackLog_{row.get('Id')}", DisplayInternalUI="no",
                       ProductCode=facts["ProductCode"], UpgradeCode=facts["UpgradeCode"],
                       Language=facts["ProductLanguage"], Version=facts["ProductVersion"])
    properties = {prop.get("Name"): prop.get("Value") for prop in row.findall(WIX + "MsiProperty")}
    for name, value in (properties | SCRIPT_PROPERTIES).items():
        _add(msi, "MsiProperty", Id=name, Value=value)
    _add(msi, "Provides", Key=facts["ProductCode"], Version=facts["ProductVersion"], DisplayName=facts["ProductName"])
    return msi


if __name__ == "__main__":
    make(Path(sys.argv[1]), LIBRARY, PACKAGE)
