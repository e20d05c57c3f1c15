"""Checks of the shipped library as a file."""
import re
import struct
import subprocess

from harness.places import LIBRARY, ROOT, VERSION

# What the library's table may import: the parts of Windows that every version loads from its own folder (KnownDLLs).
# Any other is looked for beside the library first, and is bound late (cmake/delayed.cmake).
KNOWN = {"advapi32", "gdi32", "kernel32", "msvcrt", "ole32", "oleaut32", "rpcrt4", "shell32", "shlwapi", "user32"}
EXPORTS = ["BootstrapperApplicationCreate", "BootstrapperApplicationDestroy"]


def checks() -> dict[str, bool]:
    def output(tool: str, *arguments) -> str:
        return subprocess.run([f"i686-w64-mingw32-{tool}", *arguments], check=True, text=True,
                              capture_output=True).stdout

    dump = output("objdump", "-ph", LIBRARY)
    imports = {name.lower().removesuffix(".dll") for name in re.findall(r"DLL Name: (\S+)", dump)}
    exports = re.findall(r"^\s*\[ *\d+\] (\S+)$", dump, re.M)
    data = LIBRARY.read_bytes()
    symbols = output("nm", LIBRARY.with_suffix(".debug"))
    unbound = re.findall(r"^0+ A _(\w+)@\d+$", symbols, re.M)
    header, = struct.unpack_from("<I", data, 0x3C)
    linked, = struct.unpack_from("<I", data, header + 8)  # seconds since 1970
    return {"is a 32-bit library": "file format pei-i386" in dump,
            f"exports {' and '.join(EXPORTS)}, undecorated": exports == EXPORTS,
            f"imports nothing but KnownDLLs {sorted(imports - KNOWN)}": imports <= KNOWN and bool(imports),
            f"has a stub for each function that is bound late {unbound}": not unbound,
            "has its version": VERSION.encode("utf-16-le") in data,
            "has no time of its link": linked == 0,
            "holds no path of this machine, nor do its symbols":
                str(ROOT).encode() not in data + LIBRARY.with_suffix(".debug").read_bytes(),
            "is stripped, with its symbols beside it":
                LIBRARY.with_suffix(".debug").exists() and not re.search(r"^\s*\d+ \.debug_", dump, re.M)}
