"""Makes the release package: ./package.sh [--sign CERTIFICATE KEY [--timestamp URL]] | --check FILE [--trust FILE]

The archive is a zip, which Windows opens by itself. The same commit gives the same bytes, on any day and in any folder:
its files are sorted, and bear the date of the commit, or SOURCE_DATE_EPOCH where that is set.
"""
import argparse
import hashlib
import json
import os
import subprocess
import sys
import tempfile
import time
import zipfile
from pathlib import Path
from typing import NamedTuple

from harness.building.build import build
from harness.places import LIBRARY, OUT, ROOT, VERSION, VERSION_LIBRARY
from harness.release import check, parts, sbom

NAME = f"palisade-installer-{VERSION}"
FOLDER = OUT / "package"
LIBRARIES = LIBRARY, VERSION_LIBRARY
SCRIPT = "symbols/symbolize.py"


class Signing(NamedTuple):
    certificate: Path  # PEM; those of the authorities between it and the root follow in the same file
    key: Path
    timestamp: str = ""  # address of a time-stamp service
    password: str = ""  # a file with the key's password


def _git(*arguments: str) -> str:
    return subprocess.run(["git", *arguments], cwd=ROOT, capture_output=True, text=True, check=True).stdout


def release_date() -> int:
    return int(os.environ.get("SOURCE_DATE_EPOCH") or _git("log", "-1", "--format=%ct"))


def _signed(library: Path, signing: Signing, date: int) -> bytes:
    """Without a time stamp the signature bears the release's date, and is the same for the same key (RSA)."""
    options = ["-ts", signing.timestamp] if signing.timestamp else ["-time", str(date)]
    options += ["-readpass", signing.password] if signing.password else []
    with tempfile.TemporaryDirectory() as folder:
        target = Path(folder) / library.name
        command = ["osslsigncode", "sign", "-h", "sha256", "-certs", signing.certificate, "-key", signing.key, *options]
        done = subprocess.run([*command, "-in", library, "-out", target], capture_output=True, text=True)
        if done.returncode:
            raise SystemExit(f"{library.name} could not be signed:\n{done.stdout}{done.stderr}")
        return target.read_bytes()


def _signer(signing: Signing) -> str:
    return subprocess.run(["openssl", "x509", "-in", signing.certificate, "-noout", "-subject", "-fingerprint",
                           "-sha256"], capture_output=True, text=True, check=True).stdout


def _note(signing: Signing | None, date: int) -> str:
    """RELEASE.txt: what a reader has in hand."""
    changed = " with changes that are not committed" if _git("status", "--porcelain", "--untracked-files=no") else ""
    tools = subprocess.run(["dpkg-query", "-W", "-f", "${Package} ${Version}, ", "g++-mingw-w64-i686-posix",
                            "binutils-mingw-w64-i686"], capture_output=True, text=True, check=True).stdout
    lines = [f"Palisade app installer {VERSION}", "",
             f"Commit: {_git('rev-parse', 'HEAD').strip()}{changed}",
             f"Date: {time.strftime('%Y-%m-%dT%H:%M:%SZ', time.gmtime(date))}",
             f"Debian's packages: {tools.rstrip(', ')}; those of the parts are in {sbom.NAME}",
             *(f"{library.name} before signing, SHA-256: {hashlib.sha256(library.read_bytes()).hexdigest()}"
               for library in LIBRARIES)]
    if signing is None:
        lines += [check.UNSIGNED, "", "The libraries are NOT signed. Sign them before they are put into a bundle."]
    else:
        lines += [f"{check.SIGNED} {line}" for line in _signer(signing).splitlines()]
        lines += [f"Time stamp: {signing.timestamp or 'none'}"]
    return "\n".join([*lines, "", "docs/release.md describes how to check this package and how to trace a crash.", ""])


def contents(signing: Signing | None = None) -> dict[str, bytes]:
    """The archive's files by name, of the libraries that were built last."""
    date = release_date()
    found = parts.find()
    files = {name: (ROOT / name).read_bytes() for name in
             _git("ls-files", "-z", "docs", "sample", "CHANGELOG.md", ":!docs/*.sh").split("\0") if name}
    files |= {f"licences/{parts.file_name(part)}": parts.licence_text(part).encode() for part, *_ in found}
    files |= {library.name: _signed(library, signing, date) if signing else library.read_bytes()
              for library in LIBRARIES}
    files |= {f"symbols/{LIBRARY.stem}.debug": LIBRARY.with_suffix(".debug").read_bytes(),
              SCRIPT: (ROOT / "harness/release/symbolize.py").read_bytes(),
              "RELEASE.txt": _note(signing, date).encode()}
    files = dict(sorted(files.items()))
    bill = json.dumps(sbom.write(VERSION, date, files, found), indent=1, ensure_ascii=False)
    return with_sums(files | {sbom.NAME: bill.encode() + b"\n"})


def with_sums(files: dict[str, bytes]) -> dict[str, bytes]:
    sums = "".join(f"{hashlib.sha256(data).hexdigest()}  {name}\n" for name, data in sorted(files.items()))
    return files | {sbom.SUMS: sums.encode()}


def pack(target: Path, files: dict[str, bytes], level: int = 9) -> Path:
    """Writes the archive, compressed by that level of deflate (1 to 9)."""
    target.parent.mkdir(parents=True, exist_ok=True)
    with zipfile.ZipFile(target, "w", zipfile.ZIP_DEFLATED) as archive:
        for name, data in sorted(files.items()):
            entry = zipfile.ZipInfo(f"{NAME}/{name}", time.gmtime(release_date())[:6])
            entry.create_system = 3  # Unix, whatever this runs on
            entry.external_attr = (0o100755 if name == SCRIPT else 0o100644) << 16
            entry.compress_type = zipfile.ZIP_DEFLATED
            archive.writestr(entry, data, compresslevel=level)
    return target


def _arguments() -> argparse.Namespace:
    parser = argparse.ArgumentParser(prog="./package.sh", description="Makes the release package, or checks one.")
    parser.add_argument("--sign", nargs=2, type=Path, metavar=("CERTIFICATE", "KEY"), help="PEM files; otherwise "
                        "PALISADE_SIGN_CERTIFICATE and PALISADE_SIGN_KEY name them, or the libraries stay unsigned; "
                        "PALISADE_SIGN_PASSWORD_FILE names a file with the key's password")
    parser.add_argument("--timestamp", default="", metavar="URL", help="a time-stamp service (RFC 3161)")
    parser.add_argument("--check", type=Path, metavar="FILE", help="checks an archive instead of making one")
    parser.add_argument("--trust", type=Path, metavar="FILE",
                        help="authorities that a signature may come from, beside the machine's own; PEM")
    given = parser.parse_args()
    if not given.sign:
        names = [os.environ.get(f"PALISADE_SIGN_{what}", "") for what in ("CERTIFICATE", "KEY")]
        if any(names) and not all(names):
            parser.error("PALISADE_SIGN_CERTIFICATE and PALISADE_SIGN_KEY belong together")
        given.sign = [Path(name) for name in names] if all(names) else None
    if given.timestamp and not given.sign:
        parser.error("--timestamp needs --sign")
    return given


def main() -> int:
    given = _arguments()
    if given.check:
        try:
            return check.report(check.checks(given.check, given.trust))
        except (zipfile.BadZipFile, OSError, ValueError, KeyError) as error:
            raise SystemExit(f"{given.check} is no release package: {error}") from None
    build("library")
    password = os.environ.get("PALISADE_SIGN_PASSWORD_FILE", "")
    signing = Signing(*given.sign, given.timestamp, password) if given.sign else None
    archive = pack(FOLDER / f"{NAME}{'' if signing else '-unsigned'}.zip", contents(signing))
    total = hashlib.sha256(archive.read_bytes()).hexdigest()
    archive.with_suffix(".zip.sha256").write_text(f"{total}  {archive.name}\n")
    print(f"{total}  {archive.relative_to(ROOT)}, {archive.stat().st_size} bytes"
          + ("" if signing else "; the libraries are NOT signed"))
    return check.report(check.checks(archive, given.trust or (signing and signing.certificate)))


if __name__ == "__main__":
    sys.exit(main())
