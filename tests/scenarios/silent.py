"""`/quiet`: no window shows and no prompt asks, in a run that fails either."""


def play(scene):
    scene.runs.pause("after-files fail 1603", when="after-files")
    failed = scene.runs.run_unseen("a failing package")
    scene.checks.exit_code(failed, 1)
    scene.checks.equal("its error prompt was answered without a person, the report's box checked",
                       failed.log.variables.get("PDX_SUBMIT_ERROR_REPORT"), "1")
    scene.checks.gone()
