"""A repair whose package fails leaves no client; the next finds hardly anything left to take, and installs."""
from harness.scenario.registry import COMPONENTS, PACKED_CODE, changes, listing, passed_over
from harness.scenario import client as facts


def repair(scene, ending: str, log: str):
    """A repair that pauses when it has taken the client apart; gives the run and the registry at that moment."""
    scene.script("before-files mark under-way\nbefore-files wait-for seen\n" + ending)
    run = scene.start("PDX_REPAIR=1", "/quiet", log=log)
    scene.wait_for_mark("under-way", "the package")
    apart = listing(scene)
    scene.mark("seen")
    return run.finish(60), apart


def play(scene):
    scene.check_exit_code(scene.run("/quiet", log="install"), 0, "the install")
    failed, first = repair(scene, "before-files fail 1603", "failing")
    scene.check_exit_code(failed, 1, "a repair whose package fails")
    scene.check("the client is not there", not scene.exists(facts.INSTALL_FOLDER))
    again, second = repair(scene, "", "engine")
    scene.check_exit_code(again, 0)
    # Each purge passes over the component behind one that it takes, and the next one finds it.
    taken = set(passed_over(first)) ^ {at[1].rpartition("\\")[2] for at in first if at[2] == PACKED_CODE}
    wanted = {(64, f"{COMPONENTS}\\{name}", value) for name in taken for value in (None, PACKED_CODE)}
    scene.check_equal("the second finds nothing but components that the first passed over",
                      {at for at in changes(first, second) if at[2] != "BundleResumeCommandLine"}, wanted)
    scene.check_equal("the client's files are there", scene.client_state()[0], set(facts.CLIENT_FILES))
