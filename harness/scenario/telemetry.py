"""What both telemetry services were sent, compared with what they must have been sent.

A scenario makes a `Sent` before a run, and gives its `check` the run's `Expected` events: (name, attributes), in order.
An attribute is expected as a value, as a pattern that the whole text must match, or as a type.
"""
import json
import re
from dataclasses import dataclass, field
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
TRACKING_ID = "er-7f3a 2b&1"  # the id that the error report service gives each report
PRODUCT = "kestrel_client"
AGENT = f"Palisade app Installer/{bundle.BUNDLE_VERSION}"

# All headers of a request: another one is as wrong as a missing one.
UPDATE_HEADERS = {"Host": str, "User-Agent": AGENT}
TALLY_HEADERS = UPDATE_HEADERS | {"Content-Length": str, "Content-Type": "application/json", "x-palisade-taxv": "2.0"}
BRISK_HEADERS = UPDATE_HEADERS | {"Content-Length": str, "Content-Type": "application/json", "OsVersion": "pc",
                                  "x-bastion-client-version": bundle.BUNDLE_VERSION, "x-bastion-client-platform": "pc"}
TALLY_ENVELOPE = {"entity_type": "player", "et": "client_desktop", "loc": "en_US",
                  "plat": "pc", "rel": "prod", "subl": "unknown", "subs": "unknown", "taxv": "2.0",
                  "tid": "kestrel_tundra", "tidt": "service", "ts_post": TIME_SECONDS, "v": bundle.BUNDLE_VERSION}
TALLY_ITEM = {"item_id": "Bastion.OFR.50.0001234", "item_id_type": "offer_id"}

# Where a message is shown, by the start of its id.
PLACES = {"meridian_start": ("your_games_overlay", "install_defaults"),
          "meridian_uninstall_overlay": ("uninstall_bastion_overlay", "uninstall_bastion_option"),
          "meridian_completed": ("meridian_complete", "progress")}
START_PAGE = ["meridian_start_lets_go", "meridian_start_user_agreement", "meridian_start_install_options",
              "meridian_start_close"]
OVERLAY = ["meridian_uninstall_overlay_uninstall_bastion", "meridian_uninstall_overlay_not_now",
           "meridian_uninstall_overlay_close"]


def brisk_identity(session: object, thin: bool) -> dict:
    """The keys of every event. Wine names its version by two numbers, and only three are understood."""
    return {"app": "kestrel-installer", "arch": "AMD64", "build": "opt", "cntry": "US",
            "envt": "production", "ityp": "thin" if thin else "thick", "lang": "en",
            "machash": re.compile("(?!0{40})[0-9a-f]{40}"), "os": "Wine Unknown", "plat": "pc", "session": session,
            "vers": bundle.BUNDLE_VERSION}


# An ordinary install's events. Under Wine the medium of a drive is unknown.
INSTALL_START = ("inst.inst.strt", {"intm": TIME, "inst": "new", "path": "default", "dskm": "", "dtyp": "system"})
INSTALL_SUCCESS = ("inst.inst.succ", {"strt": TIME, "stst": "new", "endt": TIME, "enst": "success"})
INSTALL_CANCEL = ("inst.inst.canc", {"cnst": "user_action"})

# And an uninstall's. The registry's folder ends with a backslash, and the default one does not.
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


def failure(name: str, code: str, text: str, operation: int, context: object, **extra) -> tuple[str, dict]:
    """An error event; no machine here has one of the runtimes that it reports."""
    runtimes = {f"vc{runtime}ver": "" for runtime in ("10x86", "11x86", "12x86", "14x86", "14x64")}
    return name, {"ecod": code, "emsg": "unknown", "estr": text, "einv": True, "eopr": operation,
                  "ectx": context} | runtimes | extra


def unavailable(name: str, link: str, **extra) -> tuple[str, dict]:
    """The error of an attempt that the host answered with 503 before any byte came."""
    context = {"pkid": bundle.PACKAGE_ID, "plid": bundle.PACKAGE_ID, "caop": 1, "psrc": link, "cast": UNAVAILABLE,
               "reco": 0}
    return failure(name, UNAVAILABLE, "Path not found.", 34, context, **extra)


def wrong_bytes(name: str, recommendation: int, **extra) -> tuple[str, dict]:
    """The error of a download whose bytes do not have the bundle's hash."""
    context = {"pkid": bundle.PACKAGE_ID, "plid": bundle.PACKAGE_ID, "stat": WRONG_HASH, "reco": recommendation}
    return failure(name, WRONG_HASH, WRONG_HASH, 36, context, **extra)


def script_failure(group: str, said: str = "", **extra) -> list[tuple[str, dict]]:
    """The errors of a package whose script, before the files, sends an error message or none, and then fails. They are
    of the message, of the execution, and of the run, which has the id of its error report."""
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
    """What the two services are sent of attempts that the host answers with 503, each retried by itself or not."""
    brisk = [event for retry in retries for event in (
        download_start(link), unavailable("inst.dnld.erro", link, auto_retry="true" if retry else "false"))]
    tally = [tally_download("start", "new", percent=0), tally_download("error", UNAVAILABLE)] * len(retries)
    return brisk, tally


def message(msg_id: str, status: str, cohort: str = "") -> tuple[str, dict]:
    destination, page = next(place for start, place in PLACES.items() if msg_id.startswith(start))
    track = {"trackingtag": cohort, "environment": "", "target_games_in_collection": [], "target_subs": "",
             "target_min_hours_played": [], "target_traffic_rules": ""}
    return "message", {"msg_id": msg_id, "destination_name": destination, "pgid": page, "status": status,
                       "type": "in_service", "service": "sable", "track": track}


def start_page(*clicks: str, cohort: str = "") -> list[tuple[str, dict]]:
    """The messages of a welcome page that is left by its button, after `clicks` on what else it offers."""
    return _offers(START_PAGE, (*clicks, START_PAGE[0]), cohort)


def overlay(*clicks: str, cohort: str = "") -> list[tuple[str, dict]]:
    """The messages of the page that offers to remove the older client."""
    return _offers(OVERLAY, clicks, cohort)


def _offers(offers: list[str], clicks: tuple[str, ...], cohort: str) -> list[tuple[str, dict]]:
    shown = [(offer, "impression") for offer in offers] + [(offer, "click") for offer in clicks]
    return [message(offer, status, cohort) for offer, status in shown]


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
        right = type(found) is type(wanted) and found == wanted  # JSON keeps 1 apart from true, and 0 from 0.0
    return [] if right else [f"{where} is {found!r}, wanted {wanted!r}"]


def session_of(run) -> str:
    """All lives of a run are of one session."""
    session, = set(run.log.messages("TelemetryManager::createSessionId"))
    return session.removeprefix("Installer session: ")


def command_line(run) -> str:
    """The process command line of a run that has ended, as its log has it, without the login code."""
    started = next(text for text in run.log.messages("OnStartup") if text.startswith("Command line: "))
    line = started.removeprefix("Command line: [").removesuffix("]")
    return re.sub(r"(KESTREL_AUTHCODE=)\S+", r"\1####", line)


@dataclass
class Expected:
    """What both services must have been sent of a run; the Brisk events between the session's start and its end."""
    run: object
    brisk: list[tuple[str, dict]]
    tally: list[tuple[str, dict]]
    thin: bool = False
    start: dict = field(default_factory=dict)  # what the session's start reports other than usual
    session: str = ""  # if not that of the run's log
    lives: int = 1  # of the library in the run
    first_life: int = 0  # Tally events of the first of two lives: the second counts its own anew
    development: bool = False  # a machine of the maker's own: the Brisk service gets that in each event
    hosts: dict[str, str] = field(default_factory=dict)  # if not those of the players' deployment

    def brisk_events(self) -> list[dict]:
        # Under Wine every process is elevated.
        start = {"action": 5, "autopatch": False, "boot": TIME, "cmd": command_line(self.run), "elevated": True,
                 "harrier": "", "ignore_installed": "", "launch": "", "repair": "0",
                 "with_authcode": False} | self.start
        rows = []
        for name, attributes in [*[("inst.sess.strt", start)] * self.lives, *self.brisk, ("inst.sess.stop", {})]:
            first, second, third = name.split(".")
            attributes = attributes | ({"is_development": 1} if self.development else {})
            rows.append(self.identity() | {"m": first, "g": second, "s": third, "ts": TIME}
                        | ({"param": attributes} if attributes else {}))
        return rows

    def identity(self) -> dict:
        return brisk_identity(self.session or session_of(self.run), self.thin)

    def tally_events(self) -> list[dict]:
        numbers = [*range(1, self.first_life + 1), *range(1, len(self.tally) - self.first_life + 1)]
        return [TALLY_ITEM | {"core": {"en": name, "s": number, "ts_event": TIME_SECONDS}} | attributes
                for number, (name, attributes) in zip(numbers, self.tally)]


def thick_install(run, shown: bool = True, **others) -> Expected:
    """A first install from the thick variant, `shown` with a window; `others` are fields of Expected."""
    tally = (start_page() if shown else []) + TALLY_INSTALL
    return Expected(**{"run": run, "brisk": [INSTALL_START, INSTALL_SUCCESS], "tally": tally} | others)


def thin_install(run, link: str, failed: tuple[list, list] = ([], []), **others) -> Expected:
    """A first install from the thin variant, with a window; `failed` are the events of attempts at its download."""
    brisk = [*failed[0], download_start(link), download_success(link, PACKAGE.stat().st_size), INSTALL_START,
             INSTALL_SUCCESS]
    return Expected(run, brisk, [*start_page(), *failed[1], *TALLY_DOWNLOAD, *TALLY_INSTALL], thin=True, **others)


def brisk_name(event: dict) -> str:
    return f"{event['m']}.{event['g']}.{event['s']}"


def tally_name(event: dict) -> str:
    return event["core"]["en"]


class Sent:
    """What both telemetry services are sent from a moment on."""

    def __init__(self, scene):
        self._services, self._checks = scene.services, scene.checks
        self._before = {service: len(self._services.requests(service)) for service in ("brisk", "tally")}

    def posts(self, service: str) -> list:
        return self._services.requests(service)[self._before[service]:]

    def brisk(self, name: str = "") -> list[dict]:
        """The Brisk events, of one name or all."""
        return [event for post in self.posts("brisk") for event in post.body if name in ("", brisk_name(event))]

    def tally(self) -> list[dict]:
        return [event for post in self.posts("tally") for event in post.body["contexts"][0]["events"]]

    def names(self) -> tuple[list[str], list[str]]:
        """The names of the events that each service has been sent."""
        return list(map(brisk_name, self.brisk())), list(map(tally_name, self.tally()))

    def check_attempts(self, count: int, each: int = 2) -> None:
        """Each attempt of a download has an id of its own, which all `each` of its events have."""
        ids = [event["download_id"] for event in self.tally() if tally_name(event) == "download"]
        self._checks.equal("the ids of the downloads are as many as the attempts", len(set(ids)), count)
        self._checks.equal("and each is that of all its events", ids, [own for own in ids[::each] for _ in range(each)])

    def check(self, expected: Expected) -> None:
        """Checks all posts: their headers, the order of their keys, and each event with each of its attributes."""
        self._check_requests("brisk", "/brisk/telm", BRISK_HEADERS, expected.hosts)
        self._check_requests("tally", "/tallyEvents", TALLY_HEADERS, expected.hosts)
        self._check_events("Brisk", brisk_name, self.brisk(), expected.brisk_events())
        self._check_events("Tally", tally_name, self.tally(), expected.tally_events())
        self._check_times(self.brisk())
        self._checks.equal("all of one machine", len({event["machash"] for event in self.brisk()}), 1)
        session = expected.identity()["session"]
        posts = self.posts("tally")
        envelopes = [{key: value for key, value in post.body.items() if key != "contexts"} for post in posts]
        self._check_each("a Tally post's envelope", envelopes, [TALLY_ENVELOPE | {"sid": session}] * len(posts))
        self._check_each("a Tally post's context", [dict(enumerate(post.body["contexts"])) for post in posts],
                         [{0: {"c_delta": False, "events": list, "pid": session, "pidt": "uid"}}] * len(posts))
        self._check_posting([([event["ts"] for event in post.body], post.came) for post in self.posts("brisk")])
        self._check_posting([([*(event["core"]["ts_event"] for event in post.body["contexts"][0]["events"]),
                               post.body["ts_post"]], post.came) for post in posts])
        # A post goes out when the one before has arrived.
        late = [(before.came, post.body["ts_post"]) for before, post in zip(posts, posts[1:])
                if post.body["ts_post"][:19] < before.came[:19]]
        self._checks.equal("each is made when the one before has gone", late, [])

    def _check_requests(self, service: str, path: str, headers: dict, hosts: dict[str, str]) -> None:
        headers = headers | {"Host": hosts.get(service, getattr(self._services, service).hosts[0])}
        posts = self.posts(service)
        self._checks.equal(f"{service} is posted to its path", {(r.method, r.path) for r in posts}, {("POST", path)})
        wrong = [row for r in posts for row in differences(r.headers, headers)]
        self._checks.equal(f"{service}'s posts have their headers and no other", wrong, [])
        ordered = [json.dumps(r.body, sort_keys=True, ensure_ascii=False, separators=(",", ":")).encode()
                   for r in posts]
        self._checks.that(f"{service}'s posts are one line with keys in order", [r.raw for r in posts] == ordered,
                          [r.raw for r in posts][:1])

    def _check_events(self, service: str, name, found: list[dict], wanted: list[dict]) -> None:
        names, wanted_names = list(map(name, found)), list(map(name, wanted))
        self._checks.equal(f"the {service} service is sent these events", names, wanted_names)
        self._check_each(f"a {service} event", found, wanted)

    def _check_each(self, what: str, found: list, wanted: list) -> None:
        rows = [row for index, pair in enumerate(zip(found, wanted)) for row in differences(*pair, f"[{index}]")]
        self._checks.that(f"{what} has every attribute and no other", not rows, "\n".join(rows[:8]))

    def _check_posting(self, posts: list[tuple[list[str], str]]) -> None:
        """Each post has an event, and the times of its events, in order, are no later than its arrival."""
        times = [[*(text[:19] for text in moments), came[:19]] for moments, came in posts]
        wrong = [row for row in times if len(row) < 2 or row != sorted(row)]
        self._checks.equal("each post is as late as its events", wrong, [])

    def _check_times(self, events: list[dict]) -> None:
        """The times that events report agree with the times at which they were made."""
        moments = [event["ts"] for event in events]
        self._checks.that("each no earlier than the one before", moments == sorted(moments), moments)
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
                    self._checks.that("the machine's start is reported", _booted(boot), boot)
                case "inst" | "uinst", "strt":
                    ordered = [moments[0], times["intm" if event["g"] == "inst" else "uitm"], last]
                case _, "succ":  # of a run, from its object's first moment on
                    ordered = [boot, times["strt"], life, before, times["endt"], last]
                case _:
                    continue
            if ordered != sorted(ordered):
                wrong.append((event["g"], event["s"], ordered))
        self._checks.equal("and the times that they report agree with it", wrong, [])


def _booted(moment: str) -> bool:
    """Whether this machine was started then, within a minute."""
    seconds = float(Path("/proc/uptime").read_text().split()[0])
    return abs((datetime.now(timezone.utc) - datetime.fromisoformat(moment + "+00:00")).total_seconds() - seconds) < 60
