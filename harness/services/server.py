"""One service: a server on an address of its own, with answers that a scenario sets."""
import base64
import json
import re
import socket
import ssl
import struct
import sys
import threading
import time
from collections.abc import Callable
from dataclasses import dataclass, field, replace
from datetime import datetime, timezone
from email.utils import formatdate
from http.server import BaseHTTPRequestHandler, ThreadingHTTPServer
from itertools import count
from pathlib import Path

# How a connection ends in place of an answer, or after half of the answer's body.
CUTS = ("", "reset", "close", "reset half-way", "close half-way")
_connections = count(1)


@dataclass(frozen=True)
class Answer:
    body: object = b""  # bytes, text, or what is sent as JSON
    status: int = 200
    headers: dict[str, str] = field(default_factory=dict)
    delay: float = 0  # seconds of silence before it
    cut: str = ""  # one of CUTS
    raw: bytes | None = None  # sent in place of an HTTP answer; then the connection closes
    chunked: bool = False
    piece: int = 0  # bytes of body that are sent at a time, as one chunk, one TLS record; 0: all of them
    hold: threading.Event | None = None  # awaited after half of the body
    silence: threading.Event | None = None  # awaited before the answer

    def __post_init__(self):
        if self.cut not in CUTS:
            raise ValueError(f"no way to end a connection: {self.cut}")

    def bytes(self) -> bytes:
        if isinstance(self.body, bytes):
            return self.body
        text = isinstance(self.body, str)
        return (self.body if text else json.dumps(self.body, ensure_ascii=False, separators=(",", ":"))).encode()


@dataclass
class Request:
    service: str
    connection: int
    method: str
    path: str
    headers: dict[str, str]
    raw: bytes  # the body as it came
    status: int | None = None
    seconds: float = 0
    came: str = field(default_factory=lambda: datetime.now(timezone.utc).strftime("%Y-%m-%dT%H:%M:%S.%f")[:-3])

    @property
    def body(self) -> object:
        try:
            return json.loads(self.raw)
        except ValueError:
            return base64.b64encode(self.raw).decode()

    def row(self) -> dict:
        return {"service": self.service, "connection": self.connection, "seconds": self.seconds, "method": self.method,
                "path": self.path, "headers": self.headers, "body": self.body, "status": self.status}


class Service:
    def __init__(self, name: str, address: str, hosts: list[str], route: str, usual: Callable[[Request], Answer],
                 context: ssl.SSLContext, record: Callable[[Request], None]):
        """Answers requests on its route ("METHOD path") by `usual`, as long as no other answer is set."""
        self.name, self.address, self.hosts, self.context, self.record = name, address, hosts, context, record
        self._route, self._usual = re.compile(route), usual
        self._next: list[tuple[str, dict]] = []  # each for one request, of a method or of any ("")
        self._set: dict[str, dict] = {}  # for all others, by method
        self._files: dict[str, Path] = {}
        self._lock = threading.Lock()
        self._server: _Server | None = None

    def url(self, path: str) -> str:
        """An address on this service, in the production deployment."""
        return f"https://{self.hosts[0]}{path}"

    def serve(self, path: str, file: Path) -> str:
        """Gives a file out under a path of its route; gives its address."""
        self._files[path] = file
        return self.url(path)

    def answer(self, *, times: int | None = None, method: str = "", **fields) -> None:
        """Sets how requests are answered from now on, or the next so many of them. Fields of Answer that are not
        given are as in the usual answer; without any argument all answers are the usual ones again."""
        Answer(**fields)  # raises where a field is wrong
        with self._lock:
            if not fields and not method and times is None:
                self._set.clear()
                self._next.clear()
            elif times is None:
                self._set[method] = fields
            else:
                self._next += [(method, fields)] * times

    def down(self) -> None:
        """Refuses connections and ends those that are open."""
        if self._server:
            self._server.close()
            self._server = None

    def up(self) -> None:
        self.down()
        self._server = _Server(self)

    def decide(self, request: Request) -> Answer:
        if not self._route.fullmatch(f"{request.method} {request.path}"):
            return Answer(status=404)
        with self._lock:
            fields = self._set.get(request.method, self._set.get("", {}))
            for row in self._next:
                if row[0] in ("", request.method):
                    self._next.remove(row)
                    fields = row[1]
                    break
        file = self._files.get(request.path.partition("?")[0])
        return replace(_file_answer(request, file) if file else self._usual(request), **fields)


def _file_answer(request: Request, file: Path) -> Answer:
    """A file, or the rest of it where a client goes on with a transfer that broke off."""
    whole = file.read_bytes()
    headers = {"Accept-Ranges": "bytes", "Last-Modified": formatdate(file.stat().st_mtime, usegmt=True)}
    asked = re.fullmatch(r"bytes=(\d+)-\d*", request.headers.get("Range", ""))
    if not asked or int(asked[1]) >= len(whole):
        return Answer(whole, headers=headers)
    headers["Content-Range"] = f"bytes {asked[1]}-{len(whole) - 1}/{len(whole)}"
    return Answer(whole[int(asked[1]):], 206, headers)


class _Server(ThreadingHTTPServer):
    request_queue_size = 128

    def __init__(self, service: Service):
        super().__init__((service.address, 443), _Handler)
        self.service = service
        self._closed = False
        self._open: set[socket.socket] = set()
        self._lock = threading.Lock()
        threading.Thread(target=self.serve_forever, args=(0.05,), daemon=True).start()

    def process_request(self, request, client_address) -> None:
        self._open.add(request)
        super().process_request(request, client_address)

    def wrap(self, connection: socket.socket) -> ssl.SSLSocket:
        """The connection before its handshake; it takes the place of the given one."""
        with self._lock:
            if self._closed:
                raise ConnectionAbortedError
            self._open.discard(connection)
            wrapped = self.service.context.wrap_socket(connection, server_side=True, do_handshake_on_connect=False)
            self._open.add(wrapped)
            return wrapped

    def forget(self, connection: socket.socket) -> None:
        with self._lock:
            self._open.discard(connection)

    def close(self) -> None:
        self.shutdown()
        self.server_close()
        with self._lock:
            self._closed = True
            for connection in self._open:
                try:
                    socket.socket.shutdown(connection, socket.SHUT_RDWR)  # beneath TLS, which another thread may be in
                except OSError:
                    pass  # gone already

    def handle_error(self, request, client_address) -> None:
        if not isinstance(sys.exception(), OSError):  # a client that ends its connection is no fault
            super().handle_error(request, client_address)


def _reset(connection: socket.socket) -> None:
    connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
    connection.close()


class _Handler(BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    disable_nagle_algorithm = True

    def setup(self) -> None:
        self.service: Service = self.server.service
        self.number = next(_connections)
        # Here and not where it is accepted, so that a client that is slow with its handshake holds up no other.
        self.request = self.server.wrap(self.request)
        try:
            self.request.do_handshake()
        except OSError:
            self.server.forget(self.request)
            self.request.close()
            raise
        super().setup()

    def finish(self) -> None:
        super().finish()
        self.server.forget(self.request)
        self.request.close()

    def log_message(self, *_) -> None:
        pass

    def _respond(self) -> None:
        headers = {name: ", ".join(self.headers.get_all(name)) for name in self.headers}
        raw = self.rfile.read(int(headers.get("Content-Length", 0)))
        request = Request(self.service.name, self.number, self.command, self.path, headers, raw)
        answer = self.service.decide(request)
        silent = answer.raw is not None or answer.cut in ("reset", "close")
        request.status = None if silent else answer.status
        self.service.record(request)
        time.sleep(answer.delay)
        if answer.silence:
            self._say_nothing(answer.silence)
        self.close_connection = silent or answer.cut != ""
        if not silent:
            self._send(answer)
        elif answer.raw:
            self.wfile.write(answer.raw)
        if answer.cut.startswith("reset"):
            _reset(self.request)

    do_GET = do_HEAD = do_POST = do_PUT = _respond

    def _say_nothing(self, end: threading.Event) -> None:
        """A head without an end: WinINet gives up a request after 30 seconds without any byte."""
        self.wfile.write(b"HTTP/1.1 200 OK\r\nX-Silence: ")
        while not end.wait(1):
            self.wfile.write(b".")

    def _send(self, answer: Answer) -> None:
        body = answer.bytes()
        self.send_response(answer.status)
        length = {"Transfer-Encoding": "chunked"} if answer.chunked else {"Content-Length": str(len(body))}
        for name, value in (length | answer.headers).items():
            self.send_header(name, value)
        self.end_headers()
        if self.command == "HEAD":
            return
        half = len(body) // 2 if answer.hold or answer.cut else len(body)
        self._send_pieces(answer, body[:half])
        if answer.hold:
            answer.hold.wait()
        if answer.cut:
            return
        self._send_pieces(answer, body[half:])
        if answer.chunked:
            self.wfile.write(b"0\r\n\r\n")

    def _send_pieces(self, answer: Answer, body: bytes) -> None:
        size = answer.piece or len(body) or 1
        for start in range(0, len(body), size):
            piece = body[start:start + size]
            self.wfile.write(b"%x\r\n%b\r\n" % (len(piece), piece) if answer.chunked else piece)
