"""Whatever the update service replies, the install goes on: a newer version is taken, all else is no update."""
import json
import re

from harness.scenario import newer

ELSEWHERE = "/autopatch/upgrade/buckets/100"


def named(version: str) -> dict:
    return {"recommended": {"version": version}}


def sized(size: int) -> str:
    """The newer version in a reply of so many bytes."""
    return json.dumps(named(newer.VERSION)).ljust(size)


def play(scene):
    update = scene.services.update
    scene.make_thin_bundle()
    update.answer(body=named("12.36.65535.65535"))
    check(scene, "a lower version", 0, [newer.BUCKET_PATH])
    update.answer(body="")
    check(scene, "an empty body", 1, [newer.BUCKET_PATH])
    update.answer(body=sized(64 * 1024 + 1))
    check(scene, "one byte above 64 KiB", 1, [newer.BUCKET_PATH])
    update.down()
    check(scene, "no service", 1, [])
    update.up()
    update.answer(status=500, delay=2, body=sized(64 * 1024))
    update.answer(status=302, headers={"Location": update.url(ELSEWHERE)}, times=1)
    check(scene, "a redirect to a late status 500 with 64 KiB", 0, [newer.BUCKET_PATH, ELSEWHERE], newer.VERSION)


def check(scene, name: str, lines: int, paths: list[str], version: str = "") -> None:
    """One run until it has come as far as it should, and is cancelled; `lines` of its log tell of the request. A newer
    installer is not served, so that its run comes as far as the first download."""
    seen, fetched = len(scene.services.requests("update")), len(scene.services.requests("download"))
    run = scene.start(log=name.replace(" ", "-") if scene.main_run else "engine")
    scene.wait_for(lambda: scene.services.requests("download")[fetched:] if version
                   else scene.window.page() == "welcome", f"the page or the download of {name}")
    log = scene.cancel(run).log
    told = [line.text for line in log.library_lines() if line.function == "GetRecommendedVersion"]
    scene.check(f"{name}: {lines} lines of the log tell of it",
                len(told) == lines and all(re.fullmatch(r"Error \d+ has occurred\.\n", text) for text in told), told)
    scene.check_equal(f"{name}: these requests", [r.path for r in scene.services.requests("update")[seen:]], paths)
    scene.check_equal(f"{name}: the replacement is planned, or nothing", log.numbered("200"),
                      ["Plan begin, 1 packages, action: UpdateReplaceEmbedded"] if version else [])
    scene.check_equal(f"{name}: the newer installer is fetched, or nothing",
                      {request.path for request in scene.services.requests("download")[fetched:]},
                      {newer.INSTALLER_PATH} if version else set())
    if not version:
        scene.check_equal(f"{name}: no error is told", log.messages("OnError") + log.closing_errors(), [])
