"""A disc's parameters on the command line: kept for the client, and handed to one that is there."""
from harness.scenario.registry import UNAVAILABLE, check_changes, listing
from harness.scenario import client as facts

LAUNCHER = facts.client_file("PalisadeLauncher.exe")
GIVEN = ["/contentIds=1", "/SetupConfig:E:\\a b.json", "/contentids=2", "x/contentIds=3", "/contentLocation=E:\\Games",
         "/contentIdsX=5"]
KEPT = {"contentIds": "=5", "SetupConfig": "E:\\a b.json", "contentLocation": "E:\\Games"}
HANDED = "-ITD -contentIds=1 -SetupConfig=E:\\a b.json -contentLocation=E:\\Games -contentIds==5"


def check_kept(scene, what: str, **wanted: str) -> None:
    scene.check_equal(f"{what} keeps the parameters for the client", scene.registry_values(facts.PENDING_JOB, 32),
                      KEPT | wanted)


def play(scene):
    before = listing(scene)
    # Half of a disc is none, whichever it is: the command line is read.
    autorun, setup = (scene.path(f"{facts.EXCHANGE}\\{name}") for name in ("autorun.inf", "Autorun\\thinsetup.json"))
    autorun.touch()
    scene.check_exit_code(scene.run("/quiet", *GIVEN, log="install"), 0, "an install")
    scene.check_installed()
    check_kept(scene, "an install")

    autorun.unlink()
    setup.parent.mkdir()
    setup.touch()
    run = scene.run(*GIVEN)
    scene.check_exit_code(run, 0, "beside an installed client the engine")
    scene.wait_for(lambda: scene.read(facts.LAUNCHES), "the client's start")
    scene.check_equal("the client is started with them", scene.read(facts.LAUNCHES).splitlines(),
                      [f'"{LAUNCHER}" {HANDED}'])
    scene.check("nothing is detected or planned", not run.log.numbered("100") and not run.log.numbered("200"))

    scene.check_exit_code(scene.run("/uninstall", "/quiet", "/contentIds=7", log="uninstall"), 0, "an uninstall")
    scene.check_gone()
    check_kept(scene, "an uninstall", contentIds="7")
    kept = {(64, facts.PENDING_JOB, name): (None, value) for name, value in (KEPT | {"contentIds": "7"}).items()}
    check_changes(scene, "all three", before, UNAVAILABLE | kept)
