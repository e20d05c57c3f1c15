"""Plays one scenario, inside its sandbox: python3 -m harness.scenario.play NAME OUT. Leaves OUT/result.json."""
import json
import os
import runpy
import sys
import time
import traceback
from pathlib import Path

from harness.machine.prefix import copy_of_prepared
from harness.places import SCENARIOS
from harness.scenario.scene import Scene
from harness.waiting import Hang

LONGEST = ["other-outcomes", "migrate-not-now", "repair-blocked", "machine-faults", "download-gives-up",
           "telemetry-down", "gallery", "accessible", "report-faults", "download-cancel", "update-replies",
           "bad-folders"]


def names() -> list[str]:
    """The long ones first, so that none is left alone at the end of a suite."""
    return sorted(sorted(file.stem.replace("_", "-") for file in SCENARIOS.glob("*.py")),
                  key=lambda name: LONGEST.index(name) if name in LONGEST else len(LONGEST))


def load(name: str) -> dict:
    """A scenario's file: its docstring says what it shows, its function `play` does it."""
    return runpy.run_path(str(SCENARIOS / (name.replace("-", "_") + ".py")))


def summary(name: str) -> str:
    return load(name)["__doc__"].strip().split("\n")[0]


def write_result(out: Path, name: str, exit_code: int | None, seconds: float, checks: list[dict]) -> None:
    result = {"scenario": name, "exit_code": exit_code, "seconds": round(seconds, 1), "checks": checks}
    unfinished = out / "result.json.new"
    unfinished.write_text(json.dumps(result, indent=2, ensure_ascii=False) + "\n", "utf-8")
    unfinished.rename(out / "result.json")


def play(name: str, out: Path) -> bool:
    started = time.monotonic()
    with copy_of_prepared(name, os.environ["DISPLAY"]) as prefix:
        scene = Scene(prefix, out)
        try:
            load(name)["play"](scene)
        except Hang as hang:
            scene.checks.that("ends in time", False, f"{hang}\n{scene.runs.unfinished()}")
        except Exception:
            scene.checks.that("the scenario runs to its end", False, traceback.format_exc())
        rows = scene.checks.rows
        held = all(row["ok"] for row in rows)
        if not held:
            scene.keep_evidence()
        log = scene.runs.main.log if scene.runs.main else None
        write_result(out, name, log.exit_code if log else None, time.monotonic() - started, rows)
    return held


if __name__ == "__main__":
    sys.exit(0 if play(sys.argv[1], Path(sys.argv[2])) else 1)
