"""`/quiet`: no window shows and no prompt asks, in a run that fails either."""


def play(scene):
    scene.script("""
        after-files mark under-way
        after-files wait-for seen
        after-files fail 1603
    """)
    failed = scene.run_unseen("a failing package")
    scene.check_exit_code(failed, 1)
    scene.check_equal("its error prompt was answered without a person, the report's box checked",
                      failed.log.variables.get("PDX_SUBMIT_ERROR_REPORT"), "1")
    scene.check_gone()
