"""A custom action fails the package after its files came (1603): rollback, status, exit code."""
from harness.client import facts

# The run's status and the package's two passes, in order: the failure is noted, the way back leaves it alone, the end
# of the registration is a success for a moment, and applying tells the failure again.
STEPS = ["fExecute=true", "80070643", "package complete", "fExecute=false", "package complete", "00000000", "80070643"]


def steps_of(log) -> list[str]:
    steps = []
    for line in log.library_lines():
        match line.function.removeprefix("BootstrapperApplication::"):
            case "OnExecutePackageBegin":
                steps.append(line.text.rpartition(", ")[2])
            case "OnExecutePackageComplete":
                steps.append("package complete")
            case "UpdateInstallStatus":
                steps.append(line.text[-9:-1])
    return steps


def play(scene):
    launcher = facts.client_file("PalisadeLauncher.exe")
    scene.script(f"""
        after-files exists {launcher}
        after-files fail 1603
    """)
    run = scene.run("/quiet")
    scene.check_exit_code(run, 1)
    scene.check_equal("the files had come", scene.answer(f"after-files exists {launcher}"), "yes")
    scene.check_equal("status and passes come in order", steps_of(run.log), STEPS)
    scene.check_equal("the closing lines tell the failure", run.log.closing_errors(), ["80070643"])
    scene.check_gone()
