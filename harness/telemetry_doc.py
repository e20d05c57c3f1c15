"""Writes docs/telemetry.md from the tables of the code and from what the scenarios' services received, and compares it
with both: python3 -m harness.telemetry_doc writes it, after ./test.sh has filled out/."""
import json
import re
import sys
from pathlib import Path

from harness.places import OUT, ROOT
from harness.scenario import play

DOCUMENT = ROOT / "docs/telemetry.md"
SOURCES = ("core", "state", "reporting", "telemetry")
# The files that name the events' own keys.
TABLES = ("core/rules/RunEvents.cpp", "core/rules/RunEvents.h", "core/RunTelemetry.cpp", "core/Download.cpp",
          "state/RepairCleanup.cpp", "state/rules/MeridianMessages.cpp", "telemetry/rules/InstallRecord.h",
          "reporting/ExceptionHandler.cpp")
GROUPS = ("inst", "repr", "uinst")
ABSENT = "not shown by scenarios"

KEYS = {
    "action": "what the engine was started for (its number: 3 uninstall, 5 install)",
    "apvr": "version of the client's desktop program before the repair",
    "auto_retry": "whether the download is tried again by itself",
    "autopatch": "whether another installer started this one as its update",
    "bgvr": "version of the client's service before the repair",
    "boot": "when the machine was started",
    "byte": "bytes of the download",
    "cmd": "the process's command line, scrubbed, the login code hidden",
    "cnst": "why it was cancelled",
    "code": "the crash's signature: the low byte of a hash of the modules on the stack, and the low 16 bits of the "
            "fault's address",
    "destination_name": "where a message is shown",
    "download_id": "of one attempt at a download",
    "dskm": "media under the install drive, such as SSD; empty if unknown",
    "dtyp": "whether the install drive is the system's",
    "ecod": "the error, eight hexadecimal digits",
    "ectx": "what the engine reported to the callback that failed; see below",
    "einv": "whether the error calls for investigation (core/rules/ErrorGroups.cpp)",
    "elevated": "whether the process has elevated rights",
    "emsg": "the group of the error (core/rules/ErrorGroups.cpp)",
    "endt": "when it ended",
    "enst": "how it ended",
    "eopr": "the operation in which the error arose (core/engine/rules/Operations.h)",
    "estr": "the error in words; its code, or nothing, if there are none",
    "exe": "file name of the program that crashed",
    "harrier": "the bundle variable HARRIER_ENABLE",
    "ignore_installed": "the bundle variable IGNORE_ALREADY_INSTALLED",
    "inst": "new or repair",
    "installation_type": "the product",
    "intm": "when the package began to run",
    "is_development": "only on a machine that trusts the test certificate",
    "item_platform": "always pc",
    "launch": "the bundle variable PDX_LAUNCH_CLIENT",
    "lhvr": "version of the client's launch helper before the repair",
    "link": "address of the download",
    "lnvr": "version of the client's launcher before the repair",
    "msg_id": "what is shown or was pressed (state/rules/MeridianMessages.h)",
    "path": "whether the install folder is the default one",
    "pct": "per cent of the download",
    "percent": "per cent of the download",
    "pgid": "the page of a message",
    "repair": "the bundle variable PDX_REPAIR",
    "report_id": "id of the error report, if one was sent",
    "service": "always sable",
    "shut": "always 0",
    "status": "what happened",
    "status_code": "the same more closely: new, repair, success, a reason or an error",
    "strt": "when it began",
    "stst": "new or repair",
    "track": "the migration's group; its other members are always empty",
    "type": "always in_service",
    "uitm": "when the package began to be removed",
    "uninstallation_type": "the product",
    "vc10x86ver": "version of a Visual C++ runtime", "vc11x86ver": "version of a Visual C++ runtime",
    "vc12x86ver": "version of a Visual C++ runtime", "vc14x64ver": "version of a Visual C++ runtime",
    "vc14x86ver": "version of a Visual C++ runtime",
    "vers": "version of the installer",
    "with_authcode": "whether a login code was given; the code itself is never sent",
}
TRACK = {"trackingtag", "environment", "target_games_in_collection", "target_subs", "target_min_hours_played",
         "target_traffic_rules"}
COMMON = {"core", "item_id", "item_id_type"}  # of each Tally event

HEAD = """# Telemetry

Written by `python3 -m harness.telemetry_doc`, not by hand; `./test.sh` compares it with the code and with what the
services of all scenarios received. Names and keys come from `core/rules/RunEvents.cpp`, `telemetry/rules/`,
`state/rules/MeridianMessages.cpp` and the few places that send an event of their own. Each example was received from a
run of the real engine under Wine; the machine and the services are those of the test.

## When something is sent

There are two services. Brisk takes dotted names with short keys, Tally four plain names with a status. Events are held
back until sending is enabled (`enableTelemetry`). The user's click on install enables it. A silent install, an
uninstall and an update enable sending after the detection. A repair and a migration enable it at their start. If the
older client is installed, a start with a login code enables it at once. What is still held at the end is lost, on
purpose. A crash is sent at once. Each back end has a thread that posts batches (`telemetry/TelemetrySender.h`); a run
waits for the last post of each. The addresses are the keys `telemetry.brisk.url` and `telemetry.tally.url` of the
configuration.

## A player's name

The profile folder in a path is replaced by one with `####` in place of the user's name (`platform/rules/Scrub.h`). The
login code becomes `####` (`hideAuthcode`).

| Sent | Scrubbed |
|---|---|
| `cmd` | the profile folder and the login code |
| `estr` of an error that the engine reports with a text | the profile folder |
| logs in an error report | the profile folder, line by line, and the login code |
| `ectx` | **nothing**: it carries paths and texts as the engine and the package report them |
| `link`, and `psrc` in `ectx` | nothing; an address of the bundle, or a local path where the package comes from one |

A name that is spelt without the profile folder stays everywhere. So does one in a package's own messages within
`ectx`: these are `mesg` and `args` of `msiact`, `msiactdata`, `msicommon` and the like.

## What every event carries

`machash` is a hash of the machine's identity. `session` is a random id that all processes of one install share. `ityp`
is thin or thick, `envt` the deployment. `arch`, `cntry`, `lang` and `os` describe the system, `vers` is the installer's
version, `ts` the time. `m`, `g` and `s` are the three words of the event's name, `param` has its keys. `app`, `build`
and `plat` are constants. On a machine that trusts the test certificate, `param` of each event has `is_development`. An
event of a cancelled run has `report_id` if a report was sent, which no scenario shows. A Tally event has `core` with
its name, number and time, and two constants. Its post has the session as `sid` and `pid`, the locale as `loc`.
"""


def sources(*names: str):
    files = [ROOT / name for name in names] or [file for folder in SOURCES for file in (ROOT / folder).rglob("*.cpp")]
    return [file.read_text("utf-8") for file in files]


def known_names() -> set[str]:
    """The events that the code names; "{group}" stands for three."""
    code = "\n".join(sources())
    brisk = set(re.findall(r'"((?:inst|erro)\.[a-z{}]+\.[a-z]+)"', code))
    tally = set(re.findall(r'(?:tally\(\s*|tallySender, )"(\w+)"', code))
    tally |= {name for pair in re.findall(r'tallyNameOf.*\? "(\w+)" : "(\w+)"', code) for name in pair}
    return {name.replace("{group}", group) for name in brisk for group in GROUPS} | tally


def known_keys() -> set[str]:
    code = "\n".join(sources(*TABLES))
    return set(re.findall(r'(?:\{|params\[|[aA]ttributes\[)"(\w+)"[,\]]', code)) - TRACK


def context_keys() -> dict[str, set[str]]:
    """The keys of `ectx`, each with the arguments of the callbacks that are kept under it."""
    found: dict[str, set[str]] = {}
    for text in sources():
        for argument, key in re.findall(r'\{"(\w+)",\s*"(\w+)",', text):
            found.setdefault(key, set()).add(argument)
        for key, argument in re.findall(r'\{"(\w{4})", (dw\w+)\}', text):
            found.setdefault(key, set()).add(argument)
    return found


def received() -> dict[str, list[dict]]:
    """All events by name, in the order of the scenarios' names; what earlier scenarios left in out/ does not count."""
    events: dict[str, list[dict]] = {}
    for file in filter(Path.exists, (OUT / name / "requests.jsonl" for name in sorted(play.names()))):
        for line in file.read_text("utf-8").splitlines():
            request = json.loads(line)
            if isinstance(request["body"], str):
                continue  # empty, or cut off
            if request["service"] == "brisk":
                for event in request["body"]:
                    events.setdefault(f"{event['m']}.{event['g']}.{event['s']}", []).append(event)
            elif request["service"] == "tally":
                for event in (event for context in request["body"]["contexts"] for event in context["events"]):
                    events.setdefault(event["core"]["en"], []).append(event)
    return events


def attributes(name: str, event: dict) -> dict:
    return event.get("param", {}) if "." in name else {key: event[key] for key in event.keys() - COMMON}


def keys_of(name: str, events: list[dict]) -> set[str]:
    return {key for event in events for key in attributes(name, event)}


def context_seen(events: dict[str, list[dict]]) -> set[str]:
    return {key for name, all_of in events.items() for event in all_of
            for key in attributes(name, event).get("ectx", {})}


def shown(value: object) -> str:
    text = json.dumps(value, ensure_ascii=False)
    return "`" + (text if len(text) <= 70 else text[:67] + "…").replace("|", "\\|") + "`"


def section(name: str, events: list[dict]) -> str:
    rows = [f"### `{name}`\n"]
    if not events:
        return rows[0] + f"\n{ABSENT}\n"
    keys = sorted(keys_of(name, events))
    if not keys:
        return rows[0] + "\nNo keys of its own.\n"
    fullest = max(events, key=lambda event: len(attributes(name, event)))
    rows += ["| Key | Meaning | Example |", "|---|---|---|"]
    for key in keys:
        example = next(attributes(name, event)[key] for event in [fullest, *events] if key in attributes(name, event))
        rows.append(f"| `{key}` | {KEYS.get(key, '')} | {shown(example)} |")
    return "\n".join(rows) + "\n"


def text() -> str:
    events = received()
    names = sorted(known_names() | events.keys(), key=lambda name: ("." not in name, name))
    whole = json.dumps(events["inst.dnld.succ"][0], indent=2, ensure_ascii=False)
    tally = json.dumps(next(event for event in events["download"]), indent=2, ensure_ascii=False)
    failed = max((event["param"] for event in events["inst.inst.fail"]), key=lambda param: len(str(param["ectx"])))
    context = json.dumps(failed["ectx"], indent=2, ensure_ascii=False)
    seen, kept = context_seen(events), context_keys()
    rows = "\n".join(f"| `{key}` | {', '.join(sorted(kept.get(key, {'a message of the package'})))} | "
                     f"{'yes' if key in seen else ABSENT} |" for key in sorted(kept.keys() | seen))
    fence = "```"
    return "\n".join([
        HEAD, "A whole Brisk event:\n", f"{fence}json\n{whole}\n{fence}\n", "A whole Tally event:\n",
        f"{fence}json\n{tally}\n{fence}\n", "## The events of Brisk\n",
        *(section(name, events.get(name, [])) for name in names if "." in name), "## The events of Tally\n",
        *(section(name, events.get(name, [])) for name in names if "." not in name), "## The context of an error\n",
        "`ectx` holds what the callbacks since the last Begin reported, the latest value of each key. The package can",
        "add keys of its own through its message channel. The last messages of Windows Installer are kept under a word",
        "for their kind, such as `msiact`.\n", "| Key | Argument of the engine's callback | Received |",
        "|---|---|---|", rows, "\nOne of a failed install:\n", f"{fence}json\n{context}\n{fence}", ""])


def faults() -> list[str]:
    """What the document lacks of the code and of what was received, and what it has of neither."""
    document = DOCUMENT.read_text("utf-8")
    events, found = received(), []
    parts = re.split(r"^### `([\w.]+)`\n", document.split("\n## The context of an error")[0], flags=re.M)
    sections = dict(zip(parts[1::2], parts[2::2]))
    found += [f"{name}: is sent, and not in the document" for name in (events.keys() | known_names()) - sections.keys()]
    found += [f"{name}: is in the document, and not in the code" for name in sections.keys() - known_names()]
    for name, body in sections.items():
        written, sent = set(re.findall(r"^\| `(\w+)` \|", body, re.M)), keys_of(name, events.get(name, []))
        found += [f"{name}.{key}: was received, and is not in the document" for key in sent - written]
        found += [f"{name}.{key}: is in the document, and was not received" for key in written - sent]
        if name not in events and ABSENT not in body:
            found.append(f"{name}: was not received, and is not marked so")
        found += [f"{name}.{key}: has no meaning" for key in written - KEYS.keys()]
    found += [f"{key}: is in the code's tables, and not in the document"
              for key in known_keys() if f"| `{key}` |" not in document]
    table = document.split("\n## The context of an error")[-1]
    rows = dict(re.findall(r"^\| `(\w+)` \| .* \| ([\w ]+) \|$", table, re.M))
    found += [f"ectx.{key}: is kept, and not in the document"
              for key in (context_keys().keys() | context_seen(events)) - rows.keys()]
    found += [f"ectx.{key}: was received, and is marked otherwise"
              for key in context_seen(events) if rows.get(key) == ABSENT]
    return sorted(found)


def main() -> int:
    DOCUMENT.write_text(text(), "utf-8")
    left = faults()
    print("\n".join(left) or f"wrote {DOCUMENT.relative_to(ROOT)}")
    return 1 if left else 0


if __name__ == "__main__":
    sys.exit(main())
