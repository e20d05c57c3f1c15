"""`/uninstall /quiet` after an install: the client is marked unavailable, then files and values go."""
import re

from harness.client import facts


def play(scene):
    scene.check_exit_code(scene.run("/quiet", log="install"), 0, "the install")
    connect = scene.prefix.start(facts.client_file("PalisadeConnect_microsoft.exe"), "--stay")
    scene.wait_for(lambda: scene.read(facts.LAUNCHES), "the start of PalisadeConnect_microsoft.exe")

    scene.script(f"""
        before-files dword 32 IsUnavailable Software\\Corvane Works\\Palisade Desktop
        before-files dword 64 IsUnavailable Software\\Corvane Works\\Palisade Desktop
        before-files exists {facts.client_file("PalisadeLauncher.exe")}
    """)
    command = scene.registry(facts.PRODUCT_KEY, "OriginalQuietUninstallString") or ""
    program, arguments = re.fullmatch(r'"(.*?)" (.*)', command).groups()
    run = scene.run(*arguments.split(), program=program)

    scene.check_exit_code(run, 0)
    scene.check_equal("the engine planned an uninstall",
                      run.log.numbered("200"), ["Plan begin, 1 packages, action: Uninstall"])
    for view in (32, 64):
        step = f"before-files dword {view} IsUnavailable Software\\Corvane Works\\Palisade Desktop"
        scene.check_equal(f"IsUnavailable is 1 in view {view} when the package begins", scene.answer(step), "1")
    scene.check_equal("and the files are still there then",
                      scene.answer(f"before-files exists {facts.client_file('PalisadeLauncher.exe')}"), "yes")
    # Ended while the package began, or it would have kept its file from going.
    scene.check("PalisadeConnect_microsoft.exe was stopped", connect.poll() is not None)
    scene.check_equal("InstallFolder is where the client was",
                      run.log.variables.get("InstallFolder"), facts.INSTALL_FOLDER + "\\")
    scene.check_gone()
