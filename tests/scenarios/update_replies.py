"""After any reply of the update service the run continues: only a newer version replaces the installer."""
import json
import re

from harness.scenario import newer

ELSEWHERE = "/autopatch/upgrade/buckets/100"
LOWER = {"recommended": {"version": "12.36.65535.65535"}}


def sized(size: int) -> str:
    """The newer version in a reply of so many bytes."""
    return json.dumps(newer.REPLY).ljust(size)


def play(scene):
    update = scene.services.update
    scene.runs.make_thin_bundle()
    update.answer(body=LOWER)
    check(scene, "engine", 0, [newer.BUCKET_PATH])
    update.answer(body="")
    check(scene, "an empty body", 1, [newer.BUCKET_PATH])
    update.answer(body=sized(64 * 1024 + 1))
    check(scene, "one byte above 64 KiB", 1, [newer.BUCKET_PATH])
    update.down()
    check(scene, "no service", 1, [])
    update.up()
    update.answer(status=500, delay=2, body=sized(64 * 1024))
    update.answer(status=302, headers={"Location": update.url(ELSEWHERE)}, times=1)
    check(scene, "a redirect to a late status 500 with 64 KiB", 0, [newer.BUCKET_PATH, ELSEWHERE], updates=True)


def check(scene, name: str, lines: int, paths: list[str], updates: bool = False) -> None:
    """One run up to its first page or download, which is cancelled; `lines` of its log are about the request. A newer
    installer is not served: its run ends at the first download."""
    checks, services = scene.checks, scene.services
    seen, fetched = len(services.requests("update")), len(services.requests("download"))
    run = scene.runs.start(log=name.replace(" ", "-"))
    scene.wait_for(lambda: services.requests("download")[fetched:] if updates else scene.window.page() == "welcome",
                   f"the page or the download of {name}")
    log = scene.runs.cancel(run).log
    errors = log.texts("GetRecommendedVersion")
    checks.that(f"{name}: {lines} lines of the log are about it",
                len(errors) == lines and all(re.fullmatch(r"Error \d+ has occurred\.\n", e) for e in errors), errors)
    checks.equal(f"{name}: these requests", [r.path for r in services.requests("update")[seen:]], paths)
    checks.equal(f"{name}: the replacement is planned, or nothing", log.numbered("200"),
                 newer.REPLACES if updates else [])
    checks.equal(f"{name}: the newer installer is fetched, or nothing",
                 {request.path for request in services.requests("download")[fetched:]},
                 {newer.INSTALLER_PATH} if updates else set())
    if not updates:
        checks.no_error(run, name)
