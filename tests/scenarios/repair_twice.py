"""A repair whose package fails leaves no client; the next finds hardly anything left to remove, and installs."""
from harness.scenario import client
from harness.scenario.registry import COMPONENTS, PACKED_CODE, changes, listing, passed_over


def repair(scene, log: str, code: int, *then: str):
    """A repair that pauses when it has removed the client; gives the registry at that moment."""
    scene.runs.pause(*then)
    run = scene.runs.start("PDX_REPAIR=1", "/quiet", log=log)
    scene.runs.wait_for_mark()
    apart = listing(scene)
    scene.runs.mark()
    run.ends(code, f"{log}: the engine")
    return apart


def play(scene):
    scene.runs.install()
    first = repair(scene, "failing", 1, "before-files fail 1603")
    scene.checks.that("the client is not there", not scene.machine.exists(client.INSTALL_FOLDER))
    second = repair(scene, "engine", 0)
    # Each purge passes over the component after one that it removes, and the next purge finds it.
    taken = set(passed_over(first)) ^ {at[1].rpartition("\\")[2] for at in first if at[2] == PACKED_CODE}
    wanted = {(64, f"{COMPONENTS}\\{name}", value) for name in taken for value in (None, PACKED_CODE)}
    scene.checks.equal("the second finds nothing but components that the first passed over",
                       {at for at in changes(first, second) if at[2] != "BundleResumeCommandLine"}, wanted)
    scene.checks.files_there()
