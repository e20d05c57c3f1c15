"""What the shipped library has to be as a file."""
import re
import subprocess

from harness.places import LIBRARY, ROOT

# What a library may import: parts of Windows. Anything else would have to be shipped beside it.
SYSTEM = {"advapi32", "bcrypt", "comctl32", "crypt32", "gdi32", "gdiplus", "iphlpapi", "kernel32", "msvcrt", "ole32",
          "oleaut32", "rpcrt4", "shell32", "shlwapi", "user32", "version", "wininet", "wintrust"}
EXPORTS = ["BootstrapperApplicationCreate", "BootstrapperApplicationDestroy"]
VERSION = "12.37.0.5294"


def checks() -> dict[str, bool]:
    dump = subprocess.run(["i686-w64-mingw32-objdump", "-ph", LIBRARY], capture_output=True, text=True, check=True).stdout
    imports = {name.lower().removesuffix(".dll") for name in re.findall(r"DLL Name: (\S+)", dump)}
    exports = re.findall(r"^\s*\[ *\d+\] (\S+)$", dump, re.M)
    data = LIBRARY.read_bytes()
    return {"is a 32-bit library": "file format pei-i386" in dump,
            f"exports {' and '.join(EXPORTS)}, undecorated": exports == EXPORTS,
            f"imports parts of Windows only {sorted(imports - SYSTEM)}": imports <= SYSTEM and bool(imports),
            "bears its version": VERSION.encode("utf-16-le") in data,
            "holds no path of this machine": str(ROOT).encode() not in data,
            "is stripped, with its symbols beside it":
                LIBRARY.with_suffix(".debug").exists() and not re.search(r"^\s*\d+ \.debug_", dump, re.M)}
