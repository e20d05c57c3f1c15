"""One fault of the machine a run: its exit code is true, nothing is half-written, and no process or box stays.

Each fault comes from outside: a library of the system is missing, a folder is, a disk is full, no host has a name."""
import contextlib
import subprocess
from collections.abc import Callable
from pathlib import Path
from typing import NamedTuple

from harness.machine.sandbox import HOSTS
from harness.scenario import client
from harness.scenario.machine import TEMP
from harness.scenario.registry import UNAVAILABLE, check_changes, listing

QUIET, PASSIVE = ("/quiet",), ("/passive",)
UNINSTALL, REPAIR = ("/uninstall", "/quiet"), ("PDX_REPAIR=1", "/quiet")
CACHE = "C:\\ProgramData\\Package Cache"
NO_LIBRARY, SECOND_INSTANCE = 0x8007007E, 0xA7FF0480
BOUND = 40  # seconds in which a run ends
# A repair leaves the link, so that the package takes the client's own for the one before it.
OWN_LINK = {(64, client.PRODUCT_KEY, "PrevGateLink"): ("", f'"{client.LAUNCHER}" "%1"')}


def without(*libraries: str):
    """No process of the run finds those libraries of the system."""
    def fault(scene):
        others = scene.machine.prefix.environment["WINEDLLOVERRIDES"]
        value = ";".join([others, *(f"{library}=" for library in libraries)])
        return contextlib.nullcontext({"environment": {"WINEDLLOVERRIDES": value}})
    return fault


def given(**options):
    return lambda scene: contextlib.nullcontext(options)


@contextlib.contextmanager
def covered(*places: Path, options: str = "ro"):
    """Empty folders in those places, which cannot be written unless `options` say so."""
    for place in places:
        place.mkdir(parents=True, exist_ok=True)
        subprocess.run(["mount", "-t", "tmpfs", "-o", options, "tmpfs", place], check=True)
    try:
        yield {}
    finally:
        for place in places:
            subprocess.run(["umount", "--lazy", place], check=True)


def full_cache(scene):
    return covered(scene.machine.path(CACHE), options="size=64k")


@contextlib.contextmanager
def lost_temporary_folder(scene):
    """The folder with all logs goes while the package runs, which then fails: the report finds none."""
    scene.runs.pause("before-files fail 1603")
    with contextlib.ExitStack() as until_the_end:
        yield {"meanwhile": lambda: until_the_end.enter_context(covered(scene.machine.path(TEMP)))}
    scene.runs.script()


@contextlib.contextmanager
def thin_without_adapters(scene):
    """The update service is asked by the address of the first network adapter."""
    scene.runs.make_thin_bundle()
    with without("iphlpapi")(scene) as options:
        yield options
    scene.runs.make_bundle()


@contextlib.contextmanager
def taken_mutex(scene):
    scene.machine.command("hold Global\\Palisade_Desktop_Installer")
    yield {}
    scene.machine.command("release")


@contextlib.contextmanager
def no_names(scene):
    """No host has an address, as on a machine without a network."""
    subprocess.run(["mount", "--bind", "/dev/null", HOSTS], check=True)
    yield {}
    subprocess.run(["umount", HOSTS], check=True)


@contextlib.contextmanager
def no_fonts(scene):
    fonts = "/usr/share/fonts", "/usr/share/wine/fonts", scene.machine.path("C:\\windows\\Fonts")
    with covered(*map(Path, fonts)):
        scene.machine.restart()
        yield {}


class Row(NamedTuple):
    fault: str
    make: Callable
    run: tuple[str, ...]
    code: int = 0  # only with 0 the run has done its work; otherwise all is as before
    but: dict = {}  # how the registry differs from that after the first run of its kind


ROWS = [  # the first two are what the others are compared with
    Row("no XML parser", without("msxml6"), PASSIVE),
    Row("no WMI", without("wbemprox"), UNINSTALL),
    Row("no GDI+", without("gdiplus"), QUIET, NO_LIBRARY),
    Row("the mutex is taken", taken_mutex, QUIET, SECOND_INSTANCE),
    Row("the cache's disk is full", full_cache, QUIET, 1),
    Row("the temporary folder is lost", lost_temporary_folder, QUIET, 1),
    Row("no adapters' library", thin_without_adapters, QUIET, but=UNAVAILABLE),
    Row("no temporary folder", given(environment={"TMP": "C:\\no", "TEMP": "C:\\no"}), UNINSTALL),
    Row("no network", no_names, QUIET, but=UNAVAILABLE),
    Row("a repair without XML and WMI", without("msxml6", "wbemprox"), REPAIR, but=OWN_LINK),
    Row("no log folder", given(log_file="C:\\no\\folder\\engine.log"), UNINSTALL),
    Row("no fonts", no_fonts, PASSIVE, but=UNAVAILABLE),
]


def files(scene) -> set[str]:
    """The client's files, and the engine's copies of bundle and package."""
    return {str(file) for place in (client.INSTALL_FOLDER, CACHE) for file in scene.machine.path(place).rglob("*")
            if file.is_file()}


def run_row(scene, row: Row) -> None:
    """To its end, without a person."""
    with row.make(scene) as options:
        meanwhile = options.pop("meanwhile", None)
        run = scene.runs.start(*row.run, log=row.fault.replace(" ", "-"), **options)
        if meanwhile:
            scene.runs.wait_for_mark()
            meanwhile()
            scene.runs.mark()
        scene.wait_for(lambda: run.ended, f"{row.fault}: the end of the run", BOUND)
    scene.checks.exit_code(run.finish(), row.code, row.fault)
    scene.wait_for(lambda: not scene.machine.installers(), f"{row.fault}: the end of all its processes", 10)


def play(scene):
    scene.services  # before the first run
    first = {}  # what is there after the first good run of a kind
    for row in ROWS:
        before = listing(scene), files(scene)
        run_row(scene, row)
        removes = row.run is UNINSTALL
        if row.code == 0 and removes not in first:
            scene.checks.gone() if removes else scene.checks.installed()
            first[removes] = listing(scene), files(scene)
        registry, wanted = before if row.code else first[removes]
        check_changes(scene, row.fault, registry, row.but)
        scene.checks.equal(f"{row.fault}: the files are those after a good run, or as before", files(scene), wanted)
