"""What clang-tidy is given: sources merged into few units, since most of its time goes into the headers they share."""
import re
import subprocess
from pathlib import Path

from harness.places import BUILD, ROOT

WORK = BUILD / "lint"  # below the root, where clang-tidy finds its configuration
COMPILER = "i686-w64-mingw32-g++-posix"
TEST_LIBRARY = Path("/usr/src/googletest")
GUMBO = ROOT / "cmake/gumbo/node_modules/gumbo-parser/deps/gumbo-parser/src"
DEFINES = ("UNICODE", "_UNICODE", "NOMINMAX", "WIN32_LEAN_AND_MEAN", "_WIN32_WINNT=0x0601", "WINVER=0x0601")


def flags() -> list[str]:
    """As in the cross build, whose compiler has the headers. harness/tidy/ has one that clang 14 cannot parse."""
    headers = WORK / "headers"
    headers.mkdir(parents=True, exist_ok=True)
    for name in ("cpptoml.h", "nlohmann", "fmt"):
        if not (headers / name).is_symlink():
            (headers / name).symlink_to(f"/usr/include/{name}")
    place = subprocess.run([COMPILER, "-print-file-name=include/c++"], capture_output=True, text=True, check=True)
    standard = Path(place.stdout.strip())
    system = (ROOT / "harness/tidy", standard, standard / "i686-w64-mingw32", headers, GUMBO,
              TEST_LIBRARY / "googletest/include", TEST_LIBRARY / "googlemock/include")
    return ["--target=i686-w64-mingw32", "-std=c++20", "-nostdinc++", *(f"-D{define}" for define in DEFINES),
            *(f"-isystem{folder}" for folder in system), f"-I{ROOT}"]


def own_names(source: str) -> set[str]:
    """The names that a source defines for itself alone, which a second source of the same unit may not have too."""
    text = (ROOT / source).read_text("utf-8")
    inside = "\n".join(re.findall(r"^namespace \{\n(.*?)^\}  // namespace$", text, re.M | re.S))
    names = re.findall(r"^(?!using|namespace|static_assert|TEST)(?=\w).*?\b(?!struct)(\w+)(?= ?[({=;[]| final| ?:[^:])",
                       inside, re.M)
    names += re.findall(r"^using (\w+) =", inside, re.M)
    return {*names, *re.findall(r"^int .*\b(w?main|WinMain)\(", text, re.M)}


def units(name: str, sources: list[str]) -> list[Path]:
    """Files of that name that include the sources; as few as the sources' own names allow."""
    merged: list[tuple[list[str], set[str]]] = []
    for source in sources:
        names = own_names(source)
        unit = next((unit for unit in merged if not unit[1] & names), None)
        if unit is None:
            unit = ([], set())
            merged.append(unit)
        unit[0].append(source)
        unit[1].update(names)
    WORK.mkdir(parents=True, exist_ok=True)
    files = [WORK / f"{name}{number}.cpp" for number in range(len(merged))]
    for file, (members, _) in zip(files, merged):
        file.write_text("".join(f'#include "{member}"\n' for member in members))
    return files
