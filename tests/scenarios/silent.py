"""`/quiet`: no window shows and no prompt asks, neither in a run that goes well nor in one that fails."""


def play(scene):
    scene.script("""
        before-files mark under-way
        before-files wait-for seen
    """)
    run = scene.run_unseen("the package")
    scene.check_exit_code(run, 0)
    scene.check_installed()
    scene.uninstall()
    scene.check_gone()

    scene.script("""
        after-files mark under-way
        after-files wait-for seen
        after-files fail 1603
    """)
    failed = scene.run_unseen("a failing package", log="failure")
    scene.check_exit_code(failed, 1, "a failing run")
    scene.check_equal("its error prompt was answered without a person, the report's box checked",
                      failed.log.variables.get("PDX_SUBMIT_ERROR_REPORT"), "1")
    scene.check_gone()
