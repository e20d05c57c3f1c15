"""The services' certificates: a root, a leaf with all their host names, and the root's revocation list. Made once for a
set of names, and kept under build/."""
import fcntl
import hashlib
import shutil
import ssl
import subprocess
import threading
from collections.abc import Callable
from dataclasses import dataclass
from functools import partial
from http.server import SimpleHTTPRequestHandler, ThreadingHTTPServer
from pathlib import Path

from harness.places import BUILD

DAYS = "3650"
SETTINGS = """
[req]
distinguished_name = name
[name]
[root]
basicConstraints = critical, CA:TRUE
keyUsage = critical, keyCertSign, cRLSign
subjectKeyIdentifier = hash
[leaf]
basicConstraints = critical, CA:FALSE
keyUsage = critical, digitalSignature, keyEncipherment
extendedKeyUsage = serverAuth
subjectAltName = {names}
crlDistributionPoints = URI:http://{list_host}/root.crl
[ca]
default_ca = own
[own]
database = issued.txt
default_md = sha256
"""


@dataclass(frozen=True)
class Chain:
    folder: Path  # with root.pem and root.crl
    context: ssl.SSLContext


def prepare(names: list[str], list_host: str) -> Chain:
    """`list_host` is where the revocation list is fetched from: Windows refuses a certificate that names none."""
    settings = SETTINGS.format(names=", ".join("DNS:" + name for name in names), list_host=list_host)
    folder = made_once(settings, lambda new: _make(new, settings))
    context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
    context.load_cert_chain(folder / "leaf.pem", folder / "leaf.key")
    return Chain(folder, context)


def made_once(what: str, make: Callable[[Path], None]) -> Path:
    """The folder under build/ with the certificates that `what` describes, which `make` fills if it is not there."""
    folder = BUILD / "certificates" / hashlib.sha1(what.encode()).hexdigest()[:8]
    folder.parent.mkdir(parents=True, exist_ok=True)
    with open(folder.parent / "lock", "w") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        if not folder.exists():
            unfinished = folder.with_suffix(".new")
            shutil.rmtree(unfinished, ignore_errors=True)
            unfinished.mkdir()
            make(unfinished)
            unfinished.rename(folder)
    return folder


def openssl(folder: Path, *arguments: str) -> None:
    done = subprocess.run(["openssl", *arguments], cwd=folder, capture_output=True, text=True)
    if done.returncode:
        raise RuntimeError(f"openssl {arguments[0]} failed:\n{done.stderr}")


def _make(folder: Path, settings: str) -> None:
    (folder / "settings.cnf").write_text(settings)
    (folder / "issued.txt").touch()

    new = ("req", "-x509", "-config", "settings.cnf", "-days", DAYS, "-newkey", "rsa:2048", "-nodes")
    openssl(folder, *new, "-extensions", "root", "-subj", "/O=Corvane Works/CN=Services under test, root",
            "-keyout", "root.key", "-out", "root.pem")
    openssl(folder, *new, "-extensions", "leaf", "-subj", "/O=Corvane Works/CN=Services under test",
            "-CA", "root.pem", "-CAkey", "root.key", "-keyout", "leaf.key", "-out", "leaf.pem")
    openssl(folder, "ca", "-gencrl", "-config", "settings.cnf", "-cert", "root.pem", "-keyfile", "root.key",
            "-crldays", DAYS, "-out", "list.pem")
    openssl(folder, "crl", "-in", "list.pem", "-outform", "DER", "-out", "root.crl")


class _Files(SimpleHTTPRequestHandler):
    def log_message(self, *_) -> None:
        pass


def publish(chain: Chain, address: str) -> None:
    """Gives the revocation list out over plain HTTP."""
    server = ThreadingHTTPServer((address, 80), partial(_Files, directory=chain.folder))
    threading.Thread(target=server.serve_forever, daemon=True).start()
