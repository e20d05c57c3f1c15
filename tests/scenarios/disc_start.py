"""Started from a game disc: the content is kept for the client, which is installed, or started where it is."""
from harness.scenario.registry import check_changes, listing
from harness.scenario import client as facts

SETUP = "D:\\PalisadeSetup.exe"
LAUNCHER = facts.client_file("PalisadeLauncher.exe")
KEPT = {"SetupConfig": "D:\\Autorun\\thinsetup.json"}


def check_kept(scene, what: str) -> None:
    scene.check_equal(f"{what}: the disc's file is kept for the client",
                      scene.registry_values(facts.PENDING_JOB, 32), KEPT)


def play(scene):
    disc = scene.prefix.folder / "disc"
    (disc / "Autorun").mkdir(parents=True)
    scene.prefix.add_drive("D", disc)
    scene.make_bundle(SETUP)
    (disc / "autorun.inf").touch()
    (disc / "Autorun/thinsetup.json").touch()

    install = scene.run("/quiet", "/contentIds=9", program=SETUP, log="install")
    scene.check_exit_code(install, 0, "an install from a disc")
    scene.check_installed()
    check_kept(scene, "an install")
    scene.check_equal("and no client starts", scene.read(facts.LAUNCHES), "")

    before = listing(scene)
    run = scene.run(program=SETUP)
    scene.check_exit_code(run, 0, "beside an installed client the engine")
    client = f"\"{LAUNCHER}\" -ITD -SetupConfig={KEPT['SetupConfig']}"
    scene.wait_for(lambda: scene.read(facts.LAUNCHES), "the client's start")
    scene.check_equal("the client is started with the disc's file", scene.read(facts.LAUNCHES).splitlines(), [client])
    scene.check("nothing is detected or planned", not run.log.numbered("100") and not run.log.numbered("200"))
    check_kept(scene, "a start")
    check_changes(scene, "a start", before, {})
