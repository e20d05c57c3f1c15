"""The strings of the window, as a person reads them."""
import re
import xml.etree.ElementTree as xml

from harness.places import ROOT


def plain(markup: str) -> str:
    """The words of a marked-up text."""
    return " ".join(re.sub(r"<.*?>", " ", markup).split())


def all_texts(language: str) -> dict[str, str]:
    """The strings of a language as they are written, by their keys in small letters."""
    rows = xml.parse(ROOT / f"resources/strings/{language.upper()}.xml").iter("locString")
    return {row.get("Key").lower(): row.text for row in rows}


def text(key: str, language: str = "EN") -> str:
    """A string without its markup; keys are in any case."""
    return plain(all_texts(language)[key.lower()])
