#!/usr/bin/env python3
"""Traces a crash to source lines: symbolize.py CODE [--library FILE] [--symbols FILE]

CODE is a crash event's "code", such as ec-25-2866, or an offset in the library, such as 0x66866, which the system's
event log has as "fault offset".

An offset names one line. A code holds only the low 16 bits of the address, and one line of each 64 KB of the library
fits it. The script leaves out addresses that no instruction begins at, and lists first what can fault: an instruction
that follows a pointer. A code names no module. If the fault was in another one, no line below is right. So it is with
an uncaught C++ exception, whose fault is in the system's RaiseException.

Without options the library and its symbols are those of the folder that this script is in, or the folder above it.
Needs Python 3.9 and the binutils for 32-bit Windows programs (Debian: binutils-mingw-w64-i686, or the host's binutils).
"""
import argparse
import bisect
import re
import shutil
import struct
import subprocess
import sys
import zlib
from pathlib import Path
from typing import NamedTuple

NAME = "PalisadeBootstrapper"
GRANULE = 0x10000  # where modules are loaded: the low 16 bits of an address are those of the offset in its module
CODE = re.compile(r"(?:ec-)?([0-9A-F]{2})-([0-9A-F]{4})", re.I)
OFFSET = re.compile(r"(?:0x)?([0-9A-F]{1,8})", re.I)
LONGEST_NAME = 80  # of a function, in characters
NO_MODULES = "25"  # the low byte of the hash's start


class Image(NamedTuple):
    """What the library's headers say."""
    base: int
    text: int  # offset of the code in the loaded image
    size: int  # of the code
    symbols: str  # the name of the file with its symbols
    crc: int  # of that file


class Candidate(NamedTuple):
    offset: int
    likely: bool
    instruction: str
    frames: list[str]  # "function at file:line", the innermost of inlined functions first


def read_image(library: Path) -> Image:
    data = library.read_bytes()
    header, = struct.unpack_from("<I", data, 0x3C)
    count, = struct.unpack_from("<H", data, header + 6)
    optional, = struct.unpack_from("<H", data, header + 20)
    base, = struct.unpack_from("<I", data, header + 24 + 28)
    names, = struct.unpack_from("<I", data, header + 12)
    symbol_count, = struct.unpack_from("<I", data, header + 16)
    strings = names + 18 * symbol_count if names else 0
    found = {}
    for row in range(header + 24 + optional, header + 24 + optional + 40 * count, 40):
        name = data[row:row + 8].rstrip(b"\0").decode()
        if name.startswith("/"):  # a long name is kept in the table of strings
            start = strings + int(name[1:])
            name = data[start:data.index(b"\0", start)].decode()
        found[name] = struct.unpack_from("<IIII", data, row + 8)
    size, text, _, _ = found[".text"]
    link_size, _, _, link = found[".gnu_debuglink"]
    symbols = data[link:data.index(b"\0", link)].decode()
    crc, = struct.unpack_from("<I", data, link + (len(symbols) + 4) // 4 * 4)
    return Image(base, text, size, symbols, crc)


def belong_together(library: Path, symbols: Path) -> bool:
    """The library bears a sum of its symbols, which a signature leaves as it is."""
    return zlib.crc32(symbols.read_bytes()) == read_image(library).crc


def tool(name: str) -> str:
    for program in (f"i686-w64-mingw32-{name}", name):
        if shutil.which(program):
            return program
    raise SystemExit(f"{name} is missing: install binutils for 32-bit Windows programs")


def run(*command: str | Path) -> str:
    return subprocess.run(command, capture_output=True, text=True, check=True).stdout


def can_fault(instruction: str) -> bool:
    """Whether it follows a pointer that is not the stack's own, divides, or is a trap."""
    mnemonic, _, operands = instruction.partition(" ")
    if mnemonic.startswith(("lea", "nop", "xchg %ax")):
        return False
    if mnemonic.startswith(("idiv", "div", "ud2", "int3", "stos", "movs", "scas", "cmps", "rep")):
        return True
    bases = re.findall(r"\(%(e[a-z]{2})", operands)
    near_null = not mnemonic.startswith("j") and re.search(r"(^|[ ,*:])0x[0-9a-f]{1,4}(,|$)", operands)
    return any(base not in ("esp", "ebp") for base in bases) or "(,%" in operands or bool(near_null)


def frames_at(address: int, symbols: Path, names: list[tuple[int, str]]) -> list[str]:
    """Where there is no line, as in the runtime's own code, the nearest symbol below the address."""
    lines = run(tool("addr2line"), "-f", "-i", "-e", symbols, f"{address:x}").splitlines()
    frames = []
    for function, place in zip(lines[::2], lines[1::2]):
        if function == "??":
            start, function = names[bisect.bisect(names, (address, "\xff")) - 1]
            function, place = f"{function}+0x{address - start:x}", "an unknown line"
        name = plain_name(function)
        short = name if len(name) <= LONGEST_NAME else name[:LONGEST_NAME] + "..."
        frames.append(f"{short} at {place.removeprefix('./').removeprefix('./')}")
    return frames


def plain_name(function: str) -> str:
    """As in the source. The symbols lack one underscore, and some have the size of their arguments at the end."""
    mangled = re.fullmatch(r"_{0,2}(Z\w+)(@\d+)?(\+0x\w+)?", function)
    return run(tool("c++filt"), "-n", "-p", f"_{mangled[1]}").strip() + (mangled[3] or "") if mangled else function


def trace(code: str, library: Path, symbols: Path) -> list[Candidate]:
    """What fits a code or an offset, the likely ones first."""
    image = read_image(library)
    if not belong_together(library, symbols):
        raise SystemExit(f"{symbols} is not of this {library.name}")
    if match := CODE.fullmatch(code):
        low = int(match[2], 16)
        offsets = [high + low for high in range(0, image.text + image.size, GRANULE)
                   if image.text <= high + low < image.text + image.size]
    elif match := OFFSET.fullmatch(code):
        offsets = [int(match[1], 16)]
    else:
        raise SystemExit(f"neither a crash's code nor an offset: {code}")

    listing = run(tool("objdump"), "--disassemble", "--no-show-raw-insn", "--section=.text", library)
    instructions = dict(re.findall(r"^\s*([0-9a-f]+):\s+(.*?)\s*$", listing, re.M))
    names = sorted((int(address, 16), name) for address, name in
                   re.findall(r"^([0-9a-f]+) [Tt] ([^.\s]\S*)$", run(tool("nm"), symbols), re.M))
    candidates = []
    for offset in offsets:
        address = f"{image.base + offset:x}"
        if address not in instructions:
            continue
        instruction = " ".join(instructions[address].split())
        candidates.append(Candidate(offset, can_fault(instruction), instruction,
                                    frames_at(image.base + offset, symbols, names)))
    return sorted(candidates, key=lambda candidate: not candidate.likely)


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("code")
    parser.add_argument("--library", type=Path)
    parser.add_argument("--symbols", type=Path)
    given = parser.parse_args()
    here = Path(__file__).resolve().parent
    library = given.library or next((folder / f"{NAME}.dll" for folder in (here, here.parent)
                                     if (folder / f"{NAME}.dll").exists()), None)
    if library is None:
        parser.error("no library here: name it with --library")
    places = [given.symbols] if given.symbols else [folder / f"{NAME}.debug" for folder in (here, library.parent)]
    symbols = next((file for file in places if file.exists()), None)
    if symbols is None:
        parser.error("no symbols here: name them with --symbols")
    if (match := CODE.fullmatch(given.code)) and match[1] == NO_MODULES:
        print("No module of the stack was found: the address may lie outside of any.")
    try:
        found = trace(given.code, library, symbols)
    except (struct.error, KeyError, ValueError, OSError) as error:
        raise SystemExit(f"{library} is no library that names its symbols: {error!r}") from None
    lines = []
    for likely, title in ((True, "can fault:"), (False, "fits, but hardly faults:")):
        rows = [candidate for candidate in found if candidate.likely == likely]
        lines += [title] if rows else []
        for row in rows:
            lines += [f"  {library.name}+0x{row.offset:x}  {row.instruction}", *(f"    {at}" for at in row.frames)]
    print("\n".join(lines or [f"No instruction of {library.name} fits: the fault was in another module."]))
    return 0 if found else 1


if __name__ == "__main__":
    sys.exit(main())
