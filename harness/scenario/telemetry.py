"""What both telemetry services were told, against tables of what they have to be told.

A table is a list of events, (name, attributes), in order. An attribute is wanted as a value, or as a pattern that the
text has to match whole, or as a type.
"""
import json
import re
from datetime import datetime, timezone
from pathlib import Path

from harness.building import bundle
from harness.places import PACKAGE

TIME = re.compile(r"20\d\d-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}")
TIME_SECONDS = re.compile(r"20\d\d-\d\d-\d\dT\d\d:\d\d:\d\dZ")
UUID = re.compile(r"(?!0{8})[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}")
UNAVAILABLE = "80070003"  # the engine's code for an answer of 503
WRONG_HASH = "80091007"  # for bytes that are not those of a hash; Wine has no text for it
FAILED = "80070643"  # for a package that fails
ERROR_SAID = "a0010000"  # for an error message of a package's own that has no number
TRACKING_ID = "er-7f3a 2b&1"  # what the error report service calls each report
PRODUCT = "kestrel_client"
AGENT = f"Palisade app Installer/{bundle.BUNDLE_VERSION}"

# All that a request bears: another header is as wrong as one that lacks.
UPDATE_HEADERS = {"Host": str, "User-Agent": AGENT}
TALLY_HEADERS = UPDATE_HEADERS | {"Content-Length": str, "Content-Type": "application/json", "x-palisade-taxv": "2.0"}
BRISK_HEADERS = UPDATE_HEADERS | {"Content-Length": str, "Content-Type": "application/json", "OsVersion": "pc",
                                  "x-bastion-client-version": bundle.BUNDLE_VERSION, "x-bastion-client-platform": "pc"}
TALLY_ENVELOPE = {"entity_type": "player", "et": "client_desktop", "loc": "en_US",
                  "plat": "pc", "rel": "prod", "subl": "unknown", "subs": "unknown", "taxv": "2.0",
                  "tid": "kestrel_tundra", "tidt": "service", "ts_post": TIME_SECONDS, "v": bundle.BUNDLE_VERSION}
TALLY_ITEM = {"item_id": "Bastion.OFR.50.0001234", "item_id_type": "offer_id"}

# Where a message is of, by its id.
PLACES = {"meridian_start": ("your_games_overlay", "install_defaults"),
          "meridian_uninstall_overlay": ("uninstall_bastion_overlay", "uninstall_bastion_option"),
          "meridian_completed": ("meridian_complete", "progress")}
START_PAGE = ["meridian_start_lets_go", "meridian_start_user_agreement", "meridian_start_install_options",
              "meridian_start_close"]
OVERLAY = ["meridian_uninstall_overlay_uninstall_bastion", "meridian_uninstall_overlay_not_now",
           "meridian_uninstall_overlay_close"]


def brisk_identity(session: object, thin: bool) -> dict:
    """The keys that stand in every event. Wine names its version by two numbers, and only three are understood."""
    return {"app": "kestrel-installer", "arch": "AMD64", "build": "opt", "cntry": "US",
            "envt": "production", "ityp": "thin" if thin else "thick", "lang": "en",
            "machash": re.compile("(?!0{40})[0-9a-f]{40}"), "os": "Wine Unknown", "plat": "pc", "session": session,
            "vers": bundle.BUNDLE_VERSION}


def session_start(command_line: str, **other) -> tuple[str, dict]:
    """An ordinary run's; under Wine every process is a raised one."""
    return "inst.sess.strt", {"action": 5, "autopatch": False, "boot": TIME, "cmd": command_line, "elevated": True,
                              "harrier": "", "ignore_installed": "", "launch": "", "repair": "0",
                              "with_authcode": False} | other


def session_of(run) -> str:
    """All lives of a run are of one session."""
    told, = set(run.log.messages("TelemetryManager::createSessionId"))
    return told.removeprefix("Installer session: ")


def command_line(run) -> str:
    """The process command line of a run that has ended, as its log has it."""
    started = next(text for text in run.log.messages("OnStartup") if text.startswith("Command line: "))
    return started.removeprefix("Command line: [").removesuffix("]")


# An ordinary install's events, as each service is told. Under Wine the medium of a drive is unknown.
INSTALL_START = ("inst.inst.strt", {"intm": TIME, "inst": "new", "path": "default", "dskm": "", "dtyp": "system"})
INSTALL_SUCCESS = ("inst.inst.succ", {"strt": TIME, "stst": "new", "endt": TIME, "enst": "success"})
INSTALL_CANCEL = ("inst.inst.canc", {"cnst": "user_action"})
SESSION_STOP = ("inst.sess.stop", {})

# And an uninstall's. The folder that the registry has ends with a backslash, which the default one does not.
UNINSTALL_START = ("inst.uinst.strt", {"uitm": TIME, "path": "custom"})
UNINSTALL_SUCCESS = ("inst.uinst.succ", INSTALL_SUCCESS[1])
UNINSTALL_CANCEL = ("inst.uinst.canc", INSTALL_CANCEL[1])


def tally_install(status: str, status_code: str) -> tuple[str, dict]:
    return "install", {"status": status, "status_code": status_code, "installation_type": PRODUCT}


def tally_uninstall(status: str, **attributes: str) -> tuple[str, dict]:
    return "uninstall", {"status": status, "uninstallation_type": PRODUCT} | attributes


def download_start(link: str) -> tuple[str, dict]:
    return "inst.dnld.strt", {"strt": TIME, "stst": "new", "link": link, "byte": 0}


def download_success(link: str, size: int) -> tuple[str, dict]:
    return "inst.dnld.succ", {"strt": TIME, "stst": "new", "endt": TIME, "enst": "success", "link": link,
                              "pct": "100.0000", "byte": size}


def failure(name: str, code: str, text: str, operation: int, context: object, group: str = "unknown",
            invalid: bool = True, **extra) -> tuple[str, dict]:
    """An error event; no machine here has one of the runtimes that it tells of."""
    runtimes = {f"vc{runtime}ver": "" for runtime in ("10x86", "11x86", "12x86", "14x86", "14x64")}
    return name, {"ecod": code, "emsg": group, "estr": text, "einv": invalid, "eopr": operation,
                  "ectx": context} | runtimes | extra


def unavailable(name: str, link: str, **extra) -> tuple[str, dict]:
    """That of an attempt which the host answered with 503 before any byte came."""
    context = {"pkid": bundle.PACKAGE_ID, "plid": bundle.PACKAGE_ID, "caop": 1, "psrc": link, "cast": UNAVAILABLE,
               "reco": 0}
    return failure(name, UNAVAILABLE, "Path not found.", 34, context, **extra)


def wrong_bytes(name: str, recommendation: int, **extra) -> tuple[str, dict]:
    """That of a download whose bytes are not those of the bundle's hash."""
    context = {"pkid": bundle.PACKAGE_ID, "plid": bundle.PACKAGE_ID, "stat": WRONG_HASH, "reco": recommendation}
    return failure(name, WRONG_HASH, WRONG_HASH, 36, context, **extra)


def script_failure(group: str, said: str = "", **extra) -> list[tuple[str, dict]]:
    """Those of a package whose script, ahead of the files, says an error or nothing, and then fails: the error that was
    said, that of the execution, and that of the run, which tells the report that goes out about it."""
    def installer_message(kind: int, arguments: object = str) -> dict:
        return {"imsg": kind << 24, "flag": 0, "mesg": str, "args": arguments, "reco": 0}

    running = {"pkid": bundle.PACKAGE_ID, "exec": True, "ppct": int, "opct": int,
               "msiact": installer_message(8, "BeforeFiles, , "), "msicommon": installer_message(11)} | extra
    ended = {"pkid": bundle.PACKAGE_ID, "exec": False, "cpct": int, "opct": int, "stat": FAILED, "rstr": 0, "reco": 0}
    execution = failure(f"inst.{group}.erro", FAILED, "Installation failure.", 43, ended)
    if not said:
        return [execution, failure(f"inst.{group}.fail", FAILED, "Installation failure.", 42, running,
                                   report_id=TRACKING_ID)]
    return [failure(f"inst.{group}.erro", ERROR_SAID, said, 40, running), execution,
            failure(f"inst.{group}.fail", ERROR_SAID, ERROR_SAID, 40, running, report_id=TRACKING_ID)]


def tally_download(status: str, status_code: str, **percent: float) -> tuple[str, dict]:
    return "download", {"status": status, "status_code": status_code, "item_platform": "pc",
                        "download_id": UUID} | percent


TALLY_DOWNLOAD = [tally_download("start", "new", percent=0), tally_download("finish", "success", percent=100.0)]
TALLY_INSTALL = [tally_install("start", "new"), tally_install("finish", "success")]


def failed_attempts(link: str, retries: list[bool]) -> tuple[list, list]:
    """What the two services are told of attempts that the host answers with 503, each retried by itself or not."""
    brisk = [event for retry in retries for event in (
        download_start(link), unavailable("inst.dnld.erro", link, auto_retry="true" if retry else "false"))]
    tally = [tally_download("start", "new", percent=0), tally_download("error", UNAVAILABLE)] * len(retries)
    return brisk, tally


def brisk_events(scene, name: str = "") -> list[dict]:
    """The events that the Brisk service has been told so far, of one name or all."""
    return [event for post in scene.services.requests("brisk") for event in post.body
            if name in ("", f"{event['m']}.{event['g']}.{event['s']}")]


def told_so_far(scene) -> dict[str, int]:
    """How many posts each service has had, to check those of a later run by."""
    return {service: len(scene.services.requests(service)) for service in ("brisk", "tally")}


def names_since(scene, told: dict[str, int]) -> tuple[list[str], list[str]]:
    """The names of the events that each service has been told since then."""
    brisk, tally = ([post.body for post in scene.services.requests(service)[told[service]:]] for service in told)
    return ([f"{event['m']}.{event['g']}.{event['s']}" for post in brisk for event in post],
            [event["core"]["en"] for post in tally for event in post["contexts"][0]["events"]])


def check_attempts(scene, count: int, since: dict[str, int] | None = None, each: int = 2) -> None:
    """Each attempt of a download has an id of its own, which all `each` of its events bear."""
    ids = [event["download_id"] for post in scene.services.requests("tally")[(since or {}).get("tally", 0):]
           for event in post.body["contexts"][0]["events"] if event["core"]["en"] == "download"]
    scene.check_equal("the ids of the downloads are as many as the attempts", len(set(ids)), count)
    scene.check_equal("and each is that of all its events", ids, [own for own in ids[::each] for _ in range(each)])


def thick_install(run, shown: bool = True, **record) -> dict[str, object]:
    """What a first install from the thick variant tells, as check_telemetry wants it; `shown` with a window, `record`
    what is other than usual in what is told when it begins."""
    name, begin = INSTALL_START
    brisk = [session_start(command_line(run)), (name, begin | record), INSTALL_SUCCESS, SESSION_STOP]
    return {"thin": False, "brisk": brisk, "tally": (start_page() if shown else []) + TALLY_INSTALL,
            "session": session_of(run)}


def thin_install(run, link: str, failed: tuple[list, list] = ([], [])) -> dict[str, object]:
    """What a first install from the thin variant tells, with a window; `failed` of the attempts at its download that
    came to nothing."""
    brisk = [session_start(command_line(run)), *failed[0], download_start(link),
             download_success(link, PACKAGE.stat().st_size), INSTALL_START, INSTALL_SUCCESS, SESSION_STOP]
    tally = [*start_page(), *failed[1], *TALLY_DOWNLOAD, *TALLY_INSTALL]
    return {"thin": True, "brisk": brisk, "tally": tally, "session": session_of(run)}


def message(msg_id: str, status: str, cohort: str = "") -> tuple[str, dict]:
    destination, page = next(place for start, place in PLACES.items() if msg_id.startswith(start))
    track = {"trackingtag": cohort, "environment": "", "target_games_in_collection": [], "target_subs": "",
             "target_min_hours_played": [], "target_traffic_rules": ""}
    return "message", {"msg_id": msg_id, "destination_name": destination, "pgid": page, "status": status,
                       "type": "in_service", "service": "sable", "track": track}


def start_page(*clicks: str, cohort: str = "") -> list[tuple[str, dict]]:
    """What a welcome page that is left by its button tells, after `clicks` on what else it offers."""
    return _offers(START_PAGE, (*clicks, START_PAGE[0]), cohort)


def overlay(*clicks: str, cohort: str = "") -> list[tuple[str, dict]]:
    """What the page that offers to remove the older client tells."""
    return _offers(OVERLAY, clicks, cohort)


def _offers(offers: list[str], clicks: tuple[str, ...], cohort: str) -> list[tuple[str, dict]]:
    told = [(offer, "impression") for offer in offers] + [(offer, "click") for offer in clicks]
    return [message(offer, status, cohort) for offer, status in told]


def differences(found: object, wanted: object, where: str = "") -> list[str]:
    if isinstance(wanted, dict) and isinstance(found, dict):
        rows = [f"{where}.{key} is one too many" for key in found.keys() - wanted.keys()]
        rows += [f"{where}.{key} is missing" for key in wanted.keys() - found.keys()]
        for key in wanted.keys() & found.keys():
            rows += differences(found[key], wanted[key], f"{where}.{key}")
        return rows
    if isinstance(wanted, re.Pattern):
        right = isinstance(found, str) and wanted.fullmatch(found)
    elif isinstance(wanted, type):
        right = type(found) is wanted
    else:
        right = type(found) is type(wanted) and found == wanted  # JSON tells 1 from true, and 0 from 0.0
    return [] if right else [f"{where} is {found!r}, wanted {wanted!r}"]


def check_telemetry(scene, thin: bool, brisk: list, tally: list, session: object = UUID,
                    since: dict[str, int] | None = None, development: bool = False,
                    hosts: dict[str, str] | None = None, first_life: int = 0) -> None:
    """Checks all posts so far, or those `since` earlier runs: their headers, the order of their keys, and each event
    with each of its attributes. A machine of the maker's own tells the Brisk service in each that it is for
    `development`. The hosts are those of the players' deployment if no others are named. In a run with two lives of the library the
    Tally events are counted anew behind those of the `first_life`."""
    posts_brisk = _check_posts(scene, "brisk", "/brisk/telm", BRISK_HEADERS, since, hosts)
    posts_tally = _check_posts(scene, "tally", "/tallyEvents", TALLY_HEADERS, since, hosts)
    told_brisk, told_tally = [post.body for post in posts_brisk], [post.body for post in posts_tally]
    events = [event for post in told_brisk for event in post]
    wanted = []
    for name, attributes in brisk:
        first, second, third = name.split(".")
        if development:
            attributes = attributes | {"is_development": 1}
        wanted.append(brisk_identity(session, thin) | {"m": first, "g": second, "s": third, "ts": TIME}
                      | ({"param": attributes} if attributes else {}))
    scene.check_equal("the Brisk service is told these events", [f"{e['m']}.{e['g']}.{e['s']}" for e in events],
                      [name for name, _ in brisk])
    _check_each(scene, "a Brisk event", events, wanted)
    identities = {tuple(event.get(key) for key in brisk_identity(session, thin)) for event in events}
    scene.check_equal("all of one identity", len(identities), 1)
    _check_times(scene, events)
    _check_posting(scene, [([event["ts"] for event in post.body], post.came) for post in posts_brisk])

    sessions = {event["session"] for event in events} | {post["sid"] for post in told_tally}
    sessions |= {context["pid"] for post in told_tally for context in post["contexts"]}
    scene.check("all of one session", len(sessions) == 1, sessions)

    envelopes = [{key: value for key, value in post.items() if key != "contexts"} for post in told_tally]
    _check_each(scene, "a Tally post's envelope", envelopes, [TALLY_ENVELOPE | {"sid": session}] * len(envelopes))
    contexts = [post["contexts"] for post in told_tally]
    _check_each(scene, "a Tally post's context", [dict(enumerate(context)) for context in contexts],
                [{0: {"c_delta": False, "events": list, "pid": session, "pidt": "uid"}}] * len(contexts))
    events = [event for context in contexts for event in context[0]["events"]]
    numbers = [*range(1, first_life + 1), *range(1, len(tally) - first_life + 1)]
    wanted = [TALLY_ITEM | {"core": {"en": name, "s": number, "ts_event": TIME_SECONDS}} | attributes
              for number, (name, attributes) in zip(numbers, tally)]
    scene.check_equal("the Tally service is told these events", [event["core"]["en"] for event in events],
                      [name for name, _ in tally])
    _check_each(scene, "a Tally event", events, wanted)
    _check_posting(scene, [([*(event["core"]["ts_event"] for event in post.body["contexts"][0]["events"]),
                             post.body["ts_post"]], post.came) for post in posts_tally])
    # A post goes out when the one before has arrived.
    late = [(before.came, post.body["ts_post"]) for before, post in zip(posts_tally, posts_tally[1:])
            if post.body["ts_post"][:19] < before.came[:19]]
    scene.check_equal("each is made when the one before has gone", late, [])


def _check_posts(scene, service: str, path: str, headers: dict, since: dict[str, int] | None,
                 hosts: dict[str, str] | None) -> list:
    headers = headers | {"Host": (hosts or {}).get(service, getattr(scene.services, service).hosts[0])}
    requests = scene.services.requests(service)[(since or {}).get(service, 0):]
    scene.check(f"{service} is posted to", requests)
    scene.check_equal(f"{service} is posted to its path", {(r.method, r.path) for r in requests}, {("POST", path)})
    wrong = [row for r in requests for row in differences(r.headers, headers)]
    scene.check_equal(f"{service}'s posts bear their headers and no other", wrong, [])
    ordered = [json.dumps(r.body, sort_keys=True, ensure_ascii=False, separators=(",", ":")).encode()
               for r in requests]
    scene.check(f"{service}'s posts are one line with keys in order", [r.raw for r in requests] == ordered,
                [r.raw for r in requests][:1])
    return requests


def _check_posting(scene, posts: list[tuple[list[str], str]]) -> None:
    """Each post tells of something, and the moments of what it tells, in order, are no later than its arrival."""
    times = [[*(text[:19] for text in moments), came[:19]] for moments, came in posts]
    wrong = [row for row in times if len(row) < 2 or row != sorted(row)]
    scene.check_equal("each post is as late as what it tells", wrong, [])


def _booted(moment: str) -> bool:
    """Whether this machine was started then, give or take what clocks differ by."""
    seconds = float(Path("/proc/uptime").read_text().split()[0])
    return abs((datetime.now(timezone.utc) - datetime.fromisoformat(moment + "+00:00")).total_seconds() - seconds) < 60


def _check_times(scene, events: list) -> None:
    """The times that events tell go with the moments at which they are told."""
    moments = [event["ts"] for event in events]
    scene.check("each no earlier than the one before", moments == sorted(moments), moments)
    wrong, download, boot, life = [], "", "", ""
    for before, event in zip(["", *moments], events):
        times, last = event.get("param", {}), event["ts"]
        match event["g"], event["s"]:
            case "dnld", "strt":
                ordered, download = [moments[0], times["strt"], last], times["strt"]
            case "dnld", "succ":
                ordered = [download, times["strt"], download, times["endt"], last]
            case "sess", "strt":
                ordered, boot, life = [times["boot"], last], times["boot"], last
                scene.check("the machine's start is told", _booted(boot), boot)
            case "inst", "strt":
                ordered = [moments[0], times["intm"], last]
            case "uinst", "strt":
                ordered = [moments[0], times["uitm"], last]
            case _, "succ":  # of a run, from its object's first moment on
                ordered = [boot, times["strt"], life, before, times["endt"], last]
            case _:
                continue
        if ordered != sorted(ordered):
            wrong.append((event["g"], event["s"], ordered))
    scene.check_equal("and their times are those of what they tell", wrong, [])


def _check_each(scene, what: str, found: list, wanted: list) -> None:
    rows = [row for index, pair in enumerate(zip(found, wanted)) for row in differences(*pair, f"[{index}]")]
    scene.check(f"{what} has every attribute and no other", not rows, "\n".join(rows[:8]))
