"""The strings of the window, as a person reads them."""
import html
import re
import xml.etree.ElementTree as xml
from pathlib import Path

from harness.places import CONFIGURATIONS


def plain(markup: str) -> str:
    """The words of a marked-up text, as the window publishes them. A line break ends the line, other marks separate no
    words, and white space is one blank."""
    lines = (re.sub(r"<.*?>", "", line, flags=re.S) for line in re.split(r"<br\b.*?>", markup, flags=re.I | re.S))
    return "\r\n".join(" ".join(html.unescape(line).split()) for line in lines).strip()


def all_texts(language: str, deployment: Path = CONFIGURATIONS) -> dict[str, str]:
    """The strings of a language as they are written, by their keys in small letters."""
    rows = xml.parse(deployment / f"strings/{language.upper()}.xml").iter("locString")
    return {row.get("Key").lower(): row.text for row in rows}


def text(key: str, language: str = "EN") -> str:
    """A string without its markup; keys are in any case."""
    return plain(all_texts(language)[key.lower()])
