"""Arguments name=value become bundle variables, others do not; the install lands in the folder asked for."""

FOLDER = "C:\\Spiele\\Größe Ünïcode 遊戲"


def play(scene):
    run = scene.run("/quiet", "A=B=C", "/X=1", "-X=1", "/Y=1", "-Z=1", "EMPTY=", "QUOTED=two words  and more", "plain",
                    "InstallFolder=" + FOLDER)
    scene.check_exit_code(run, 0)
    variables = run.log.variables
    for name, wanted in {"A": "B=C", "EMPTY": "", "QUOTED": "two words  and more", "InstallFolder": FOLDER}.items():
        scene.check_equal(f"{name} is set", variables.get(name), wanted)
    refused = {"X", "/X", "-X", "Y", "/Y", "Z", "-Z", "plain"} & variables.keys()
    scene.check("what begins with \"/\" or \"-\" or has no \"=\" sets nothing", not refused, ", ".join(refused))
    scene.check_installed(FOLDER)
