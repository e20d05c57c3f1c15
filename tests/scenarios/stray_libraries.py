"""Libraries beside the bootstrapper that bear the names of the system's are not loaded in their place."""
import re

from harness.places import VERSION_LIBRARY

# What the bootstrapper binds with a first call, and what it or a part of the system loads by its bare name later. The
# name version.dll is that of the bundle's own payload.
NAMES = ["bcrypt", "comctl32", "crypt32", "gdiplus", "iphlpapi", "wininet", "wintrust", "dbghelp", "msxml6", "wbemprox"]


def play(scene):
    scene.make_bundle(beside={f"{name}.dll": VERSION_LIBRARY for name in NAMES})
    scene.check_exit_code(scene.run("/quiet", environment={"WINEDEBUG": "+loaddll"}), 0)
    # A file that is found counts, though Wine takes its own library for it.
    loaded = [path.replace("\\\\", "\\").lower()
              for path in re.findall(r'Loaded L"([^"]+)"', scene.prefix.complaints.read_text("utf-8", "replace"))]
    scene.check_equal("of the bundle's folder the bootstrapper alone is loaded",
                      {path.rpartition("\\")[2] for path in loaded if "\\.ba\\" in path}, {"palisadebootstrapper.dll"})
    scene.check("and GDI+ from the system's folder", "c:\\windows\\system32\\gdiplus.dll" in loaded)
