"""Libraries beside the bootstrapper with the names of the system's are not loaded in their place."""
import re

from harness.places import VERSION_LIBRARY

# What the bootstrapper binds with a first call, and what it or a part of the system loads by its bare name later. The
# name version.dll is that of the bundle's own payload.
NAMES = ["bcrypt", "comctl32", "crypt32", "gdiplus", "iphlpapi", "wininet", "wintrust", "dbghelp", "msxml6", "wbemprox"]


def play(scene):
    scene.runs.make_bundle(beside={f"{name}.dll": VERSION_LIBRARY for name in NAMES})
    scene.runs.run("/quiet", environment={"WINEDEBUG": "+loaddll"})
    # A file that is found counts, though Wine takes its own library for it.
    trace = scene.machine.prefix.complaints.read_text("utf-8", "replace")
    loaded = [path.replace("\\\\", "\\").lower() for path in re.findall(r'Loaded L"([^"]+)"', trace)]
    scene.checks.equal("of the bundle's folder the bootstrapper alone is loaded",
                       {path.rpartition("\\")[2] for path in loaded if "\\.ba\\" in path}, {"palisadebootstrapper.dll"})
    scene.checks.that("and GDI+ from the system's folder", "c:\\windows\\system32\\gdiplus.dll" in loaded)
