"""A custom action reports 25000 over the message channel, then the package fails: the report is what is told."""

REPORT = "after-files say actiondata PDX_SET_VARIABLE:PDX_MSI_STATUS=25000"


def play(scene):
    scene.script(REPORT + "\nafter-files fail 1603")
    run = scene.run("/quiet")
    scene.check_exit_code(run, 1)
    scene.check_equal("the report arrived", run.log.variables.get("PDX_MSI_STATUS"), "25000")
    failed = run.log.messages("OnExecutePackageComplete")[:1]
    scene.check("the package's status is the report", failed and "hrStatus=a7ff61a8," in failed[0], failed)
    scene.check("the run's status became the report", run.log.has(r"^Updating install status from .* \(a7ff61a8\)$"))
    scene.check_equal("the closing lines tell a7ff61a8 and not 80070643", run.log.closing_errors(), ["a7ff61a8"])

    # The engine goes on after a package that reports failure and succeeds; its later successes stand.
    scene.script(REPORT)
    success = scene.run("/quiet", log="success")
    scene.check_exit_code(success, 0, "a package that reports and succeeds")
    updates = success.log.messages("UpdateInstallStatus")
    scene.check("its report was the status for a while", any(text.endswith("(a7ff61a8)") for text in updates), updates)
    scene.check("and a success the last one", updates and updates[-1].endswith("(00000000)"), updates)
    scene.check_equal("so no error is told", success.log.closing_errors(), [])
