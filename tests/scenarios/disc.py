"""A disc's parameters, from its file or the command line, are kept for the client or handed to one that is there."""
from harness.scenario import client
from harness.scenario.registry import UNAVAILABLE, check_changes, listing

SETUP = "D:\\PalisadeSetup.exe"
GIVEN = ["/contentIds=1", "/SetupConfig:E:\\a b.json", "/contentids=2", "x/contentIds=3", "/contentLocation=E:\\Games",
         "/contentIdsX=5"]
KEPT = {"contentIds": "=5", "SetupConfig": "E:\\a b.json", "contentLocation": "E:\\Games"}
HANDED = "-ITD -contentIds=1 -SetupConfig=E:\\a b.json -contentLocation=E:\\Games -contentIds==5"
FILE = {"SetupConfig": "D:\\Autorun\\thinsetup.json"}


def check_kept(scene, what: str, wanted: dict[str, str]) -> None:
    scene.checks.equal(f"{what} keeps the parameters for the client", scene.machine.values(client.PENDING_JOB, 32),
                       wanted)


def start_beside(scene, what: str, handed: str, *arguments: str, **options) -> None:
    """A run beside an installed client hands that the parameters, and does nothing else."""
    run = scene.runs.run(*arguments, whose=f"{what}, beside an installed client the engine", **options)
    scene.wait_for(scene.machine.notes, "the client's start")
    scene.checks.equal(f"{what}: the client is started with them", scene.machine.notes(),
                       [f'"{client.LAUNCHER}" {handed}'])
    scene.machine.forget_notes()
    scene.checks.nothing_planned(run, what)


def by_command_line(scene) -> None:
    before = listing(scene)
    # Half of a disc is none, whichever half it is: the command line is read.
    autorun, setup = (scene.machine.path(f"{client.EXCHANGE}\\{name}")
                      for name in ("autorun.inf", "Autorun\\thinsetup.json"))
    autorun.touch()
    scene.runs.install(*GIVEN)
    scene.checks.installed()
    check_kept(scene, "an install", KEPT)

    autorun.unlink()
    setup.parent.mkdir()
    setup.touch()
    start_beside(scene, "by command line", HANDED, *GIVEN)

    scene.runs.run("/uninstall", "/quiet", "/contentIds=7", log="uninstall")
    scene.checks.gone()
    kept = KEPT | {"contentIds": "7"}
    check_kept(scene, "an uninstall", kept)
    check_changes(scene, "all three", before,
                  UNAVAILABLE | {(64, client.PENDING_JOB, name): (None, value) for name, value in kept.items()})


def from_disc(scene) -> None:
    scene.machine.prefix.run("reg", "delete", client.PENDING_JOB, "/f", "/reg:32", check=True)
    disc = scene.machine.prefix.folder / "disc"
    (disc / "Autorun").mkdir(parents=True)
    scene.machine.add_drive("D", disc)
    scene.runs.make_bundle(SETUP)
    (disc / "autorun.inf").touch()
    (disc / "Autorun/thinsetup.json").touch()

    scene.runs.install("/contentIds=9", program=SETUP, log="disc-install")
    scene.checks.installed()
    check_kept(scene, "an install from a disc", FILE)
    scene.checks.equal("and no client starts", scene.machine.notes(), [])
    before = listing(scene)
    start_beside(scene, "from a disc", f"-ITD -SetupConfig={FILE['SetupConfig']}", program=SETUP, log="disc-start")
    check_kept(scene, "a start from a disc", FILE)
    check_changes(scene, "a start from a disc", before, {})


def play(scene):
    by_command_line(scene)
    from_disc(scene)
