"""Run again on a machine with the client: launch it, or repair it in a second life of the library, same process."""
from harness.client import facts
from harness.seeing.window import ACTION1, ACTION2

LAUNCHER = facts.client_file("PalisadeLauncher.exe")


def check_nothing_installed(scene, run, whose):
    scene.check(f"{whose} detects and plans nothing", not run.log.numbered("100") and not run.log.numbered("200"))


def check_reload_told(scene) -> None:
    """A repair that the uninstall's question leads to: what is told of it, in real posts."""
    before = len(scene.services.requests("brisk"))
    run = scene.start("/uninstall", log="uninstall")
    scene.wait_for_page("prompt", "confirm")
    scene.window.click(ACTION2)
    scene.check_exit_code(run.finish(90), 0, "a repair from the uninstall's question")
    events = [event for post in scene.services.requests("brisk")[before:] for event in post.body]
    scene.check_equal("both lives begin, and one ends", [f"{event['m']}.{event['g']}.{event['s']}" for event in events],
                      ["inst.sess.strt", "inst.sess.strt", "inst.repr.strt", "inst.inst.strt", "inst.repr.succ",
                       "inst.sess.stop"])
    starts = [(event["param"]["action"], event["param"]["repair"]) for event in events[:2]]
    scene.check_equal("first as an uninstall, then as a repair", starts, [(3, "0"), (5, "1")])
    scene.check_equal("in one session", len({event["session"] for event in events}), 1)


def play(scene):
    scene.services  # there before the first run
    scene.check_exit_code(scene.run("/quiet", log="install"), 0, "the install")

    launch = scene.start(log="launch")
    view = scene.wait_for_page("prompt", "already-installed")
    scene.check("launch or repair", {ACTION1, ACTION2} <= view.controls.keys(), sorted(view.controls))
    scene.window.click(ACTION1)
    launch.finish(60)
    scene.check_exit_code(launch, 0, "a launch")
    scene.wait_for(lambda: scene.read(facts.LAUNCHES), "the client's start")
    scene.check_equal("the client starts to look for updates",
                      scene.read(facts.LAUNCHES).splitlines(), [f'"{LAUNCHER}" /checkForUpdate'])
    check_nothing_installed(scene, launch, "it")

    repair = scene.start()
    first = scene.wait_for_page("prompt", "repair")
    scene.window.click(ACTION2)
    repair.finish(90)
    scene.check_exit_code(repair, 0)
    log = repair.log
    starts = [line for line in log.messages("OnStartup") if line.startswith("[STARTUP]")]
    scene.check("the library starts twice, in the process of the first dialog",
                len(starts) == 2 and starts[0] == starts[1] and f"processId[{first.process}]" in starts[0], starts)
    scene.check_equal("the first life's window had ended when the second's came",
                      [line.text for line in log.library_lines() if line.function == "UIThreadFunc"],
                      ["Entering UIThreadFunc", "Exiting UIThreadFunc"] * 2)
    scene.check_equal("PDX_REPAIR is 1", log.variables.get("PDX_REPAIR"), "1")
    scene.check("the window is gone", scene.window.look() is None)

    check_reload_told(scene)
    files, _ = scene.client_state()
    scene.check_equal("the client's files are there", files, set(facts.CLIENT_FILES))
