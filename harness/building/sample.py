"""The sample bundle's WiX source, read as the toolset's compiler reads it, and compiled by that compiler."""
import re
import subprocess
import xml.etree.ElementTree as xml

from harness.places import BUILD, CANDLE, GUIDE, ROOT, SAMPLE

WIX = "{http://schemas.microsoft.com/wix/2006/wi}"
UTIL = "{http://schemas.microsoft.com/wix/UtilExtension}"

_THICK = {"Version": "1.2.3.4", "FileName": "PalisadeSetup.exe", "Library": "PalisadeBootstrapper.dll",
          "VersionLibrary": "version.dll", "ClientPackage": "PalisadeApp.msi"}
VARIANTS = {"thick": _THICK, "thick with a runtime": _THICK | {"Runtime": "vc_redist.x86.exe"},
            "thin": _THICK | {"ClientAddress": "https://cdn.example/PalisadeApp.msi"}}


def read(definitions: dict[str, str]) -> xml.Element:
    """The bundle of sample/Bundle.wxs: its directives carried out, its references to definitions replaced."""
    source = _parse("Bundle.wxs")
    _preprocess(source, definitions)
    return source.find(WIX + "Bundle")


def compiled(variant: str) -> tuple[bool, str]:
    """Whether the toolset's compiler takes a variant of the sample without a warning, and what it says."""
    target = (BUILD / "sample.wixobj").relative_to(ROOT)  # an absolute path looks like an option to the compiler
    extension = CANDLE.with_name("WixUtilExtension.dll").relative_to(ROOT)
    defined = [f"-d{name}={value}" for name, value in VARIANTS[variant].items()]
    done = subprocess.run(["mono", CANDLE, "-nologo", "-pedantic", "-wx", "-ext", extension, *defined, "-out", target,
                           (SAMPLE / "Bundle.wxs").relative_to(ROOT)], cwd=ROOT, capture_output=True, text=True)
    text = done.stdout + done.stderr
    return done.returncode == 0 and "warning" not in text, text


def unexplained() -> set[str]:
    """The bundle variables of the library that the guide for bundle authors does not name."""
    names = (ROOT / "core/rules/VariableNames.h").read_text("utf-8")
    return set(re.findall(r'= L"(\w+)"', names)) - set(re.findall(r"`(\w+)`", GUIDE.read_text("utf-8")))


def _parse(name: str) -> xml.Element:
    return xml.parse(SAMPLE / name, xml.XMLParser(target=xml.TreeBuilder(insert_pis=True))).getroot()


def _preprocess(element: xml.Element, definitions: dict[str, str]) -> None:
    for name, value in element.items():
        element.set(name, re.sub(r"\$\(var\.(\w+)\)", lambda found: definitions[found[1]], value))
    children, holds = [], []  # of the conditions that are open, from the outer one on
    for child in element:
        directive, _, argument = child.text.strip().partition(" ") if child.tag is xml.PI else ("", "", "")
        if directive == "ifdef":
            holds.append(argument in definitions)
        elif directive == "else":
            holds[-1] = not holds[-1]
        elif directive == "endif":
            holds.pop()
        elif directive == "include" and all(holds):
            included = _parse(argument)
            _preprocess(included, definitions)
            children += included
        elif directive not in ("", "include"):
            raise ValueError(f"the harness knows no directive {directive}")
        elif not directive and all(holds):
            _preprocess(child, definitions)
            children.append(child)
    element[:] = children
