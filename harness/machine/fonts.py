"""Fonts for the glyphs that the library's own faces lack: Thai, Japanese, Korean, Chinese.

Windows takes them from its own fonts; Wine from what is linked to a face. Wine fits a linked font to the face by the
mean character width that both files declare: Chinese signs would be squeezed to two thirds, Thai letters spread. The
copies made here declare the face's own mean width, and their glyphs stay as they are.
"""
import struct
from pathlib import Path

from harness.places import ROOT

FACES = {"TT Commons": ROOT / "resources/fonts/sans.ttf", "Apercu Mono Pro": ROOT / "resources/fonts/mono.otf"}
CJK = Path("/usr/share/fonts/opentype/noto")
THAI = Path("/usr/share/fonts/truetype/tlwg")
FILES = [CJK / "NotoSansCJK-Regular.ttc", CJK / "NotoSansCJK-Bold.ttc", THAI / "Loma.ttf", THAI / "Loma-Bold.ttf"]
# The entries of a face in the registry's table of linked fonts, in the order of asking; Wine finds the bold file by
# the family.
LINKS = ["NotoSansCJK-Regular.ttc,Noto Sans CJK JP", "NotoSansCJK-Regular.ttc,Noto Sans CJK SC",
         "NotoSansCJK-Regular.ttc,Noto Sans CJK KR", "Loma.ttf,Loma"]


def install(folder: Path) -> None:
    """Puts the copies into the folder, which is asked before the machine's own fonts."""
    share = _mean_width(FACES["TT Commons"].read_bytes(), 0)
    for file in FILES:
        (folder / file.name).write_bytes(_with_mean_width(file.read_bytes(), share))


def _fonts(data: bytes) -> list[int]:
    """Where each font of a file, or of a collection, begins."""
    if data[:4] != b"ttcf":
        return [0]
    count, = struct.unpack_from(">I", data, 8)
    return list(struct.unpack_from(f">{count}I", data, 12))


def _table(data: bytes, font: int, tag: bytes) -> int:
    count, = struct.unpack_from(">H", data, font + 4)
    for row in range(font + 12, font + 12 + 16 * count, 16):
        if data[row:row + 4] == tag:
            return struct.unpack_from(">I", data, row + 8)[0]
    raise ValueError(f"no table {tag.decode()} in the font")


def _units(data: bytes, font: int) -> int:
    return struct.unpack_from(">H", data, _table(data, font, b"head") + 18)[0]


def _mean_width(data: bytes, font: int) -> float:
    """As a share of the font's size."""
    return struct.unpack_from(">h", data, _table(data, font, b"OS/2") + 2)[0] / _units(data, font)


def _with_mean_width(data: bytes, share: float) -> bytes:
    changed = bytearray(data)
    for font in _fonts(data):
        struct.pack_into(">h", changed, _table(data, font, b"OS/2") + 2, round(share * _units(data, font)))
    return bytes(changed)
