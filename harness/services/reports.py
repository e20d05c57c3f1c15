"""The error report service, and the storage that the package is sent to. Each answers a right request as it should, and
any other with 400 and what is wrong, which the scenario reads (`Reports.faults`)."""
import base64
import gzip
import hashlib
import re
import xml.etree.ElementTree as xml
from xml.sax.saxutils import escape

from harness.building.bundle import BUNDLE_VERSION
from harness.scenario.telemetry import AGENT, TRACKING_ID, differences
from harness.services.server import Answer, Request

STORED = "/packages/palisade%20app?X-Signature=a%2Bb%2F%3D&X-Expires=600"
HASH = re.compile("(?!0{40})[0-9a-f]{40}")
SECTION = re.compile(rb"@@@START@@@(?P<name>[^\r\n]*)\r\n(?P<bytes>.*?)@@@END@@@(?P=name)\r\n", re.S)


def response(tracking_id: str, address: str) -> str:
    return (f"<reportResponse><trackingId>{tracking_id}</trackingId><puts><put><signedUrl>{address}</signedUrl></put>"
            "</puts></reportResponse>")


def check_value(text: bytes) -> int:
    value = 0
    for index, byte in enumerate(text):
        value = (byte - (byte >> 7 << 8) + value * 5) % 65536
        value ^= 0x4B1D * (index % 2)
    return value


def sections(package: bytes) -> list[tuple[str, bytes]]:
    """What a package holds, in order; bytes outside of all sections have the name "?"."""
    content, found, end = gzip.decompress(package), [], 0
    for match in SECTION.finditer(content):
        if match.start() > end:
            found.append(("?", content[end:match.start()]))
        found.append((match["name"].decode(), match["bytes"]))
        end = match.end()
    return found + ([("?", content[end:])] if content[end:] else [])


def elements(node: xml.Element) -> list[tuple[str, object]]:
    return [(child.tag, elements(child) if len(child) else child.text or "") for child in node]


class Reports:
    """What both services know of the report that was announced last."""

    def __init__(self, storage: str):
        self.address = f"https://{storage}{STORED}"
        self.announced: dict[str, str] = {}  # its file: name, size, contentType, b64Md5
        self.stored: list[bytes] = []  # the packages that were right
        self.faults: list[str] = []

    def announce(self, request: Request) -> Answer:
        headers = request.headers
        machine, moment = headers.get("x-machine-hash", ""), headers.get("x-timestamp", "")
        root = xml.fromstring(request.raw)
        *facts, (_, files) = found = elements(root)
        self.announced = dict(files[0][1])
        file = [("name", f"errorReporter_{moment}.gz"), ("size", self.announced.get("size")),
                ("contentType", "x-application/gzip"), ("b64Md5", self.announced.get("b64Md5"))]
        kind = dict(facts).get("launchSource")
        wanted = [("bastionId", hashlib.sha1(machine.encode()).hexdigest()), ("note", ""), ("category", "100"),
                  ("cenumber", ""), ("subscriber", ""), ("launchSource", kind), ("ejob", ""), ("esys", ""),
                  ("offerid", ""), ("files", [("file", file)])]
        faults = [] if (root.tag, kind in ("thin", "thick"), found) == ("reportRequest", True, wanted) else [
            f"announced {root.tag} {found}, wanted {wanted}"]
        faults += [f"attributes of {node.tag}" for node in root.iter() if node.attrib]
        faults += differences(headers, {
            "Host": headers["Host"], "User-Agent": AGENT, "Content-Length": str(len(request.raw)),
            "Content-Type": "application/xml", "x-machine-hash": HASH, "x-bastion-client-version": BUNDLE_VERSION,
            "osVersion": re.compile(".+"), "x-timestamp": re.compile(r"13\d{12}"),
            "x-bastion-hash": str(check_value((machine + moment).encode() + request.raw))}, "announced")
        return self._answer(faults, response(escape(TRACKING_ID), escape(self.address)))

    def store(self, request: Request) -> Answer:
        package = request.raw
        size, digest = str(len(package)), base64.b64encode(hashlib.md5(package).digest()).decode()
        faults = differences({name: self.announced.get(name) for name in ("size", "b64Md5")},
                             {"size": size, "b64Md5": digest}, "announced")
        faults += differences(request.headers, {
            "Host": request.headers["Host"], "User-Agent": AGENT, "Content-Type": "x-application/gzip",
            "Content-Length": size, "x-amz-meta-size": size, "Content-MD5": digest}, "stored")
        if request.path != STORED:
            faults.append(f"stored at {request.path}")
        if not faults:
            self.stored.append(package)
        return self._answer(faults, "")

    def _answer(self, faults: list[str], body: str) -> Answer:
        self.faults += faults
        return Answer("\n".join(faults), 400) if faults else Answer(body)
