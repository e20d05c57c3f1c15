"""A repair by the other ways: the uninstall's question, and the command line, which makes an uninstall one.

The client is on another disk, by a link with brackets in its path: what it leads to is emptied, and the link stays."""
from harness.scenario.registry import changes, listing
from harness.desktop.window import ACTION2

FOLDER, TARGET = "C:\\Spiele [SSD]\\Palisade", "C:\\disk\\content"
HANDED_ON = "environment PDX_INSTALL_LOCATION"


def play(scene):
    scene.services
    for folder in (scene.path(TARGET), scene.path(FOLDER).parent):
        folder.mkdir(parents=True)
    scene.path(FOLDER).symlink_to(scene.path(TARGET))
    scene.check_exit_code(scene.run("/quiet", log="install", environment={"PDX_INSTALL_LOCATION": FOLDER}), 0,
                          "the install")
    installed = listing(scene)
    for way, arguments in (("question", ()), ("command-line", ("PDX_REPAIR=1",))):
        asks = not arguments
        before = len(scene.services.requests("brisk"))
        stray = scene.path(TARGET) / "save.dat"
        stray.touch()
        scene.script("before-files " + HANDED_ON)
        run = scene.start("/uninstall", *arguments, log="engine" if asks else way)
        if asks:
            scene.wait_for_page("prompt", "confirm")
            scene.window.click(ACTION2)
        scene.check_exit_code(run.finish(90), 0, f"{way}: the engine")
        events = [event for post in scene.services.requests("brisk")[before:] for event in post.body]
        starts = [(event["param"]["action"], event["param"]["repair"]) for event in events if event["s"] == "strt"
                  and event["g"] == "sess"]
        scene.check_equal(f"{way}: each life begins as what it is", starts,
                          [(3, "0"), (5, "1")] if asks else [(5, "1")])
        scene.check_equal(f"{way}: the repair is told in its own group",
                          [f"{event['m']}.{event['g']}.{event['s']}" for event in events][len(starts):],
                          ["inst.repr.strt", "inst.inst.strt", "inst.repr.succ", "inst.sess.stop"])
        scene.check_equal(f"{way}: in one session", len({event["session"] for event in events}), 1)
        # An own link is noted as what was there before, where nothing was.
        other = {at for at in changes(installed, listing(scene)) if at[2] != "PrevGateLink"}
        scene.check_equal(f"{way}: the registry is as after the install", other, set())
        scene.check("what the link leads to was emptied", not stray.exists())
        scene.check("and the link is there", scene.path(FOLDER).is_symlink())
        scene.check_equal("the install is handed the folder", scene.answer("before-files " + HANDED_ON), FOLDER + "\\")
        scene.check("and the client's files are there", len(scene.client_state(FOLDER)[0]) == 5)
