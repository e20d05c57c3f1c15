"""Whatever the update service replies, the install goes on: a newer version is taken, all else is no update."""
import json
import re

from harness.checking import newer

LATE = 2  # seconds


def named(version: object) -> dict:
    return {"recommended": {"version": version}}


def sized(size: int) -> str:
    """The newer version in a reply of so many bytes."""
    return json.dumps(named(newer.VERSION)).ljust(size)


# What comes back, and the lines that the request leaves in the log: one where no body came.
NO_UPDATE = [
    ("one byte above 64 KiB", dict(body=sized(64 * 1024 + 1)), 1),
    ("no JSON", dict(body="13.0.0.0"), 0),
    ("an empty body", dict(body=""), 1),
    ("a reset", dict(cut="reset"), 1),
]
UPDATE = [
    ("64 KiB under status 500", dict(status=500, body=sized(64 * 1024))),
    ("a late one", dict(delay=LATE, body=named(newer.VERSION))),
]
ELSEWHERE = "/autopatch/upgrade/buckets/100"


def play(scene):
    update = scene.services.update
    scene.make_thin_bundle()
    for name, answer, lines in NO_UPDATE:
        update.answer(**answer)
        check_no_update(scene, name, lines, [newer.BUCKET_PATH])
    update.down()
    check_no_update(scene, "no service", 1, [])
    update.up()

    # The newer installer is not served, so that such a run comes as far as its first download.
    for name, answer in UPDATE:
        update.answer(**answer)
        check_update(scene, name, [newer.BUCKET_PATH])
    update.answer(body=named(newer.VERSION))
    update.answer(status=302, headers={"Location": update.url(ELSEWHERE)}, times=1)
    check_update(scene, "a redirect to one", [newer.BUCKET_PATH, ELSEWHERE])


def check_no_update(scene, name: str, lines: int, paths: list[str]) -> None:
    log = play_row(scene, name, lines, paths, lambda: scene.window.page() == "welcome")
    scene.check_equal(f"{name}: nothing is planned", log.numbered("200"), [])
    scene.check_equal(f"{name}: nothing is told as an error", log.messages("OnError") + log.closing_errors(), [])


def check_update(scene, name: str, paths: list[str]) -> None:
    before = len(scene.services.requests("download"))
    log = play_row(scene, name, 0, paths, lambda: scene.services.requests("download")[before:])
    fetched = {request.path for request in scene.services.requests("download")[before:]}
    scene.check_equal(f"{name}: the newer installer is fetched", fetched, {newer.INSTALLER_PATH})
    scene.check_equal(f"{name}: the replacement is planned", log.numbered("200"),
                      ["Plan begin, 1 packages, action: UpdateReplaceEmbedded"])


def play_row(scene, name: str, lines: int, paths: list[str], arrived):
    """One run until it has come as far as it should, and is cancelled. Gives its log."""
    before = len(scene.services.requests("update"))
    run = scene.start(log=name.replace(" ", "-") if scene.main_run else "engine")
    scene.wait_for(arrived, f"the page or the download of {name}")
    log = scene.cancel(run).log
    told = [line.text for line in log.library_lines() if line.function == "GetRecommendedVersion"]
    scene.check(f"{name}: {lines} lines of the log tell of it",
                len(told) == lines and all(re.fullmatch(r"Error \d+ has occurred\.\n", text) for text in told), told)
    scene.check_equal(f"{name}: these requests", [r.path for r in scene.services.requests("update")[before:]], paths)
    return log
