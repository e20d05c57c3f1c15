"""What ./bench.sh does: builds the library as it ships, measures it in a sandbox and writes out/bench.json. With
--document it writes the table of docs/performance.md from that, without measuring again."""
import argparse
import json
import os
import re
import subprocess
import sys

from harness.building.build import build
from harness.machine.display import virtual_display
from harness.machine.prefix import prepare
from harness.machine.sandbox import sandboxed
from harness.places import BENCH_RESULT, ROOT


DOCUMENT = ROOT / "docs/performance.md"


def document() -> int:
    """Each figure in a row, with its aim and the ratio that is measured of it."""
    figures = json.loads(BENCH_RESULT.read_text("utf-8"))
    rows = ["| Key | Figure | Value | Aim | Ratio |", "|---|---|---|---|---|"]
    for key, figure in figures.items():
        if key.removesuffix("_ratio") in figures.keys() - {key} and "aim_met" not in figure:
            continue  # is a column of that row
        ratio = figures.get(key + "_ratio")
        aim = next((f"{word} {figure[name]:g}, {'met' if figure['aim_met'] else 'MISSED'}"
                    for name, word in (("at_most", "at most"), ("at_least", "at least")) if name in figure), "")
        shown = f"{ratio['value']:.2f}: {ratio['meaning']}" if ratio else ""
        value = f"{figure['value']:,.0f}" if figure["value"] >= 10000 else f"{round(figure['value'], 6):.4g}"
        rows.append(f"| `{key}` | {figure['meaning']} | {value} {figure['unit']} | {aim} | {shown} |")
    text = DOCUMENT.read_text("utf-8")
    DOCUMENT.write_text(re.sub(r"(?:^\|.*\n)+", "\n".join(rows) + "\n", text, count=1, flags=re.M), "utf-8")
    return 0


def main() -> int:
    parser = argparse.ArgumentParser(prog="./bench.sh", description="Measures the library as it ships.")
    parser.add_argument("--document", action="store_true",
                        help="write docs/performance.md from the last run's figures, without measuring again")
    if parser.parse_args().document:
        if not BENCH_RESULT.exists():
            parser.error(f"there is no {BENCH_RESULT.relative_to(ROOT)}: measure first")
        return document()
    build("release", "bench")
    BENCH_RESULT.parent.mkdir(exist_ok=True)
    with virtual_display() as display:
        prepare(display)
        code = subprocess.run(sandboxed([sys.executable, "-m", "harness.wine", "bench"]), cwd=ROOT,
                              env=os.environ | {"DISPLAY": display}).returncode
    if code == 0:
        print(f"written to {BENCH_RESULT.relative_to(ROOT)}")
    return code


if __name__ == "__main__":
    sys.exit(main())
