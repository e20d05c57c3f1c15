"""Runs of the real engine: the bundle that is run, the script of its client package, and each run to its end."""
import re
import shutil
import subprocess
from collections.abc import Callable
from pathlib import Path

from harness.building import bundle
from harness.desktop.window import ACTION1, ACTION2, CLOSE, Window
from harness.places import LIBRARY, PACKAGE
from harness.scenario import client
from harness.scenario.checks import Checks
from harness.scenario.engine_log import EngineLog
from harness.scenario.machine import TEMP, Machine
from harness.waiting import Hang, wait_for

SETUP = client.EXCHANGE + "\\PalisadeSetup.exe"
SCRIPT = client.EXCHANGE + "\\script.txt"


class EngineRun:
    """One run of the engine. Its log is the file that it was given, or the first that appeared after its start."""

    def __init__(self, runs: "Runs", command: list[str], kept: Path, file: str, options: dict):
        self._runs, self._kept, self._file = runs, kept, file
        self._logs_before = runs.logs()
        self._process = runs.machine.start(*command, *(("/log", file) if file else ()), **options)
        self.log: EngineLog | None = None

    def finish(self, bound: float = 90) -> "EngineRun":
        """Waits for the end, keeps the log and reads it."""
        try:
            self._process.wait(timeout=bound)
        except subprocess.TimeoutExpired:
            raise Hang(f"the engine was still running after {bound:.0f} s") from None
        self.log = self.log_so_far()
        return self

    def ends(self, code: int = 0, whose: str = "the engine", bound: float = 90) -> "EngineRun":
        """Waits for the end and checks its exit code."""
        self.finish(bound)
        self._runs.checks.exit_code(self, code, whose)
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

    def log_so_far(self) -> EngineLog:
        logs = {self._runs.machine.path(self._file)} if self._file else self._runs.logs() - self._logs_before
        file = min((log for log in logs if log.exists()), default=None)
        if not file:
            reasons = [r.read_text("utf-8", "replace") for r in self._runs.machine.path(TEMP).glob("*_Failed.txt")]
            raise RuntimeError("\n".join(["the engine made no log", *reasons]))
        log = EngineLog(file)
        self._kept.write_text(log.text, "utf-8")
        return log


class Runs:
    def __init__(self, machine: Machine, window: Window, checks: Checks, out: Path):
        self.machine, self.checks = machine, checks
        self._window, self._out = window, out
        self._runs: list[EngineRun] = []
        self.main: EngineRun | None = None
        self.make_bundle()

    # What is run

    def make_bundle(self, program: str = SETUP, package: Path = PACKAGE, library: Path = LIBRARY, **options) -> Path:
        """Writes a bundle; `options` are those of bundle.make."""
        target = self.machine.path(program)
        target.parent.mkdir(exist_ok=True)
        return bundle.make(target, library, package, {"PDXTEST_SCRIPT": SCRIPT}, **options)

    def make_thin_bundle(self) -> str:
        """Makes the bundle a thin one; gives the client package's address on the download host."""
        link = self.machine.services.download.serve(f"/client/{bundle.PACKAGE_ID}", PACKAGE)
        self.make_bundle(download_url=link)
        return link

    def script(self, *lines: str) -> None:
        """What the client package's custom actions do in the next runs (harness/programs/client/Script.h). The marks
        that it names are not there then."""
        steps = [step.strip() for step in "\n".join(lines).strip().splitlines()]
        self.machine.path(SCRIPT).write_text("\n".join(steps) + "\n", "utf-8")
        marks = [step.split()[-1] for step in steps if step.split()[1:2] in (["mark"], ["wait-for"])]
        for name in (*marks, "record.txt"):
            self._exchanged(name).unlink(missing_ok=True)

    def pause(self, *then: str, when: str = "before-files") -> None:
        """Makes the package mark "under-way", wait for "seen", and go on with those steps."""
        self.script(f"{when} mark under-way", f"{when} wait-for seen", *then)

    def wait_for_mark(self, name: str = "under-way") -> None:
        """Waits until the script has made a mark."""
        wait_for(lambda: self.is_marked(name), f"the package's mark {name}")

    def is_marked(self, name: str = "under-way") -> bool:
        return self._exchanged(name).exists()

    def mark(self, name: str = "seen") -> None:
        """Makes a mark that the script waits for."""
        self._exchanged(name).touch()

    def _exchanged(self, name: str) -> Path:
        return self.machine.path(f"{client.EXCHANGE}\\{name}")

    def answer(self, step: str) -> str | None:
        """What a step of the script was answered the first time; None if it never ran."""
        return next(iter(self.answers(step)), None)

    def answers(self, step: str) -> list[str]:
        """What a step of the script was answered each time it ran: the rollback runs the script too."""
        record = self.machine.read(client.EXCHANGE + "\\record.txt").splitlines()
        return [answer for done, _, answer in (line.rpartition(" -> ") for line in record) if done == step]

    # Runs

    def start(self, *arguments: str, program: str = SETUP, log: str = "engine", log_file: str = "", page: str = "",
              **options) -> EngineRun:
        """Starts a bundle, with a file for its log where one is named, and waits for a page of its window. The log is
        kept as out/<scenario>/<log>.log. The scenario's exit code is that of the run whose log is "engine"."""
        # The watcher starts Wine's desktop and keeps it between runs. Two programs that start it at once, or one that
        # starts while it ends, can be left without windows.
        self._window.look_at_all()
        run = EngineRun(self, [program, *arguments], self._out / f"{log}.log", log_file, options)
        self._runs.append(run)
        if log == "engine":
            self.main = run
        if page:
            self._window.wait_for_page(page, f"{log}-{page.replace(' ', '-')}")
        return run

    def run(self, *arguments: str, code: int = 0, whose: str = "", log: str = "engine", bound: float = 90,
            **options) -> EngineRun:
        """Runs a bundle to its end and checks its exit code."""
        return self.start(*arguments, log=log, **options).ends(code, whose or f"{log}: the engine", bound)

    def install(self, *arguments: str, log: str = "install", **options) -> EngineRun:
        """Installs the client without a window."""
        return self.run("/quiet", *arguments, log=log, **options)

    def uninstall(self, log: str = "uninstall") -> EngineRun:
        """Removes the client, and all that came with it."""
        return self.run("/uninstall", "/quiet", log=log)

    def start_install(self, *arguments: str, log: str = "engine", **options) -> EngineRun:
        """Starts a bundle and goes on from its first page."""
        run = self.start(*arguments, log=log, page="welcome", **options)
        self._window.click(ACTION1)
        return run

    def run_unseen(self, what: str, bound: float = 90, **options) -> EngineRun:
        """A quiet run of a bundle whose package pauses: no window shows meanwhile."""
        run = self.start("/quiet", **options)
        self.wait_for_mark()
        self.checks.that(f"the dialog is there while {what} runs", self._window.look_at_all())
        self.checks.that("and does not show, nor does another window", self._window.is_gone())
        self.mark()
        return run.finish(bound)

    def cancel(self, run: EngineRun, then: Callable[[], None] | None = None) -> EngineRun:
        """Closes the window, confirms the cancel, does what is to happen `then`, once the window has ended, and waits
        for the end of the run."""
        self._window.click(CLOSE, "prompt", "close-prompt")
        self._window.click(ACTION2)
        if then:
            self._window.wait_for_end()
            then()
        return run.finish(60)

    # Logs

    def logs(self) -> set[Path]:
        """The engine's logs in the temporary folder."""
        return {file for file in self.machine.path(TEMP).glob("Palisade_*.log") if not re.search(r"_\d{3}_", file.name)}

    def unfinished(self) -> str:
        """Keeps the logs of runs that have not ended; gives their last lines."""
        tails = []
        for run in self._runs:
            if run.log is None:
                try:
                    tails.append(f"a run's log ends:\n{run.log_so_far().tail()}")
                except RuntimeError as reason:
                    tails.append(str(reason))
        return "\n".join(tails)

    def keep_other_logs(self) -> None:
        """Keeps all logs of the temporary folder but the engine's."""
        for file in set(self.machine.path(TEMP).glob("*.log")) - self.logs():
            shutil.copyfile(file, self._out / file.name)
