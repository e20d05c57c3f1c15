"""On Windows 6.0 the run ends with error 1150 before anything is detected; on 6.1 it goes on."""


def play(scene):
    scene.windows_version("vista")
    run = scene.run("/quiet")
    scene.check("the engine runs on 6.0", "Windows v6.0 " in "".join(run.log.numbered("001")), run.log.numbered("001"))
    scene.check_exit_code(run, 0xA7FF047E)
    errors = run.log.messages("OnError")
    scene.check("its error has the code 1150", len(errors) == 1 and ", dwCode=1150, " in errors[0], errors)
    scene.check("it detects nothing", not run.log.messages("OnDetectBegin") and not run.log.numbered("100"))
    scene.check_equal("the closing lines tell a7ff047e", run.log.closing_errors(), ["a7ff047e"])
    files, _ = scene.client_state()
    scene.check_equal("nothing is installed", files, set())

    scene.windows_version("win7")
    seventh = scene.run("/quiet", log="windows-7")
    scene.check("then on 6.1", "Windows v6.1 " in "".join(seventh.log.numbered("001")), seventh.log.numbered("001"))
    scene.check_exit_code(seventh, 0, "there the engine")
    scene.check_equal("PDX_ALLOW_WINDOWS_7 is set there", seventh.log.variables.get("PDX_ALLOW_WINDOWS_7"), "1")
    scene.check_installed()
