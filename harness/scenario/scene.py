"""What a scenario works with: bundles, runs of the real engine, the machine that they change, and checks."""
import json
import re
import shutil
import ssl
import subprocess
import time
from collections.abc import Callable
from pathlib import Path

from harness.building import bundle
from harness.scenario.engine_log import EngineLog
from harness.scenario import client as facts
from harness.machine import sandbox
from harness.machine.display import take_picture
from harness.machine.prefix import Prefix
from harness.places import CERTIFICATE, LIBRARY, PACKAGE
from harness.desktop.window import ACTION1, ACTION2, CLOSE, NAMES, NAMES_CLASS, View, Window
from harness.services import Services

SETUP = facts.EXCHANGE + "\\PalisadeSetup.exe"
SCRIPT = facts.EXCHANGE + "\\script.txt"
OVERRIDE = "C:\\PalisadeDesktopDev\\override.cfg"
TEMP = "C:\\users\\root\\Temp"


class Hang(Exception):
    """A run that did not end within its bound."""


class EngineRun:
    """One run of the engine. The log is the one that it was told to write, or that appeared first after its start."""

    def __init__(self, scene: "Scene", process: subprocess.Popen, log_name: str, logs_before: set[Path], file: str):
        self._scene, self._process, self._logs_before, self._file = scene, process, logs_before, file
        self._kept = scene.out / f"{log_name}.log"
        self.log: EngineLog | None = None

    def finish(self, bound: float) -> "EngineRun":
        """Waits for the end, keeps the log and reads it."""
        try:
            self._process.wait(timeout=bound)
        except subprocess.TimeoutExpired:
            tail = self.log_so_far().tail() if self._log_file() else "(no engine log)"
            raise Hang(f"the engine was still running after {bound:.0f} s; its log ends:\n{tail}") from None
        if not self._log_file():
            reasons = [file.read_text("utf-8", "replace") for file in self._scene.path(TEMP).glob("*_Failed.txt")]
            raise RuntimeError("the engine made no log\n" + "\n".join(reasons))
        self.log = self.log_so_far()
        return self

    @property
    def ended(self) -> bool:
        return self._process.poll() is not None

    @property
    def exit_code(self) -> int | None:
        return self.log.exit_code

    @property
    def process_code(self) -> int | None:
        return self._process.returncode

    def keep_so_far(self) -> str:
        return f"a run's log ends:\n{self.log_so_far().tail()}" if self._log_file() else "a run has made no log yet"

    def _log_file(self) -> Path | None:
        logs = {self._scene.path(self._file)} if self._file else self._scene.engine_logs() - self._logs_before
        return min((log for log in logs if log.exists()), default=None)

    def log_so_far(self) -> EngineLog:
        log = EngineLog(self._log_file())
        self._kept.write_text(log.text, "utf-8")
        return log


class Scene:
    def __init__(self, prefix: Prefix, out: Path):
        self.prefix, self.out = prefix, out
        prefix.complaints = out / "wine.txt"
        self.checks: list[dict] = []
        self.main_run: EngineRun | None = None
        self._runs: list[EngineRun] = []
        self._window: Window | None = None
        self._services: Services | None = None
        self.path(facts.EXCHANGE).mkdir()
        self.path(TEMP).mkdir(parents=True, exist_ok=True)
        self.make_bundle()

    # The machine

    def path(self, windows_path: str) -> Path:
        return self.prefix.path(windows_path)

    def exists(self, windows_path: str) -> bool:
        return self.path(windows_path).exists()

    def read(self, windows_path: str) -> str:
        """A file's text; empty if it is not there."""
        return self.path(windows_path).read_text("utf-8") if self.exists(windows_path) else ""

    def registry_values(self, key: str, view: int = 64) -> dict[str, str]:
        """The values of a key that are texts or DWORDs, the latter as "0x00000001"; the default value's name is empty.
        A key that is not there has none."""
        return json.loads(self.window.command(f"registry {view} {key}")) or {}

    def registry(self, key: str, name: str, view: int = 64) -> str | None:
        return self.registry_values(key, view).get(name)

    def temporary_files(self) -> list[Path]:
        return list(self.path(TEMP).iterdir())

    def client_state(self, install_folder: str = facts.INSTALL_FOLDER,
                     version: str = bundle.BUNDLE_VERSION) -> tuple[set[str], list[str]]:
        """The client's files that are there, and its registry values that are not as an install leaves them."""
        files = {name for name in facts.CLIENT_FILES if self.exists(facts.client_file(name, install_folder))}
        wrong = []
        for (key, view), wanted in facts.client_values(install_folder, version).items():
            found = self.registry_values(key, view)
            wrong += [f"{key} [{name}] in view {view}: {found.get(name)!r}, wanted {text!r}"
                      for name, text in wanted.items() if found.get(name) != text]
        return files, wrong

    def check_installed(self, install_folder: str = facts.INSTALL_FOLDER,
                        version: str = bundle.BUNDLE_VERSION) -> None:
        files, wrong = self.client_state(install_folder, version)
        self.check_equal("the client's files are there", files, set(facts.CLIENT_FILES))
        self.check("the client's registry values are there", not wrong, "\n".join(wrong[:3]))

    def check_gone(self) -> None:
        """Nothing of the client and of the bundle is left, as far as they are to go."""
        left = [name for name in facts.CLIENT_FILES if self.exists(facts.client_file(name))]
        self.check_equal("the client's files are gone", left, [])
        values = [f"{key} [{name}]" for (key, view), wanted in facts.client_values().items()
                  for name in wanted.keys() & self.registry_values(key, view).keys()]
        self.check_equal("the client's registry values are gone", values, [])
        self.check("the bundle has no entry", self.window.command(f"registry 32 {facts.uninstall_entry()}") == "null")
        cached = [file.name for file in self.path("C:\\ProgramData\\Package Cache").rglob("*") if file.is_file()]
        self.check_equal("the engine's cache is empty", cached, [])

    def check_cancelled(self, run: EngineRun, whose: str, why: str = "user_action") -> None:
        """The run ends with success to its caller, is told as a cancel and tells no error."""
        self.check_exit_code(run, 0, whose)
        self.check_equal("it is told as a cancel", run.log.messages("OnShutdown"),
                         ["Entering OnShutdown", f"The run was cancelled: {why}"])
        updates = run.log.messages("UpdateInstallStatus")
        self.check("its last status is the user's exit", updates and updates[-1].endswith("(80070642)"), updates)
        self.check_equal("no error is told", run.log.closing_errors() + run.log.messages("OnError"), [])
        left = [file.name for file in self.temporary_files() if file.suffix != ".log"]
        self.check_equal("nothing but logs is left in the temporary folder", left, [])

    def windows_version(self, word: str) -> None:
        """The system that the machine passes for, by Wine's word for it: "win10", "win7", "vista"."""
        self.prefix.set_registry("HKCU\\Software\\Wine", "Version", word)

    def restart_machine(self) -> None:
        """Ends all its programs. The next one finds certificates and locale as they are then."""
        self.prefix.restart()
        self._window = None  # its watcher has ended with all other programs

    def make_configurable(self) -> None:
        """Makes the machine one of the maker's own, which trusts the library's test certificate."""
        sandbox.trust(ssl.DER_cert_to_PEM_cert(CERTIFICATE.read_bytes()), self.out)
        self.restart_machine()

    def override(self, settings: str) -> None:
        """Writes the settings that a machine of the maker's own changes."""
        self.path(OVERRIDE).parent.mkdir(exist_ok=True)
        self.path(OVERRIDE).write_text(settings)

    @property
    def services(self) -> Services:
        """The deployment's services (harness/services/), there from the first use on, which has to come before the first
        run: it shuts the prefix down and starts it anew."""
        if not self._services:
            self._services = Services(self.out)
            self.restart_machine()
        return self._services

    # Runs of the engine

    def make_bundle(self, program: str = SETUP, package: Path = PACKAGE, library: Path = LIBRARY, **options) -> Path:
        """Writes a bundle; `options` are those of bundle.make. Bytes behind the end of a package do no harm, where a
        scenario needs a long transfer."""
        target = self.path(program)
        target.parent.mkdir(exist_ok=True)
        return bundle.make(target, library, package, {"PDXTEST_SCRIPT": SCRIPT}, **options)

    def make_thin_bundle(self) -> str:
        """Makes the bundle a thin one; gives the address on the download host that the client package comes from."""
        link = self.services.download.serve(f"/client/{bundle.PACKAGE_ID}", PACKAGE)
        self.make_bundle(download_url=link)
        return link

    def script(self, text: str) -> None:
        """What the client package's custom actions do in the runs to come (harness/programs/client/Script.h). The marks that it
        names are not there then."""
        lines = [line.strip() for line in text.strip().splitlines()]
        self.path(SCRIPT).write_text("\n".join(lines) + "\n", "utf-8")
        marks = [line.split()[-1] for line in lines if line.split()[1:2] in (["mark"], ["wait-for"])]
        for name in (*marks, "record.txt"):
            self._exchanged(name).unlink(missing_ok=True)

    def wait_for_mark(self, name: str, what: str) -> None:
        """Waits until the script has made a mark."""
        self.wait_for(self._exchanged(name).exists, what)

    def mark(self, name: str) -> None:
        """Makes a mark that the script waits for."""
        self._exchanged(name).touch()

    def _exchanged(self, name: str) -> Path:
        return self.path(f"{facts.EXCHANGE}\\{name}")

    def answer(self, step: str) -> str | None:
        """What a step of the script was answered the first time; None if it never ran."""
        return next(iter(self.answers(step)), None)

    def answers(self, step: str) -> list[str]:
        """What a step of the script was answered each time it ran: also the way back runs the script."""
        rows = (line.rpartition(" -> ") for line in self.read(facts.EXCHANGE + "\\record.txt").splitlines())
        return [answer for done, _, answer in rows if done == step]

    def engine_logs(self) -> set[Path]:
        return {file for file in self.path(TEMP).glob("Palisade_*.log") if not re.search(r"_\d{3}_", file.name)}

    def start(self, *arguments: str, program: str = SETUP, log: str = "engine", log_file: str = "",
              **options) -> EngineRun:
        """Starts a bundle, which may be told a file for its log. That is kept as out/<scenario>/<log>.log; the run whose
        log is "engine" is the one that the scenario's exit code is taken from."""
        # The watcher brings up Wine's desktop and keeps it between runs: two programs that do so at the same time, or one
        # that comes while it goes, can be left without windows.
        self.window.look_at_all()
        before = self.engine_logs()
        given = ("/log", log_file) if log_file else ()
        run = EngineRun(self, self.prefix.start(program, *arguments, *given, **options), log, before, log_file)
        self._runs.append(run)
        if log == "engine":
            self.main_run = run
        return run

    def run_unseen(self, what: str, bound: float = 90, **options) -> EngineRun:
        """A quiet run in the midst of which no window shows. The script has to mark "under-way", and to wait for
        "seen"."""
        run = self.start("/quiet", **options)
        self.wait_for_mark("under-way", what)
        views = self.window.look_at_all()
        self.check(f"the dialog is there while {what} runs", views)
        self.check("and does not show, nor does another window",
                   not any(view.visible or view.others for view in views), views)
        self.mark("seen")
        return run.finish(bound)

    def run(self, *arguments: str, bound: float = 90, **options) -> EngineRun:
        return self.start(*arguments, **options).finish(bound)

    def uninstall(self, log: str = "uninstall") -> None:
        """Removes the client, and all that came with it, between two installs."""
        self.check_exit_code(self.run("/uninstall", "/quiet", log=log), 0, f"{log}: the engine")

    def wait_for(self, condition: Callable[[], object], what: str, bound: float = 60) -> None:
        deadline = time.monotonic() + bound
        while not condition():
            if time.monotonic() > deadline:
                raise Hang(f"{what} did not come within {bound:.0f} s\n" + self.keep_unfinished())
            time.sleep(0.05)

    # The installer's window

    @property
    def window(self) -> Window:
        if not self._window:
            self._window = Window(self.prefix, self.out / "screens")
        return self._window

    def use_names(self) -> None:
        """Makes the names that the window publishes readable (harness/programs/Names.cpp); to be called ahead of a start."""
        shutil.copyfile(NAMES, self.path(facts.EXCHANGE + "\\names.dll"))
        self.prefix.set_registry(NAMES_CLASS, "", facts.EXCHANGE + "\\names.dll", view=32)

    def hold_sender(self, message: int) -> Callable[[], None]:
        """Keeps the sender of a message to the window waiting after the window has handled it (harness/programs/Names.cpp), until the
        result is called; to be called ahead of a start, after `use_names`."""
        held = self._exchanged(f"hold-{message}")
        held.touch()
        return held.unlink

    def wait_for_page(self, page: str, picture: str = "", bound: float = 60) -> View:
        """Waits until the window shows a page (harness/desktop/window.py names them), and keeps a picture of it."""
        self.wait_for(lambda: self.window.page() == page, f"the {page} page", bound)
        self.window.picture(picture or page.replace(" ", "-"))
        return self.window.look()

    def start_to_welcome(self, *arguments: str, log: str = "engine", **options) -> EngineRun:
        """Starts a bundle and waits for its first page."""
        run = self.start(*arguments, log=log, **options)
        self.wait_for_page("welcome", "welcome" if log == "engine" else f"{log}-welcome")
        return run

    def start_install(self, *arguments: str, log: str = "engine", **options) -> EngineRun:
        """Starts a bundle and goes on from its first page."""
        run = self.start_to_welcome(*arguments, log=log, **options)
        self.window.click(ACTION1)
        return run

    def choose_folder(self, folder: str) -> None:
        """Types a folder into the chooser that is about to open, and waits until that has closed."""
        self.wait_for(self.window.has_chooser, "the folder chooser")
        self.window.type(folder)
        self.window.press("Return")
        self.wait_for(lambda: not self.window.look().others, "the end of the folder chooser")

    def cancel(self, run: EngineRun, then: Callable[[], None] | None = None) -> EngineRun:
        """Closes the window, says that the install is to be cancelled, does what is to happen `then`, once the window
        has gone, and waits for the end of the run."""
        self.window.click(CLOSE)
        self.wait_for_page("prompt", "close-prompt")
        self.window.click(ACTION2)
        if then:
            self.wait_for(lambda: not self.window.look(), "the end of the window")
            then()
        return run.finish(60)

    # Checks

    def check(self, name: str, ok: bool, detail: object = "") -> None:
        self.checks.append({"name": name, "ok": bool(ok), "detail": str(detail)})

    def check_equal(self, name: str, found: object, wanted: object) -> None:
        told = found if isinstance(found, str) else ""
        self.check(name, found == wanted, told if found == wanted else f"found {found!r}, wanted {wanted!r}")

    def check_exit_code(self, run: EngineRun, wanted: int, whose: str = "the engine") -> None:
        found = run.exit_code
        self.check(f"{whose} ends with 0x{wanted:x}", found == wanted,
                   "no exit code in the log" if found is None else f"0x{found:x}")
        # The shell sees the low byte only; a crash behind the log's last line shows here alone.
        self.check_equal(f"and its process with 0x{wanted & 0xff:x}", run.process_code, wanted & 0xff)

    def keep_unfinished(self) -> str:
        """Keeps the logs of runs that have not ended; gives their last lines."""
        return "\n".join(run.keep_so_far() for run in self._runs if run.log is None)

    def keep_evidence(self) -> None:
        """After a failure: a picture of the display, and the logs of the temporary folder that are not kept already."""
        take_picture(self.prefix.environment["DISPLAY"], self.out / "screens/01-at-the-end.png")
        for file in set(self.path(TEMP).glob("*.log")) - self.engine_logs():
            shutil.copyfile(file, self.out / file.name)
