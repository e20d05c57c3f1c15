"""Waiting for what a person, a program or a service does, never without a bound."""
import time
from collections.abc import Callable


class Hang(Exception):
    """Something that did not come within its bound."""


def wait_for(condition: Callable[[], object], what: str, bound: float = 60) -> object:
    """Waits until the condition gives something true, and returns that."""
    deadline = time.monotonic() + bound
    while not (found := condition()):
        if time.monotonic() > deadline:
            raise Hang(f"{what} did not come within {bound:.0f} s")
        time.sleep(0.05)
    return found
