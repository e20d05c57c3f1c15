"""What a scenario works with."""
from pathlib import Path

from harness.desktop.window import Window
from harness.machine.display import take_picture
from harness.machine.prefix import Prefix
from harness.scenario.checks import Checks
from harness.scenario.machine import Machine
from harness.scenario.runs import Runs
from harness.services import Services
from harness.waiting import wait_for


class Scene:
    def __init__(self, prefix: Prefix, out: Path):
        self.out = out
        self.machine = Machine(prefix, out)
        self.window = Window(self.machine, out / "screens")
        self.checks = Checks(self.machine)
        self.runs = Runs(self.machine, self.window, self.checks, out)
        self.wait_for = wait_for

    @property
    def services(self) -> Services:
        return self.machine.services

    def keep_evidence(self) -> None:
        """After a failure: a picture of the display, and all logs that are not kept already."""
        self.runs.unfinished()
        take_picture(self.machine.prefix.environment["DISPLAY"], self.out / "screens/01-at-the-end.png")
        self.runs.keep_other_logs()
