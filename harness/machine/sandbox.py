"""A command in namespaces of its own: python3 -m harness.machine.sandbox COMMAND...

It sees no network but its own loopback, and its mounts are its own. Every process that it started ends with it."""
import os
import subprocess
import sys
from pathlib import Path

AUTHORITIES = Path("/etc/ssl/certs/ca-certificates.crt")
HOSTS = Path("/etc/hosts")

_INSIDE = 'ip link set lo up && PALISADE_SANDBOX=yes "$@"; exit $?'


def sandboxed(command: list[str]) -> list[str]:
    """The command to start instead. Killing it kills all that runs inside. Addresses are not random there: otherwise
    one that Wine needs for each process is taken now and then, and the process does not start."""
    return ["setarch", "-R", "unshare", "--mount", "--net", "--pid", "--fork", "--kill-child", "--mount-proc",
            "bash", "-c", _INSIDE, "sandbox", *command]


def demand(what: str) -> None:
    """Raises outside of a sandbox."""
    if "PALISADE_SANDBOX" not in os.environ:
        raise RuntimeError(f"{what} in a sandbox only; see harness/machine/sandbox.py")


def trust(certificate: str, out: Path) -> None:
    """Makes the sandbox trust a root certificate (PEM). Wine reads it when a prefix's server process starts."""
    _add(AUTHORITIES, certificate, out / "authorities.pem")


def add_hosts(lines: str, out: Path) -> None:
    _add(HOSTS, lines, out / "hosts")


def _add(target: Path, text: str, kept: Path) -> None:
    """Puts a file with more text over one of the machine's, in the sandbox's mounts only."""
    demand(f"{target} may be covered")
    kept.write_text(target.read_text() + text)
    subprocess.run(["mount", "--bind", kept, target], check=True)


if __name__ == "__main__":
    os.execvp("setarch", sandboxed(sys.argv[1:]))
