"""Checks a release package: that it holds what its lists say, and a licence for each part of the library."""
import hashlib
import json
import re
import subprocess
import tempfile
import zipfile
from pathlib import Path

from harness.places import ROOT
from harness.release import sbom, symbolize

UNSIGNED = "Signature: none"
SIGNED = "Signature:"
LICENCES = "has a licence for each part of the library"
SUMS_AGREE = "holds what its sums say, and nothing else"


def checks(archive: Path, trust: Path | None = None) -> dict[str, bool]:
    """`trust` has authorities that a signature may come from, beside the machine's own (PEM)."""
    with zipfile.ZipFile(archive) as opened:
        entries = opened.infolist()
        names = [entry.filename for entry in entries]
        whole = opened.testzip() is None and names == sorted(set(names))
        folders = {name.partition("/")[0] for name in names}
        files = {name.partition("/")[2]: opened.read(name) for name in names}
    sums = dict(reversed(line.split("  ", 1)) for line in files.get(sbom.SUMS, b"").decode().splitlines())
    found = {name: hashlib.sha256(data).hexdigest() for name, data in files.items() if name != sbom.SUMS}
    bill = json.loads(files.get(sbom.NAME, b"{}"))
    listed = {row["fileName"].removeprefix("./"): row["checksums"][1]["checksumValue"] for row in bill.get("files", [])}
    linked = [row for row in bill.get("packages", []) if row["SPDXID"].startswith("SPDXRef-Part-")]
    needed = {row["comment"] for row in linked}
    faults = sbom.faults(bill)
    return {f"opens, in one folder with one date {sorted(folders)}":
                whole and len(folders) == 1 and len({entry.date_time for entry in entries}) == 1,
            SUMS_AGREE: bool(sums) and sums == found,
            f"has a bill of materials as SPDX 2.3 asks {faults or ''}".rstrip(): not faults,
            "has a bill of materials for its files":
                listed == {name: value for name, value in found.items() if name != sbom.NAME},
            LICENCES: bool(needed) and all(len(files.get(name, b"")) > 500 for name in needed)
                and needed == {name for name in files if name.startswith("licences/")},
            "has the library's symbols": _symbols_fit(files),
            "is signed as it says": all(_signature(name, files, trust) for name in (sbom.LIBRARY, "version.dll"))}


def _symbols_fit(files: dict[str, bytes]) -> bool:
    names = sbom.LIBRARY, f"symbols/{symbolize.NAME}.debug"
    with tempfile.TemporaryDirectory() as folder:
        places = [Path(folder) / Path(name).name for name in names]
        for name, place in zip(names, places):
            place.write_bytes(files.get(name, b""))
        return all(name in files for name in names) and symbolize.belong_together(*places)


def _signature(name: str, files: dict[str, bytes], trust: Path | None) -> bool:
    note = files.get("RELEASE.txt", b"").decode()
    with tempfile.NamedTemporaryFile(suffix=".dll") as library:
        library.write(files.get(name, b""))
        library.flush()
        # From version 2.9 a missing signature is reported on the standard error.
        results = [subprocess.run(["osslsigncode", "verify", *authorities, "-in", library.name], text=True,
                                  stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
                   for authorities in ([], *([["-CAfile", trust]] if trust else []))]
    if UNSIGNED in note:
        return "No signature found" in results[0].stdout
    return SIGNED in note and any(one.returncode == 0 and "Signature verification: ok" in one.stdout for one in results)


def documented() -> dict[str, tuple[str, str]]:
    """Version and licence of each part in docs/third-party.md."""
    rows = re.findall(r"^\| ([^|]+) \| (\d\S*)[^|]* \| `([^`|]+)` \|", (ROOT / "docs/third-party.md").read_text(), re.M)
    return {name: (version, licence) for name, version, licence in rows}


def report(found: dict[str, bool]) -> int:
    print("\n".join(f"  {'✓' if ok else '✗'} the package {name}" for name, ok in found.items()))
    return 0 if all(found.values()) else 1
