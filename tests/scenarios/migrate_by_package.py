"""An install beside the older client: the package gets the order to remove it; page and Tally report the removal."""
from harness.desktop.strings import text
from harness.desktop.window import TITLE
from harness.scenario import client, older
from harness.scenario.registry import UNAVAILABLE, check_changes, listing
from harness.scenario.telemetry import TALLY_INSTALL, Sent, message, start_page, thick_install

USER_KEY = "HKCU\\Software\\Corvane Works\\Palisade Desktop"  # the sample package leaves its shortcut's mark
REMOVE = "before-files property PDX_UNINSTALL_BASTION"
SAY = "before-files say actiondata CA_MSG_BASTION_UNINSTALL_"


def play(scene):
    sent = Sent(scene)
    scene.window.use_names()
    older.install(scene, ClientPath=older.PROGRAM)
    before = listing(scene)
    scene.runs.script(f"""
        {REMOVE}
        before-files mark under-way
        before-files wait-for begin
        {SAY}BEGIN
        before-files mark begun
        before-files wait-for go-on
        {SAY}SUCCESS
    """)
    run = scene.runs.start_install("PDX_MERIDIAN_COHORT=blue")
    for mark, title, then in (("under-way", "installer_install_progress_title", "begin"),
                              ("begun", "INSTALLER_MODAL_UNINSTALLING_BASTION_TITLE", "go-on")):
        scene.runs.wait_for_mark(mark)
        scene.checks.equal(f"the page's title when the removal is {mark}",
                           scene.window.wait_for_page("progress", mark).names.get(TITLE), text(title))
        scene.runs.mark(then)
    run.ends()
    scene.checks.equal("the package gets the order to remove the older client", scene.runs.answer(REMOVE), "1")
    scene.checks.files_there()
    older.check(scene, there=True, ClientPath=client.LAUNCHER, PrevClientPath=older.PROGRAM)
    completed = message("meridian_completed_uninstall", "impression", "blue")
    sent.check(thick_install(run, tally=[*start_page(cohort="blue"), TALLY_INSTALL[0], completed, TALLY_INSTALL[1]]))
    scene.runs.uninstall()
    check_changes(scene, "installed and uninstalled", before,
                  UNAVAILABLE | {(32, older.KEY, "ClientPath"): (older.PROGRAM, None),
                                 (64, USER_KEY, "Shortcut"): (None, "1")})
