"""Plays scenarios, each in its sandbox and on its display, and prints their results for people."""
import contextlib
import json
import os
import shutil
import subprocess
import sys
import time

from harness.machine.display import virtual_display
from harness.machine.sandbox import sandboxed
from harness.places import OUT, ROOT
from harness.scenario.play import write_result

# Once in hundreds of starts a process under Wine gets no window, and its engine gives up; or one of Wine's own does
# not start, and the engine ends with no last line.
WINES_FAULTS = "Error 0x80004005: Failed to create window.", "failed to map the shared user data"
CONCURRENT = 4  # scenarios at once: they wait most of their time
BOUND = 420  # seconds for one scenario; each run of the engine in it has a tighter bound of its own


def play(name: str, show: bool = False) -> dict:
    """Plays one scenario and gives its result; plays it `twice` if Wine was at fault. The display is a virtual one of
    its own, or with `show` the caller's."""
    result = _play(name, show)
    logs = [file.read_text("utf-8", "replace") for file in (OUT / name).iterdir() if file.suffix in (".log", ".txt")]
    fault = next((fault for fault in WINES_FAULTS if any(fault in text for text in logs)), "")
    if held(result) or not fault:
        return result
    print(f"\n{name}: Wine failed ({fault}); the scenario is played again, out/{name}.wine-failed has the first play",
          flush=True)
    kept = OUT / (name + ".wine-failed")
    shutil.rmtree(kept, ignore_errors=True)
    (OUT / name).rename(kept)
    return _play(name, show) | {"twice": True}


def _play(name: str, show: bool) -> dict:
    out = OUT / name
    shutil.rmtree(out, ignore_errors=True)
    out.mkdir(parents=True)
    started = time.monotonic()
    with contextlib.nullcontext(os.environ.get("DISPLAY", "")) if show else virtual_display() as display:
        command = sandboxed([sys.executable, "-m", "harness.scenario.play", name, str(out)])
        with (out / "stage.log").open("w") as output:
            process = subprocess.Popen(command, cwd=ROOT, env=os.environ | {"DISPLAY": display},
                                       stdout=output, stderr=subprocess.STDOUT)
            try:
                process.wait(timeout=BOUND)
                ending = f"its process ended with {process.returncode}"
            except subprocess.TimeoutExpired:
                ending = f"still running after {BOUND} s"
            finally:
                process.kill()
                process.wait()
    if not (out / "result.json").exists():
        last = [file for file in (out / "engine.log", out / "stage.log") if file.exists()][0]
        tail = "\n".join(last.read_text("utf-8", "replace").splitlines()[-20:])
        write_result(out, name, None, time.monotonic() - started,
                     [{"name": "the scenario runs to its end", "ok": False, "detail": f"{ending}\n{tail}"}])
    result = json.loads((out / "result.json").read_text("utf-8"))
    if process.returncode != (0 if held(result) else 1):
        result["checks"].append({"name": "the scenario cleans up", "ok": False, "detail": ending})
        write_result(out, name, result["exit_code"], result["seconds"], result["checks"])
    return result


def held(result: dict) -> bool:
    return bool(result["checks"]) and all(check["ok"] for check in result["checks"])


def print_result(result: dict, summary: str) -> None:
    """A table of the scenario's checks, and where to look."""
    width = max((len(check["name"]) for check in result["checks"]), default=0)
    print(f"\n{result['scenario']}: {summary}")
    for check in result["checks"]:
        detail = check["detail"] if not check["ok"] else check["detail"].split("\n")[0][:100]
        indented = detail.replace("\n", "\n" + " " * 8)
        print(f"  {'✓' if check['ok'] else '✗'} {check['name']:<{width}}  {indented}".rstrip())
    code = "none" if result["exit_code"] is None else f"0x{result['exit_code']:08x}"
    print(f"  {'passed' if held(result) else 'FAILED'}: engine's exit code {code}, {result['seconds']} s, "
          f"see out/{result['scenario']}/engine.log", flush=True)
