"""The strings of the window, as a person reads them."""
import re
import xml.etree.ElementTree as xml

from harness.places import ROOT


def text(key: str, language: str = "EN") -> str:
    """A string without its markup; keys are in any case."""
    for row in xml.parse(ROOT / f"resources/strings/{language}.xml").iter("locString"):
        if row.get("Key").lower() == key.lower():
            return " ".join(re.sub(r"<.*?>", " ", row.text).split())
    raise KeyError(key)
