"""An install beside the older client: the package is told to remove it, and the page and Tally hear of it."""
from harness.scenario import older
from harness.scenario.registry import UNAVAILABLE, check_changes, listing
from harness.scenario.telemetry import TALLY_INSTALL, check_telemetry, message, start_page, thick_install
from harness.scenario import client as facts
from harness.desktop.strings import text
from harness.desktop.window import TITLE

USER_KEY = "HKCU\\Software\\Corvane Works\\Palisade Desktop"  # the sample package leaves its shortcut's mark
COHORT = "PDX_MERIDIAN_COHORT=blue"
REMOVE = "before-files property PDX_UNINSTALL_BASTION"
SAY = "before-files say actiondata CA_MSG_BASTION_UNINSTALL_"


def play(scene):
    scene.services  # there before the first run
    scene.use_names()
    older.install(scene, ClientPath=older.PROGRAM)
    before = listing(scene)
    scene.script(f"""
        {REMOVE}
        before-files mark under-way
        before-files wait-for begin
        {SAY}BEGIN
        before-files mark begun
        before-files wait-for go-on
        {SAY}SUCCESS
    """)
    run = scene.start_install(COHORT)
    for mark, title, then in (("under-way", "installer_install_progress_title", "begin"),
                              ("begun", "INSTALLER_MODAL_UNINSTALLING_BASTION_TITLE", "go-on")):
        scene.wait_for_mark(mark, "the package's action")
        scene.check_equal(f"the page's title when the removal is {mark}",
                          scene.wait_for_page("progress", mark).names.get(TITLE), text(title))
        scene.mark(then)
    run.finish(90)
    scene.check_exit_code(run, 0)
    scene.check_equal("the package is told to remove the older client", scene.answer(REMOVE), "1")
    scene.check_equal("the client's files are there", scene.client_state()[0], set(facts.CLIENT_FILES))
    older.check(scene, there=True, ClientPath=facts.client_file("PalisadeLauncher.exe"), PrevClientPath=older.PROGRAM)
    completed = message("meridian_completed_uninstall", "impression", "blue")
    check_telemetry(scene, **thick_install(run) | {
        "tally": [*start_page(cohort="blue"), TALLY_INSTALL[0], completed, TALLY_INSTALL[1]]})
    scene.uninstall()
    check_changes(scene, "installed and uninstalled", before,
                  UNAVAILABLE | {(32, older.KEY, "ClientPath"): (older.PROGRAM, None),
                                 (64, USER_KEY, "Shortcut"): (None, "1")})
