"""The program that shows every page of the dialog: what it needs of the machine, its runs, and what it leaves."""
import contextlib
import json
import subprocess
import time
from collections.abc import Callable, Iterable
from pathlib import Path

from harness.places import PROGRAMS

PROGRAM = PROGRAMS / "gallery.exe"
LANGUAGES = ("en", "de", "es", "es-MX", "fr", "it", "ja", "ko", "pl", "pt-BR", "ru", "th", "zh-Hans", "zh-Hant")
BOUND = 360  # seconds for a run over seven languages; twenty on an idle machine, and 190 were seen beside builds


@contextlib.contextmanager
def _prepared(machine):
    """An older client, and a drive with too little space: two of the prompts are about them."""
    machine.set_value("HKLM\\Software\\Bastion", "ClientPath", "C:\\Bastion\\Bastion.exe", 32)
    machine.path("C:\\Bastion").mkdir()
    machine.path("C:\\Bastion\\Bastion.exe").touch()
    full = machine.prefix.folder / "full"
    full.mkdir()
    subprocess.run(["mount", "-t", "tmpfs", "-o", "size=1m", "tmpfs", full], check=True)
    try:
        machine.add_drive("D", full)
        yield
    finally:
        subprocess.run(["umount", "--lazy", full], check=False)


def draw(scene, languages: tuple[str, ...], *options: str, processes: int = 2) -> None:
    """Runs the program over the languages; it writes into the scenario's folder."""
    with _prepared(scene.machine):
        target = "Z:" + str(scene.out).replace("/", "\\")
        deadline = time.monotonic() + BOUND
        logs = [scene.out / f"gallery-{number + 1}.log" for number in range(processes)]
        runs = []
        for number, log in enumerate(logs):
            with log.open("w") as output:
                runs.append(scene.machine.start(PROGRAM, *options, target, *languages[number::processes], stdout=output,
                                                stderr=output))
        for process, log in zip(runs, logs):
            try:
                ending = f"ended with {process.wait(max(1.0, deadline - time.monotonic()))}"
            except subprocess.TimeoutExpired:
                ending = f"was still running after {BOUND} s"
                process.kill()
            scene.checks.that(f"the program runs to its end ({log.stem})", ending == "ended with 0",
                              f"{ending}: {log.read_text('utf-8', 'replace')}")


def visible(page: dict) -> list[dict]:
    return [control for control in page["controls"] if control["visible"]]


def check(scene, name: str, pages_shown: dict, faults_of: Callable[[dict], Iterable[str]]) -> None:
    """One check over all pages."""
    faults = [f"{language} {page}: {fault}" for (language, page), facts in pages_shown.items()
              for fault in faults_of(facts)]
    scene.checks.that(name, pages_shown and not faults, "\n".join(faults[:40]) or f"{len(pages_shown)} pages")


def pages(out: Path) -> dict[tuple[str, str], dict]:
    """The facts of all pages by language and name."""
    return {(file.parent.name, file.stem): json.loads(file.read_text("utf-8")) | {"language": file.parent.name}
            for file in sorted(out.glob("*/*.json"))}
