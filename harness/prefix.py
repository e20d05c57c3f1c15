"""Wine prefixes: one prepared once, and copies of it for each run that needs a state of its own."""
import contextlib
import fcntl
import os
import re
import shutil
import subprocess
import tempfile
from pathlib import Path

from harness.places import BUILD

PREPARED = BUILD / "wine/prepared"
# Windows' own files are most of a prefix (1.3 GB) and nothing writes to them in place: copies share them by link.
SHARED = ("system32", "syswow64", "winsxs")
NOTHING = "(none)"


class Prefix:
    """One prefix; all its processes run under its own server process and end with it."""

    def __init__(self, folder: Path, display: str):
        self.folder = folder
        self.drive = folder / "drive_c"
        home = folder / "home"
        home.mkdir(parents=True, exist_ok=True)
        self.environment = {
            "PATH": os.environ["PATH"], "HOME": str(home), "DISPLAY": display, "WINEPREFIX": str(folder),
            # No .NET, HTML engine or desktop menus: each would ask to be installed or write outside the prefix.
            "WINEDEBUG": "-all", "WINEDLLOVERRIDES": "mscoree=;mshtml=;winemenubuilder.exe=",
            "LC_ALL": "C.UTF-8",
        }
        if "XAUTHORITY" in os.environ:
            self.environment["XAUTHORITY"] = os.environ["XAUTHORITY"]

    def path(self, windows_path: str) -> Path:
        """Where a file of drive C: lies."""
        return self.drive / windows_path.removeprefix("C:\\").replace("\\", "/")

    def start(self, program: str | Path, *arguments: str, **options) -> subprocess.Popen:
        environment = self.environment | options.pop("environment", {})
        return subprocess.Popen(["wine", str(program), *arguments], env=environment, stdin=subprocess.DEVNULL,
                                **{"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL} | options)

    def run(self, program: str | Path, *arguments: str, bound: float = 60) -> str:
        """Runs a program to its end and gives what it printed."""
        with self.start(program, *arguments, stdout=subprocess.PIPE) as process:
            return process.communicate(timeout=bound)[0].decode(errors="replace").replace("\r", "")

    def registry(self, key: str, name: str = "", view: int = 64) -> str:
        """A registry value as text, a DWORD as "0x1"; NOTHING if it is not there. An empty name is the default value."""
        which = ["/v", name] if name else ["/ve"]
        match = re.search(r"^    .*?    REG_\w+(?:    (.*))?$", self.run("reg", "query", key, *which, f"/reg:{view}"), re.M)
        return NOTHING if match is None else match[1] or ""

    def has_key(self, key: str, view: int = 64) -> bool:
        return self.start("reg", "query", key, f"/reg:{view}").wait(timeout=60) == 0

    def set_registry(self, key: str, name: str, value: str, view: int = 64) -> None:
        self.run("reg", "add", key, "/v", name, "/d", value, "/f", f"/reg:{view}")

    def restart(self) -> None:
        """Shuts the prefix down in order; the next process starts its server anew, which then reads the machine's
        certificates again."""
        for step in ("-k", "-w"):
            subprocess.run(["wineserver", step], env=self.environment, timeout=60)

    def end(self) -> None:
        """Ends every process of this prefix at once; what the registry had in memory is lost."""
        subprocess.run(["wineserver", "-k9"], env=self.environment, timeout=20, stderr=subprocess.DEVNULL)


def prepare(display: str, tell=print) -> None:
    """Makes the prepared prefix if it is not there: an ordinary Windows 10."""
    PREPARED.parent.mkdir(parents=True, exist_ok=True)
    with open(PREPARED.with_suffix(".lock"), "w") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        if PREPARED.exists():
            return
        tell("preparing a Wine prefix (once)")
        unfinished = PREPARED.with_suffix(".new")
        shutil.rmtree(unfinished, ignore_errors=True)
        prefix = Prefix(unfinished, display)
        prefix.run("wineboot", "--init", bound=300)
        prefix.set_registry("HKCU\\Software\\Wine", "Version", "win10")
        subprocess.run(["wineserver", "-w"], env=prefix.environment, timeout=120)
        unfinished.rename(PREPARED)


@contextlib.contextmanager
def copy_of_prepared(name: str, display: str):
    """A prefix with a state of its own, gone with all its processes at the end."""
    folder = Path(tempfile.mkdtemp(prefix=name + "-", dir=PREPARED.parent))
    prefix = Prefix(folder / "prefix", display)
    try:
        windows = Path("drive_c/windows")
        ignored = {str(PREPARED / windows): set(SHARED)}
        shutil.copytree(PREPARED, prefix.folder, symlinks=True, dirs_exist_ok=True,
                        ignore=lambda at, names: ignored.get(at, set()))
        shared = [PREPARED / windows / name for name in SHARED]
        subprocess.run(["cp", "-al", *shared, prefix.folder / windows], check=True)
        yield prefix
    finally:
        prefix.end()
        shutil.rmtree(folder, ignore_errors=True)
