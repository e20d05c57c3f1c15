"""Reads an engine log: the engine's own lines by number, the library's lines, the closing list of variables."""
import re
from dataclasses import dataclass
from pathlib import Path

_LINE = re.compile(r"\[([0-9A-F]+):([0-9A-F]+)\]\[[^\]]*\]([iwe])(\d{3}): ?(.*)", re.S)
# "PDXBA", the marker of an elevated process, the level in five characters, function and source line, the message.
_OURS = re.compile(r"PDXBA([* ]) (ERROR|WARN |INFO |DEBUG|TRACE) \((\S+):(\d+)\) (.*)", re.S)


@dataclass
class LibraryLine:
    thread: str
    engine_kind: str  # "e" for an error, "i" otherwise
    marker: str
    level: str
    function: str
    text: str


class EngineLog:
    def __init__(self, file: Path):
        self.text = file.read_bytes().decode("utf-8-sig", errors="replace").replace("\r\n", "\n")
        # A message may hold line breaks: what does not begin like a line belongs to the line before.
        whole = re.split(r"\n(?=\[[0-9A-F]+:[0-9A-F]+\]\[)", self.text.rstrip("\n"))
        self.rows = [match.groups()[1:] for match in map(_LINE.fullmatch, whole) if match]

    def numbered(self, number: str) -> list[str]:
        """The texts of the engine's lines of one number, as "319"."""
        return [text for _, _, row, text in self.rows if row == number]

    def raw_library_lines(self) -> list[str]:
        """All lines that are given to the engine: those of number 000 that the engine does not write itself."""
        own = re.compile("(Initializing|Setting|Unsetting) |Registry (key|value) not found|Caching bundle|Condition ")
        return [text for text in self.numbered("000") if not own.match(text)]

    def library_lines(self) -> list[LibraryLine]:
        """The library's lines that have the exact format, in order."""
        found = []
        for thread, kind, row, text in self.rows:
            match = _OURS.fullmatch(text) if row == "000" else None
            if match:
                marker, level, function, _, message = match.groups()
                found.append(LibraryLine(thread, kind, marker, level, function, message))
        return found

    def messages(self, function: str) -> list[str]:
        """What one function of a class logged; without a class "OnStartup" means the application object's."""
        return self.texts(function if "::" in function else "BootstrapperApplication::" + function)

    def texts(self, *functions: str) -> list[str]:
        """What free functions of the library logged."""
        return [line.text for line in self.library_lines() if line.function in functions]

    def has(self, pattern: str) -> bool:
        """Whether a line of the library matches."""
        return any(re.search(pattern, line.text) for line in self.library_lines())

    def closing_errors(self) -> list[str]:
        """The codes of the errors logged from OnShutdown on; none for a run that is logged as a success."""
        texts = [line.text for line in self.library_lines()]
        closing = texts[texts.index("Entering OnShutdown"):] if "Entering OnShutdown" in texts else []
        return [match[1] for match in (re.match(r"ecod\[(.*?)\]", text) for text in closing) if match]

    @property
    def exit_code(self) -> int | None:
        """The engine's whole exit code; None if the log does not reach its end."""
        match = re.match(r"Exit code: 0x([0-9a-f]+)", (self.numbered("007") or [""])[-1])
        return int(match[1], 16) if match else None

    @property
    def variables(self) -> dict[str, str]:
        """The variables that the engine lists when it closes."""
        rows = (re.fullmatch(r"Variable: (.*?) = (.*)", text, re.S) for text in self.numbered("410"))
        return {row[1]: row[2] for row in rows if row}

    def tail(self, count: int = 20) -> str:
        return "\n".join(self.text.rstrip("\n").split("\n")[-count:])
