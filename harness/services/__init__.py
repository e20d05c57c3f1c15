"""The deployment's services: real HTTPS on loopback, under the deployment's own host names, inside a sandbox.

| Service    | Host names, port 443                        | Ordinary answers, all 200                              |
|------------|---------------------------------------------|--------------------------------------------------------|
| `update`   | those of `updater.url` in *.cfg             | GET /autopatch/upgrade/buckets/N: the bundle's version |
| `brisk`    | those of `telemetry.brisk.url`              | POST /brisk/telm: {}                                   |
| `tally`    | those of `telemetry.tally.url`              | POST /tallyEvents: {}                                  |
| `download` | those of `installer.downloadurl`            | GET, HEAD: the files given to `serve`, else 404        |
| `legal`    | those of `legal.url`                        | GET /legalapp/...: a short page                        |
| `reports`  | those of `app.oer.url`                      | POST /er/errorreport.xml: harness/services/reports.py  |
| `storage`  | storage.corvaneworks.example                | PUT /packages/...: the same                            |
| `tests`    | tests.corvaneworks.example                  | what the query says: harness/services/testhost.py      |

The files are the shipped deployment's, in resources/, and another one's, in harness/deployment/. Another method or path
is always answered 404. Each service has an address of its own, from 127.0.0.11 on, so that one can be down or reset
connections while the others work. The revocation list of their certificate is fetched over plain HTTP from
crl.corvaneworks.example, which is no service and leaves no record.

A scenario has them as `scene.services`:

    services.update.answer(body={"recommended": {"version": "12.38.0.1"}})      from now on
    services.download.answer(status=503, times=3)                               three times, then as before
    services.download.answer(cut="close half-way", method="GET", times=1)       half of what it would have sent
    services.brisk.answer(silence=event, cut="reset")                           no answer until then, but a reset
    services.tally.down()                                                       refuses connections; up() ends it
    url = services.download.serve("/client/PalisadeApp.msi", file)
    bodies = [request.body for request in services.requests("brisk")]

Requests are written to requests.jsonl before they are answered: `service`, `connection` (a number
that stays the same where a connection is used again), `seconds` since the services' start, `method`, `path` with its
query, `headers`, `body` (JSON as JSON, other bytes in base64), `status` (null where none is sent).
"""
import json
import threading
import time
import tomllib
from pathlib import Path
from urllib.parse import urlsplit

from harness.building import bundle, certificates
from harness.machine import sandbox
from harness.places import CONFIGURATIONS, OTHER_CONFIGURATIONS
from harness.services import testhost
from harness.services.reports import Reports
from harness.services.server import Answer, Request, Service

DOMAIN = "corvaneworks.example"


def configured(key: str, folders: tuple[Path, ...] = (CONFIGURATIONS, OTHER_CONFIGURATIONS)) -> list[str]:
    """An address in the deployments' configuration files, the shipped one first."""
    found = []
    for folder in folders:
        for file in sorted(folder.glob("*.cfg"), key=lambda file: file.name != "production.cfg"):
            value = tomllib.loads(file.read_text("utf-8"))
            for part in key.split("."):
                value = value.get(part, {})
            if value:
                found.append(value)
    return list(dict.fromkeys(found))


class Services:
    def __init__(self, out: Path):
        """Makes the sandbox trust and find them, and starts them. A Wine prefix that runs already trusts them after a
        restart."""
        self._started = time.monotonic()
        self._changed = threading.Condition()
        self._requests: list[Request] = []
        self._file = (out / "requests.jsonl").open("w", encoding="utf-8", errors="backslashreplace", buffering=1)
        self.received = Reports("storage." + DOMAIN)
        version = {"recommended": {"version": bundle.BUNDLE_VERSION}}
        rows = [
            ("updater.url", r"GET /autopatch/upgrade/buckets/\d+", lambda _: Answer(version)),
            ("telemetry.brisk.url", r"POST /brisk/telm", lambda _: Answer({})),
            ("telemetry.tally.url", r"POST /tallyEvents", lambda _: Answer({})),
            ("installer.downloadurl", r"(GET|HEAD) /.*", lambda _: Answer(status=404)),
            ("legal.url", r"GET /legalapp/.*", lambda _: Answer("<!DOCTYPE html><title>Legal document</title>")),
            ("app.oer.url", r"POST /er/errorreport\.xml", self.received.announce),
            ("", r"PUT /packages/.*", self.received.store),
            ("", r"\w+ /.*", lambda request: testhost.answer(request, self)),
        ]
        services = ("update", "brisk", "tally", "download", "legal", "reports", "storage", "tests")
        names = [list(dict.fromkeys(urlsplit(url).netloc for url in configured(key))) if key else [f"{name}.{DOMAIN}"]
                 for name, (key, *_) in zip(services, rows)]
        chain = certificates.prepare(sum(names, []), "crl." + DOMAIN)
        made = [Service(name, f"127.0.0.{11 + index}", names[index], *rows[index][1:], chain.context, self._record)
                for index, name in enumerate(services)]
        (self.update, self.brisk, self.tally, self.download, self.legal, self.reports, self.storage,
         self.tests) = made
        lines = [f"{service.address} {' '.join(service.hosts)}\n" for service in made if service.hosts]
        sandbox.add_hosts("".join(lines) + f"127.0.0.10 crl.{DOMAIN}\n", out)
        sandbox.trust((chain.folder / "root.pem").read_text(), out)
        certificates.publish(chain, "127.0.0.10")
        for service in made:
            service.up()

    def seconds(self) -> float:
        """Since the services' start, as requests have it."""
        return time.monotonic() - self._started

    def requests(self, service: str = "", path: str = "") -> list[Request]:
        """The requests so far, in order: to one service or to all, with paths that begin with `path`."""
        with self._changed:
            return [request for request in self._requests
                    if service in ("", request.service) and request.path.startswith(path)]

    def wait_for(self, count: int, service: str = "", path: str = "", bound: float = 20) -> list[Request]:
        """The same, once there are `count` of them or the seconds are over."""
        with self._changed:
            self._changed.wait_for(lambda: len(self.requests(service, path)) >= count, bound)
            return self.requests(service, path)

    def _record(self, request: Request) -> None:
        with self._changed:
            request.seconds = round(self.seconds(), 3)
            self._requests.append(request)
            self._file.write(json.dumps(request.row(), ensure_ascii=False) + "\n")
            self._changed.notify_all()
