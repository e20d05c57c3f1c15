"""A repair from the uninstall's question.

The client is on another disk, by a link with brackets in its path: its target is emptied, and the link is kept."""
from harness.desktop.window import ACTION2
from harness.scenario.registry import changes, listing
from harness.scenario.telemetry import Sent

FOLDER, TARGET = "C:\\Spiele [SSD]\\Palisade", "C:\\disk\\content"
HANDED_ON = "before-files environment PDX_INSTALL_LOCATION"


def play(scene):
    scene.services  # before the first run
    for folder in (scene.machine.path(TARGET), scene.machine.path(FOLDER).parent):
        folder.mkdir(parents=True)
    scene.machine.path(FOLDER).symlink_to(scene.machine.path(TARGET))
    scene.runs.install(environment={"PDX_INSTALL_LOCATION": FOLDER})
    installed, sent, stray = listing(scene), Sent(scene), scene.machine.path(TARGET) / "save.dat"
    stray.touch()
    scene.runs.script(HANDED_ON)
    run = scene.runs.start("/uninstall", page="prompt")
    scene.window.click(ACTION2)
    run.ends()
    starts = [(event["param"]["action"], event["param"]["repair"]) for event in sent.brisk("inst.sess.strt")]
    scene.checks.equal("each life starts with its own action", starts, [(3, "0"), (5, "1")])
    scene.checks.equal("the repair is reported in its own group", sent.names()[0][len(starts):],
                       ["inst.repr.strt", "inst.inst.strt", "inst.repr.succ", "inst.sess.stop"])
    scene.checks.equal("in one session", len({event["session"] for event in sent.brisk()}), 1)
    # An own link is noted as what was there before, where nothing was.
    other = {at for at in changes(installed, listing(scene)) if at[2] != "PrevGateLink"}
    scene.checks.equal("the registry is as after the install", other, set())
    scene.checks.that("the link's target was emptied", not stray.exists())
    scene.checks.that("and the link is there", scene.machine.path(FOLDER).is_symlink())
    scene.checks.equal("the install gets the folder", scene.runs.answer(HANDED_ON), FOLDER + "\\")
    scene.checks.files_there(FOLDER)
