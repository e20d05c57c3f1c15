"""`/quiet`: no window shows and no prompt asks, neither in a run that goes well nor in one that fails."""
from harness import facts


def play(scene):
    scene.script("""
        before-files mark under-way
        before-files wait-for seen
    """)
    run = scene.start("/quiet")
    scene.wait_for(lambda: scene.exists(facts.EXCHANGE + "\\under-way"), "the package")
    view = scene.window.look()
    scene.check("the dialog is there while the package runs", view is not None)
    scene.check("and does not show, nor does another window", view and not view.visible and not view.others,
                view)
    scene.path(facts.EXCHANGE + "\\seen").touch()
    run.finish(90)
    scene.check_exit_code(run, 0)
    scene.check_installed()
    scene.check_exit_code(scene.run("/uninstall", "/quiet", log="uninstall"), 0, "the uninstall")
    scene.check_gone()

    scene.script("after-files fail 1603")
    failed = scene.run("/quiet", log="failure")
    scene.check_exit_code(failed, 1, "a failing run")
    scene.check_equal("its error prompt was answered without a person, the report's box checked",
                      failed.log.variables.get("PDX_SUBMIT_ERROR_REPORT"), "1")
    scene.check_gone()
