"""The parts of the library that others wrote: found in the link's map, with the installed packages' licences."""
import json
import os
import re
import subprocess
from pathlib import Path
from typing import NamedTuple

from harness.places import BUILD, LIBRARY, ROOT, VERSION_LIBRARY

MAPS = LIBRARY.with_suffix(".map"), VERSION_LIBRARY.with_suffix(".map")
HEADERS = BUILD / "release/headers"  # what of the system's headers the cross compiler sees (cmake/dependencies.cmake)
GUMBO = ROOT / "cmake/gumbo/node_modules/gumbo-parser"
FONTS = ROOT / "resources/fonts/LICENCE.txt"
COMMON = Path("/usr/share/common-licenses")


class Part(NamedTuple):
    name: str
    origins: tuple[str, ...]  # what it is found by: a Debian package, or "npm:" or "file:" and a name
    licence: str  # an SPDX expression
    holder: str
    supplement: tuple[Path, ...] = ()  # texts beside the package's own file


# Licences are those of the files that are linked, where a package has more. Of MinGW-w64: gdtoa's files are Lucent's
# and David Gay's, the start-up code and the GUIDs are in the public domain; the runtime's package has winpthreads too.
PARTS = (
    Part("Gumbo", ("npm:gumbo-parser",), "Apache-2.0 AND MIT", "Google Inc.; Bjoern Hoehrmann"),
    Part("{fmt}", ("libfmt-dev",), "MIT", "Victor Zverovich"),
    Part("JSON for Modern C++", ("nlohmann-json3-dev",), "MIT", "Niels Lohmann, Florian Loitsch, Bjoern Hoehrmann"),
    Part("zlib", ("libz-mingw-w64-dev",), "Zlib", "Jean-loup Gailly, Mark Adler"),
    Part("cpptoml", ("libcpptoml-dev",), "MIT", "Chase Geigle"),
    Part("libstdc++ and libgcc of GCC", ("g++-mingw-w64-i686-posix", "gcc-mingw-w64-i686-posix",
                                         "gcc-mingw-w64-i686-posix-runtime"),
         "GPL-3.0-or-later WITH GCC-exception-3.1", "Free Software Foundation, Inc.", (COMMON / "GPL-3",)),
    Part("MinGW-w64 runtime and winpthreads", ("mingw-w64-i686-dev", "mingw-w64-common"),
         "ZPL-2.1 AND MIT AND BSD-3-Clause AND LicenseRef-Lucent AND LicenseRef-David-Gay AND LicenseRef-public-domain",
         "the mingw-w64 project; Lockless Inc.; Lucent Technologies; David M. Gay"),
    Part("Manrope, as TT Commons", ("file:sans.ttf",), "OFL-1.1", "The Manrope Project Authors, Mikhail Sharanda"),
    Part("Fira Code, as Apercu Mono Pro", ("file:mono.otf",), "OFL-1.1",
         "The Fira Code Project Authors, Nikita Prokopov, Mozilla Foundation, Telefonica S.A."),
)
# The project's own archives and objects, by their path in the build's folder.
_OWN = re.compile(r"libpalisade_(windows|rules)\.a|CMakeFiles/palisade_(entry|resources)\.dir/.*")
_BUILT = {"libpalisade_gumbo.a": "npm:gumbo-parser", "libpalisade_fmt.a": "libfmt-dev"}
# A line of the map that places something of an input file: address, size, file, and a member if it is an archive.
_PLACED = re.compile(r"0x[0-9a-f]+ +0x([0-9a-f]+) (\S+?\.(?:a|o|obj|res))(?:\([^()]*\))?$", re.M)


class Found(NamedTuple):
    part: Part
    version: str
    url: str  # its address as a package (purl)


def linked_files(text: str) -> set[str]:
    """The archives and objects of a map that something in the library is from."""
    placed = text[text.index("\nLinker script and memory map"):]
    return {os.path.normpath(file) for size, file in _PLACED.findall(placed) if int(size, 16)}


def origins() -> set[str]:
    """Where everything in the library is from, as PARTS names it; the project's own left out."""
    found = {_BUILT.get(file, "" if _OWN.fullmatch(file) else file)
             for map_file in MAPS for file in linked_files(map_file.read_text())}
    # Import libraries for late binding are made from the toolchain's (cmake/delayed.cmake).
    named = {name for name in found if name and not name.startswith(("/", "delayed/"))}
    files = [Path(name) for name in found if name.startswith("/")]
    files += [header.resolve() for header in HEADERS.iterdir()]
    fonts = re.findall(r'PDX_FONT "fonts/([^"]+)"', (ROOT / "resources/palisade.rc").read_text())
    return named | {_package_of(file) for file in files} | {f"file:{name}" for name in fonts}


def _package_of(file: Path) -> str:
    owner = subprocess.run(["dpkg-query", "-S", file], capture_output=True, text=True).stdout
    return re.split("[:,]", owner)[0] or str(file)


def find() -> list[Found]:
    """The parts of the library that was built last; fails for one that PARTS does not name."""
    there = origins()
    unknown = there - {origin for part in PARTS for origin in part.origins}
    if unknown:
        raise SystemExit(f"in the library, but in no row of harness/release/parts.py: {', '.join(sorted(unknown))}")
    return [Found(part, *_release_of(next(origin for origin in part.origins if origin in there)))
            for part in PARTS if there.intersection(part.origins)]


def _release_of(origin: str) -> tuple[str, str]:
    kind, _, name = origin.rpartition(":")
    if kind == "npm":
        version = json.loads((GUMBO / "package.json").read_text())["version"]
        return version, f"pkg:npm/{name}@{version}"
    if kind == "file":
        version = re.search(rf"^ +{re.escape(name)} .*, version ([\d.]+)", FONTS.read_text(), re.M)[1]
        return version, ""
    version = subprocess.run(["dpkg-query", "-W", "-f", "${Version}", name], capture_output=True, text=True,
                             check=True).stdout
    return version, f"pkg:deb/debian/{name.replace('+', '%2B')}@{version.replace('+', '%2B')}?distro=bookworm"


def file_name(part: Part) -> str:
    return re.sub(r"[^a-z0-9]+", "-", part.name.lower()).strip("-") + ".txt"


def licence_text(part: Part) -> str:
    """All that has to be shipped with the part, from the package that is installed."""
    first = part.origins[0]
    if first == "npm:gumbo-parser":
        source = GUMBO / "deps/gumbo-parser"
        decoder = (source / "src/utf8.c").read_text()
        notice = re.search(r"^// Copyright \(c\) .*Hoehrmann(.*\n)*?(?=#define)", decoder, re.M)[0]
        texts = [(source / "COPYING").read_text(), "src/utf8.c:\n\n" + re.sub(r"^// ?", "", notice, flags=re.M)]
    elif first.startswith("file:"):
        texts = [FONTS.read_text("utf-8")]
    else:
        texts = [Path(f"/usr/share/doc/{first}/copyright").read_text("utf-8", "replace")]
    return "\n\n".join(text.strip() + "\n" for text in [*texts, *(file.read_text() for file in part.supplement)])


def stanza(part: Part, licence: str) -> str:
    """The text of one licence of a package's copyright file."""
    match = re.search(rf"^License: {re.escape(licence)}\n((?: .*\n)+)", licence_text(part), re.M)
    return re.sub(r"^ \.?", "", match[1], flags=re.M).strip() if match else "In the public domain."
