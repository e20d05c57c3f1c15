"""Arguments name=value become bundle variables, others do not; folder and log file are those that were asked for."""
from harness.client.facts import HELD

FOLDER = "C:\\Spiele\\Größe Ünïcode 遊戲"
LOG = "D:\\Protokoll.log"


def play(scene):
    (scene.out / "data").mkdir()
    scene.prefix.add_drive("D", scene.out / "data")
    scene.script("before-files sharing PDXTEST_LOG")
    run = scene.run("/quiet", "A=B=C", "/X=1", "-X=1", "/Y=1", "-Z=1", "EMPTY=", "QUOTED=two words  and more", "plain",
                    "InstallFolder=" + FOLDER, log_file=LOG)
    scene.check_exit_code(run, 0)
    variables = run.log.variables
    for name, wanted in {"A": "B=C", "EMPTY": "", "QUOTED": "two words  and more", "InstallFolder": FOLDER}.items():
        scene.check_equal(f"{name} is set", variables.get(name), wanted)
    refused = {"X", "/X", "-X", "Y", "/Y", "Z", "-Z", "plain"} & variables.keys()
    scene.check("what begins with \"/\" or \"-\" or has no \"=\" sets nothing", not refused, ", ".join(refused))
    scene.check_installed(FOLDER)

    locked = [line.text for line in run.log.library_lines() if line.text.startswith("Locked ")]
    scene.check_equal("the client's log lies beside the engine's", locked,
                      [f"Locked {LOG.replace('.', '_000_PalisadeApp.msi.')}"])
    scene.check_equal("and is held there too", scene.answer("before-files sharing PDXTEST_LOG"), HELD)
