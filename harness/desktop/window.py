"""The installer's window as a person has it: seen, clicked with the display's mouse, typed into."""
import json
import shutil
import subprocess
from dataclasses import dataclass, field
from pathlib import Path

from harness.places import PROGRAMS
from harness.scenario import client
from harness.waiting import wait_for

NAMES_CLASS = "HKLM\\Software\\Classes\\CLSID\\{B5F8350B-0548-48B1-A6EE-88BD00B4A5E7}\\InprocServer32"

# The dialog's controls.
TITLE, BODY, LOCATION, PICTURE, PROGRESS = 1001, 1002, 1004, 1005, 1006
ACTION1, CLOSE, OPTIONS, BROWSE, SHORTCUT, ACTION2, ACTION3, QUESTION, SUBTITLE = range(1007, 1016)

# A page is known by a control that only it shows.
PAGES = [("options", LOCATION), ("welcome", OPTIONS), ("older client", SUBTITLE), ("progress", PROGRESS),
         ("prompt", ACTION1)]


@dataclass
class Box:
    x: int
    y: int
    width: int
    height: int

    def point(self, down: float = 0.5) -> tuple[int, int]:
        """A point in its middle column, by default its middle."""
        return self.x + self.width // 2, self.y + int(self.height * down)


@dataclass
class View:
    """The window at one moment; boxes are pixels of the display."""
    box: Box
    visible: bool
    process: int
    window: int
    focus: int
    controls: dict[int, Box] = field(default_factory=dict)  # those that the page shows
    names: dict[int, str] = field(default_factory=dict)     # what is published of them to readers of the screen
    others: list[dict] = field(default_factory=list)        # other windows of the process

    @property
    def page(self) -> str:
        return next((page for page, control in PAGES if control in self.controls), "blank")


class Window:
    def __init__(self, machine, screens: Path):
        self._machine, self._screens, self._command = machine, screens, machine.command
        self._environment = {name: machine.prefix.environment[name] for name in ("DISPLAY", "PATH")}

    # Seeing

    def look(self) -> View | None:
        """The window; where several installers run, one that shows."""
        return next(iter(self.look_at_all()), None)

    def look_at_all(self) -> list[View]:
        """The windows of all installers that run, those that show first."""
        return [self._view(seen) for seen in json.loads(self._command("look"))]

    @staticmethod
    def _view(seen: dict) -> View:
        def box(of: dict) -> Box:
            return Box(of["x"], of["y"], of["width"], of["height"])

        shown = [control for control in seen["controls"] if control["shown"]]
        return View(box(seen), seen["visible"], seen["process"], seen["window"], seen["focus"],
                    {control["id"]: box(control) for control in shown},
                    {control["id"]: control["name"] for control in shown}, seen["others"])

    def boxes(self) -> list[tuple[str, str]]:
        """Caption and text of each message box that shows, whatever process it is of."""
        return [(box["caption"], box["text"]) for box in json.loads(self._command("boxes"))]

    def page(self) -> str | None:
        """The name of the page on show; None while no window shows."""
        view = self.look()
        return view.page if view and view.visible else None

    def pixels(self, box: Box) -> bytes:
        """What a part of the display shows, as bytes of red, green, blue."""
        return subprocess.run(["import", "-window", "root", "-crop", f"{box.width}x{box.height}+{box.x}+{box.y}",
                               "+repage", "-depth", "8", "rgb:-"], env=self._environment, capture_output=True,
                              check=True, timeout=20).stdout

    def is_gone(self) -> bool:
        """Whether no window shows, of any installer."""
        return not any(view.visible or view.others for view in self.look_at_all())

    def has_chooser(self) -> bool:
        """Whether the folder chooser is open and has the keyboard."""
        view = self.look()
        chooser = next((other for other in view.others if other["class"] == "#32770"), None) if view else None
        return bool(chooser) and self.keyboard() == chooser["title"]

    def keyboard(self) -> str:
        """The title of the display's window that gets the keys; empty if none does."""
        found = subprocess.run(["xdotool", "getactivewindow", "getwindowname"], env=self._environment, timeout=20,
                               capture_output=True, text=True)
        return found.stdout.strip()

    def is_checked(self, control: int) -> bool:
        return self.ask(str(control), "0xF0 0 0") == "1"  # BM_GETCHECK

    def picture(self, name: str) -> Path:
        """A picture of the window as out/<scenario>/screens/NN-<name>.png, taken when it is painted and nothing moves.
        A progress page always moves: it is taken a little later, because its controls are painted after it."""
        self._screens.mkdir(parents=True, exist_ok=True)
        target = self._screens / f"{len(list(self._screens.iterdir())) + 1:02}-{name}.png"
        box = self.look().box
        before, painted = b"", 0
        for _ in range(20):
            shot = self.pixels(box)
            painted += len(set(shot)) > 64
            if painted > 3 and self.page() == "progress" or painted and shot == before:
                break
            before = shot
        subprocess.run(["convert", "-size", f"{box.width}x{box.height}", "-depth", "8", "rgb:-", target], input=shot,
                       check=True, timeout=20)
        return target

    def wait_for_page(self, page: str, picture: str = "", bound: float = 60) -> View:
        """Waits until the window shows a page (PAGES names them), and keeps a picture of it."""
        wait_for(lambda: self.page() == page, f"the {page} page", bound)
        self.picture(picture or page.replace(" ", "-"))
        return self.look()

    def wait_for_focus(self, control: int) -> None:
        wait_for(lambda: self.look().focus == control, f"the focus of {control}", 10)

    def wait_for_movement(self, control: int, bound: float = 10) -> None:
        """Waits until a control has been drawn in four ways, as the bar of a progress page is."""
        shots, box = set(), self.look().controls[control]
        wait_for(lambda: shots.add(self.pixels(box)) or len(shots) > 3, f"the movement of {control}", bound)

    def wait_for_end(self) -> None:
        wait_for(lambda: not self.look(), "the end of the window")

    def ask(self, whom: str, message: str) -> str:
        """What the dialog, a control or a window of that class answers to a message: "0x11 0 0"."""
        return self._command(f"ask {whom} {message}")

    def answers(self) -> bool:
        """Whether the window's thread takes messages."""
        return self.ask("dialog", "0 0 0") == "0"

    # Acting

    def use_names(self) -> None:
        """Makes published names readable (harness/programs/Names.cpp); to be called before a start."""
        library = client.EXCHANGE + "\\names.dll"
        shutil.copyfile(PROGRAMS / "names.dll", self._machine.path(library))
        self._machine.set_value(NAMES_CLASS, "", library, view=32)

    def click(self, control: int, to: str = "", picture: str = "", down: float = 0.5) -> View | None:
        """Clicks into a control that shows, by default in its middle, and waits for the page that it leads `to`."""
        x, y = self.look().controls[control].point(down)
        self._do("mousemove", str(x), str(y))
        self._do("click", "1")
        return self.wait_for_page(to, picture) if to else None

    def choose_folder(self, folder: str) -> None:
        """Types a folder into the chooser that is about to open, and waits until that has closed."""
        wait_for(self.has_chooser, "the folder chooser")
        self.type(folder)
        self.press("Return")
        wait_for(lambda: not self.look().others, "the end of the folder chooser")
        # The chooser's frame takes clicks until the keyboard is back.
        wait_for(self.keyboard, "the keyboard")

    def click_twice(self, control: int) -> None:
        """Two clicks in one go, as an impatient hand does it."""
        x, y = self.look().controls[control].point()
        self._do("mousemove", str(x), str(y), "click", "--repeat", "2", "--delay", "60", "1")

    def hold(self, button: int, x: int, y: int) -> None:
        """Presses a button of the mouse and does not let go of it."""
        self._do("mousemove", str(x), str(y), "mousedown", str(button))

    def move(self, right: int, down: int) -> None:
        self._do("mousemove_relative", "--", str(right), str(down))

    def release(self, button: int) -> None:
        self._do("mouseup", str(button))

    def press(self, *keys: str) -> None:
        """Presses keys by xdotool's names, one after the other: "Tab", "shift+Tab", "space", "Return". Waits until the
        keyboard is the window's."""
        wait_for(self.keyboard, "the keyboard")
        for key in keys:
            self._do("key", key)

    def type(self, text: str) -> None:
        self._do("type", "--delay", "20", text)

    def _do(self, *arguments: str) -> None:
        subprocess.run(["xdotool", *arguments], env=self._environment, check=True, timeout=20,
                       stdout=subprocess.DEVNULL)
