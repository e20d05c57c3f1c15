"""`/quiet`: no window shows and no prompt asks, neither in a run that goes well nor in one that fails."""
from harness import facts


UNDER_WAY, SEEN = facts.EXCHANGE + "\\under-way", facts.EXCHANGE + "\\seen"


def run_unseen(scene, what: str, **options):
    """A quiet run whose package waits until the window has been looked for."""
    for mark in (UNDER_WAY, SEEN):
        scene.path(mark).unlink(missing_ok=True)
    run = scene.start("/quiet", **options)
    scene.wait_for(lambda: scene.exists(UNDER_WAY), what)
    view = scene.window.look()
    scene.check(f"the dialog is there while {what} runs", view is not None)
    scene.check("and does not show, nor does another window", view and not view.visible and not view.others, view)
    scene.path(SEEN).touch()
    return run.finish(90)


def play(scene):
    scene.script("""
        before-files mark under-way
        before-files wait-for seen
    """)
    run = run_unseen(scene, "the package")
    scene.check_exit_code(run, 0)
    scene.check_installed()
    scene.check_exit_code(scene.run("/uninstall", "/quiet", log="uninstall"), 0, "the uninstall")
    scene.check_gone()

    scene.script("""
        after-files mark under-way
        after-files wait-for seen
        after-files fail 1603
    """)
    failed = run_unseen(scene, "a failing package", log="failure")
    scene.check_exit_code(failed, 1, "a failing run")
    scene.check_equal("its error prompt was answered without a person, the report's box checked",
                      failed.log.variables.get("PDX_SUBMIT_ERROR_REPORT"), "1")
    scene.check_gone()
