"""Whatever the update service replies, the install goes on: a newer version is taken, all else is no update."""
from harness import bundle, newer

LATE = 3  # seconds


def named(version: str) -> dict:
    return {"recommended": {"version": version}}


NO_UPDATE = {
    "an equal version": dict(body=named(bundle.BUNDLE_VERSION)),
    "a lower one": dict(body=named("12.36.65535.65535")),
    "a part over 65535, of which 36 is left": dict(body=named("12.65572.0.5294")),
    "no version": dict(body={"recommended": {}}),
    "an empty object": dict(body={}),
    "a list": dict(body=[]),
    "a number for the version": dict(body={"recommended": {"version": 13}}),
    "a text for the object": dict(body={"recommended": "13.0.0.0"}),
    "no JSON": dict(body="13.0.0.0"),
    "nothing": dict(body=""),
    "a reset": dict(cut="reset"),
}
UPDATE = {
    "a good body under status 500": dict(status=500, body=named(newer.VERSION)),
    "a late one": dict(delay=LATE, body=named(newer.VERSION)),
}


def play(scene):
    newer.thin_installer(scene)
    for name, answer in NO_UPDATE.items():
        scene.services.update.answer(**answer)
        check_no_update(scene, name)
    scene.services.update.down()
    check_no_update(scene, "no service")
    scene.services.update.up()

    # The newer installer is not served, so that the run comes as far as its first download.
    for name, answer in UPDATE.items():
        scene.services.update.answer(**answer)
        check_update(scene, name)
    moved = scene.services.update.url("/autopatch/upgrade/buckets/100")
    scene.services.update.answer(body=named(newer.VERSION))
    scene.services.update.answer(status=302, headers={"Location": moved}, times=1)
    check_update(scene, "a redirect to one")


def begin(scene, name: str):
    return scene.start(log=name.replace(" ", "-").replace(",", ""))


def check_no_update(scene, name: str) -> None:
    run = begin(scene, name)
    scene.wait_for_page("welcome")
    log = scene.cancel(run).log
    scene.check(f"{name}: the bucket is asked for, and the person", log.has("^Using bucket value"))
    scene.check_equal(f"{name}: nothing is planned", log.numbered("200"), [])
    scene.check_equal(f"{name}: nothing is told as an error", log.messages("OnError") + log.closing_errors(), [])


def check_update(scene, name: str) -> None:
    before = len(scene.services.requests("download"))
    run = begin(scene, name)
    asked = scene.services.wait_for(before + 1, "download", bound=60)[before:]
    scene.check(f"{name}: the newer installer is fetched", asked and asked[0].path == newer.INSTALLER_PATH, asked)
    log = scene.cancel(run).log
    scene.check_equal(f"{name}: the replacement is planned", log.numbered("200"),
                      ["Plan begin, 1 packages, action: UpdateReplaceEmbedded"])
