"""Whether the documents name only what there is: files, and names of the code."""
import re

from harness import telemetry_doc
from harness.places import ROOT

FOLDERS = ("bench|cmake|config|core|docs|fuzz|harness|library|platform|reporting|resources|sample|state|telemetry|"
           "tests|ui")
CODE = "cpp|h|py|cmake|txt|sh|wxs|wxi|rc|cfg"
EXAMPLES = {"resources/strings/NL.xml", "RefusesAFolderAboveAKnownFolder"}


def _words() -> set[str]:
    """All names of the code."""
    files = (file for folder in FOLDERS.split("|") if folder != "docs" for file in (ROOT / folder).rglob("*.*")
             if file.suffix[1:] in CODE.split("|") and "node_modules" not in file.parts)
    return {word for file in files for word in re.findall(r"\w+", file.read_text("utf-8", "replace"))}


def faults() -> list[str]:
    words, found = _words(), []
    for document in [ROOT / "README.md", ROOT / "CONTRIBUTING.md", *(ROOT / "docs").glob("*.md")]:
        # Not the blocks of code, which hold what a run sent.
        text = re.sub(r"```.*?```", "", document.read_text("utf-8"), flags=re.S)
        name = document.relative_to(ROOT)
        files = set(re.findall(rf"`((?:{FOLDERS})/[\w/.-]+\.\w+)`", text))
        links = {(document.parent / link).resolve() for link in re.findall(r"\]\(([\w/.-]+)\)", text)}
        found += [f"{name}: there is no {file}" for file in files - EXAMPLES if not (ROOT / file).exists()]
        found += [f"{name}: there is no {link.relative_to(ROOT)}" for link in links if not link.exists()]
        if name.name in ("architecture.md", "security.md", "CONTRIBUTING.md"):
            named = re.findall(r"`((?:\w+(?:::|\.))?[a-zA-Z]*[a-z][A-Z]\w+)`", text)
            found += [f"{name}: nothing is called {one}" for one in sorted(set(named) - EXAMPLES)
                      if not set(re.findall(r"\w+", one)) <= words]
    return found + telemetry_doc.faults()
