"""Wine prefixes: one prepared once, and copies of it for each run that needs a state of its own."""
import contextlib
import fcntl
import os
import shutil
import subprocess
import tempfile
import time
from pathlib import Path

from harness.machine import fonts, sandbox
from harness.places import BUILD

PREPARED = BUILD / "wine/prepared.4"  # the number rises with each change of what is prepared
# Windows' own files are most of a prefix (1.3 GB) and nothing writes to them in place: copies share them by link.
SHARED = ("system32", "syswow64", "winsxs", "Fonts")
# The dialog is sized by its font: with this face it is as wide as on Windows and a sixteenth lower, whatever other
# faces the machine has.
FONT_SUBSTITUTES = {"Courier New": "DejaVu Sans Mono"}
WINDOWS_KEY = "HKLM\\Software\\Microsoft\\Windows NT\\CurrentVersion"
LEFTOVER_AGE = 3600  # seconds after which a copy belongs to no run any more


class Prefix:
    """One prefix; all its processes run under its own server process."""

    def __init__(self, folder: Path, display: str):
        self.folder = folder
        self.drive = folder / "drive_c"
        home = folder / "home"
        home.mkdir(parents=True, exist_ok=True)
        self.complaints = Path(os.devnull)  # Wine's errors, of programs started without a stderr of their own
        self.environment = {
            "PATH": os.environ["PATH"], "HOME": str(home), "DISPLAY": display, "WINEPREFIX": str(folder),
            # No .NET, HTML engine or desktop menus: each would ask to be installed or write outside the prefix.
            "WINEDEBUG": "err+all,fixme-all", "WINEDLLOVERRIDES": "mscoree=;mshtml=;winemenubuilder.exe=",
            "LC_ALL": "C.UTF-8", "XAUTHORITY": os.environ.get("XAUTHORITY", str(Path.home() / ".Xauthority")),
        }

    def path(self, windows_path: str) -> Path:
        """Where a file lies."""
        drive, _, rest = windows_path.partition(":\\")
        return (self.drive if drive == "C" else self._drive_link(drive)) / rest.replace("\\", "/")

    def add_drive(self, letter: str, folder: Path) -> None:
        """Makes a folder of the host a drive."""
        self._drive_link(letter).unlink(missing_ok=True)
        self._drive_link(letter).symlink_to(folder)

    def _drive_link(self, letter: str) -> Path:
        return self.folder / f"dosdevices/{letter.lower()}:"

    def start(self, program: str | Path, *arguments: str, **options) -> subprocess.Popen:
        environment = self.environment | options.pop("environment", {})
        with self.complaints.open("a") as complaints:
            nothing = {"stdin": subprocess.DEVNULL, "stdout": subprocess.DEVNULL, "stderr": complaints}
            return subprocess.Popen(["wine", str(program), *arguments], env=environment, **nothing | options)

    def run(self, program: str | Path, *arguments: str, bound: float = 60, check: bool = False) -> None:
        """Runs a program to its end; with `check` a bad exit code raises."""
        process = self.start(program, *arguments)
        try:
            code = process.wait(timeout=bound)
        finally:
            process.kill()
        if check and code:
            raise RuntimeError(f"{program} {' '.join(arguments)} ended with {code}")

    def set_registry(self, key: str, name: str, value: str, view: int = 64) -> None:
        """Sets a text; the default value's name is empty."""
        named = ["/v", name] if name else ["/ve"]
        self.run("reg", "add", key, *named, "/d", value, "/f", f"/reg:{view}", check=True)

    def set_registry_texts(self, key: str, name: str, texts: list[str], view: int = 64) -> None:
        """Writes a list of texts."""
        self.run("reg", "add", key, "/v", name, "/t", "REG_MULTI_SZ", "/d", "\\0".join(texts), "/f", f"/reg:{view}",
                 check=True)

    def restart(self) -> None:
        """Shuts the prefix down in order; the next process starts its server, which reads the certificates again."""
        for step in ("-k", "-w", "-p"):
            subprocess.run(["wineserver", step], env=self.environment, timeout=60)

    def end(self) -> None:
        """Ends the server process at once, without writing the registry. Programs that Wine started by itself then wait
        until their sandbox ends."""
        subprocess.run(["wineserver", "-k9"], env=self.environment, timeout=20, stderr=subprocess.DEVNULL)


def prepare(display: str) -> None:
    """Makes the prepared prefix if it is not there: an ordinary Windows 10 with fonts for all languages. Removes what
    ended runs left."""
    PREPARED.parent.mkdir(parents=True, exist_ok=True)
    for left in PREPARED.parent.glob("*-*"):
        if time.time() - left.stat().st_mtime > LEFTOVER_AGE:
            shutil.rmtree(left, ignore_errors=True)
    with open(PREPARED.with_suffix(".lock"), "w") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        if PREPARED.exists():
            return
        print("preparing a Wine prefix (once)", flush=True)
        for earlier in PREPARED.parent.glob(PREPARED.stem + "*[0-9]"):
            shutil.rmtree(earlier, ignore_errors=True)
        unfinished = PREPARED.with_suffix(".new")
        shutil.rmtree(unfinished, ignore_errors=True)
        prefix = Prefix(unfinished, display)
        prefix.run("wineboot", "--init", bound=300, check=True)
        prefix.set_registry("HKCU\\Software\\Wine", "Version", "win10")
        for face, other in FONT_SUBSTITUTES.items():
            prefix.set_registry(f"{WINDOWS_KEY}\\FontSubstitutes", face, other)
        fonts.install(prefix.path("C:\\windows\\Fonts"))
        for face in fonts.FACES:
            prefix.set_registry_texts(f"{WINDOWS_KEY}\\FontLink\\SystemLink", face, fonts.LINKS)
        subprocess.run(["wineserver", "-w"], env=prefix.environment, timeout=120)
        unfinished.rename(PREPARED)


@contextlib.contextmanager
def copy_of_prepared(name: str, display: str):
    """A prefix with a state of its own, removed at the end. Its last processes end with the sandbox."""
    sandbox.demand("a copy of the prepared prefix is made")
    folder = Path(tempfile.mkdtemp(prefix=name + "-", dir=PREPARED.parent))
    prefix = Prefix(folder / "prefix", display)
    try:
        windows = Path("drive_c/windows")
        ignored = {str(PREPARED / windows): set(SHARED)}
        shutil.copytree(PREPARED, prefix.folder, symlinks=True, dirs_exist_ok=True,
                        ignore=lambda at, names: ignored.get(at, set()))
        shared = [PREPARED / windows / name for name in SHARED]
        subprocess.run(["cp", "-al", *shared, prefix.folder / windows], check=True)
        # Wine links the desktop and the like to the home folder of whoever made the prefix, which is gone. A shell
        # without a desktop crashes whoever opens the folder chooser.
        for link in (prefix.drive / "users/root").iterdir():
            if link.is_symlink():
                link.unlink()
                link.mkdir()
        # Stays between two programs, so that the second does not start Windows anew.
        subprocess.run(["wineserver", "-p"], env=prefix.environment, check=True)
        yield prefix
    finally:
        prefix.end()
        shutil.rmtree(folder, ignore_errors=True)
