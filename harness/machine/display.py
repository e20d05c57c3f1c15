"""A display for Wine's windows: a virtual one of its own, or the caller's."""
import contextlib
import fcntl
import os
import re
import subprocess
import tempfile
from pathlib import Path

NUMBERS = range(100, 200)
OPENBOX = Path("/etc/xdg/openbox/rc.xml")


def _start_server(size: str):
    """A server on a display number that no other run has, with the lock that reserves it. A server that chooses looks
    in its own network namespace only, and would take the socket file of a server in another."""
    for number in NUMBERS:
        lock = open(Path(tempfile.gettempdir()) / f"palisade-display-{number}.lock", "w")
        try:
            fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
        except BlockingIOError:
            lock.close()
            continue
        read, write = os.pipe()
        server = subprocess.Popen(["Xvfb", f":{number}", "-displayfd", str(write), "-screen", "0", size, "-nolisten",
                                   "tcp", "-noreset"],
                                  pass_fds=[write], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(write)
        with open(read) as pipe:
            if pipe.readline().strip():
                return server, f":{number}", lock
        server.wait()
        lock.close()
    raise RuntimeError("Xvfb did not start")


@contextlib.contextmanager
def virtual_display(size: str = "1280x1024x24"):
    """A display of its own with a small window manager, gone at the end; gives its name.

    Without a window manager Wine waits two seconds for each window that closes, and no window gets the keyboard.
    """
    server, display, lock = _start_server(size)
    with lock, tempfile.TemporaryDirectory() as home:
        # Alt+Space is the window's, as on Windows, and no key of the manager's.
        own = Path(home, ".config/openbox/rc.xml")
        own.parent.mkdir(parents=True)
        own.write_text(re.sub('<keybind key="A-space">.*?</keybind>', "", OPENBOX.read_text(), flags=re.DOTALL))
        manager = subprocess.Popen(["openbox"], env=os.environ | {"DISPLAY": display, "HOME": home},
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        try:
            yield display
        finally:
            for process in (manager, server):
                process.terminate()
                process.wait()


def take_picture(display: str, target: Path) -> None:
    """A picture of the whole display; its absence is no failure."""
    target.parent.mkdir(parents=True, exist_ok=True)
    subprocess.run(["import", "-display", display, "-window", "root", target], timeout=20, check=False,
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
