"""The machine of a scenario: its files, registry, drives, programs and services, and the settings that it follows."""
import contextlib
import json
import ssl
import subprocess
from pathlib import Path

from harness.machine import sandbox
from harness.machine.prefix import Prefix
from harness.places import CERTIFICATE, WATCHER
from harness.scenario import client
from harness.services import Services
from harness.waiting import wait_for

OVERRIDE = "C:\\PalisadeDesktopDev\\override.cfg"
TEMP = "C:\\users\\root\\Temp"


class Machine:
    def __init__(self, prefix: Prefix, out: Path):
        self.prefix, self._out = prefix, out
        prefix.complaints = out / "wine.txt"
        self.path, self.start, self.add_drive = prefix.path, prefix.start, prefix.add_drive
        self.set_value = prefix.set_registry
        self._watcher: subprocess.Popen | None = None
        self._services: Services | None = None
        self.path(client.EXCHANGE).mkdir()
        self.path(TEMP).mkdir(parents=True, exist_ok=True)

    def exists(self, windows_path: str) -> bool:
        return self.path(windows_path).exists()

    def read(self, windows_path: str) -> str:
        """A file's text; empty if the file is not there."""
        return self.path(windows_path).read_text("utf-8") if self.exists(windows_path) else ""

    def command(self, line: str) -> str:
        """A command of the watcher (harness/programs/Watcher.cpp) and its answer."""
        if not self._watcher:
            self._watcher = self.start(WATCHER, stdin=subprocess.PIPE, stdout=subprocess.PIPE, encoding="utf-8")
        self._watcher.stdin.write(line + "\n")
        self._watcher.stdin.flush()
        return self._watcher.stdout.readline().strip()

    def values(self, key: str, view: int = 64) -> dict[str, str]:
        """The values of a registry key that are texts or DWORDs, the latter as "0x00000001". The default value's name
        is empty. A key that is not there has none."""
        return json.loads(self.command(f"registry {view} {key}")) or {}

    def value(self, key: str, name: str, view: int = 64) -> str | None:
        return self.values(key, view).get(name)

    def notes(self) -> list[str]:
        """What the sample programs have noted: their starts, and what the older client's do."""
        return self.read(client.LAUNCHES).splitlines()

    def forget_notes(self) -> None:
        self.path(client.LAUNCHES).unlink(missing_ok=True)

    def start_client(self, program: str = "PalisadeDesktop.exe") -> subprocess.Popen:
        """Starts one of the client's programs, which runs until it is ended."""
        process = self.start(client.file(program), "--stay")
        wait_for(lambda: any("--stay" in note for note in self.notes()), f"the start of {program}")
        return process

    def client_files(self, install_folder: str = client.INSTALL_FOLDER) -> set[str]:
        """The client's files that are there."""
        return {name for name in client.FILES if self.exists(client.file(name, install_folder))}

    def installers(self) -> list[Path]:
        """The folders below /proc of the processes of bundles, of whatever folder they run from."""
        found = []
        for process in Path("/proc").glob("[0-9]*"):
            with contextlib.suppress(OSError):  # it has ended
                if b"PalisadeSetup.exe" in (process / "cmdline").read_bytes():
                    found.append(process)
        return found

    def windows_version(self, word: str) -> None:
        """The system's version, by Wine's word for it: "win10", "win7", "vista"."""
        self.set_value("HKCU\\Software\\Wine", "Version", word)

    def restart(self, locale: str = "") -> None:
        """Ends all programs. The next one finds certificates and locale as they are then."""
        if locale:
            self.prefix.environment["LC_ALL"] = locale
        self.prefix.restart()
        self._watcher = None

    def make_configurable(self, settings: str = "") -> None:
        """Makes the machine one of the maker's own, which trusts the library's test certificate; with settings that it
        changes."""
        sandbox.trust(ssl.DER_cert_to_PEM_cert(CERTIFICATE.read_bytes()), self._out)
        self.restart()
        if settings:
            self.override(settings)

    def override(self, settings: str) -> None:
        """Writes the settings that a machine of the maker's own changes."""
        self.path(OVERRIDE).parent.mkdir(exist_ok=True)
        self.path(OVERRIDE).write_text(settings)

    @property
    def services(self) -> Services:
        """The deployment's services (harness/services/), from the first use on. The first use restarts the machine: it
        must come before the first run."""
        if not self._services:
            self._services = Services(self._out)
            self.restart()
        return self._services
