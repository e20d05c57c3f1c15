"""No swapped file is run elevated: one that the maker did not sign, another process holds or a link leads to."""
import itertools
import json
import shutil

from harness.building.signing import MAKER, sign
from harness.places import PROBE, VERSION_LIBRARY
from harness.scenario.client import EXCHANGE
from harness.scenario.machine import TEMP
from harness.scenario.registry import check_changes, listing

SETUP, VERSION = "PalisadeSetup.exe", "version.dll"
STRANGER, NEARLY = "Hollowmere Ltd.", "Corvane Works, inc."
NO_SIGNATURE = "File was not signed [last error: 2148204800]."
CHANGED = "Error is: 0x80096010.\n"


def verified(path):
    return "verifyEmbeddedSignature", f"Successfully verified that file [{path}] was signed and signature is verified."


def not_verified(path, why):
    return [("verifyEmbeddedSignature", f"Failed to verify embedded signature for file [{path}]: {why}"),
            ("isValidPalisadeCertificate", f"Embedded signature missing or invalid for file: {path}")]


def signed_by(path, name):
    return [verified(path),
            ("isValidPalisadeCertificate", "Certificate was valid but incorrect subject name (i.e. wrong certificate) "
             f"for file: {path}; Subject name: {name}")]


def right(path):
    return [verified(path), ("isValidPalisadeCertificate", f"The file has a valid Palisade certificate: {path}")]


# Who signs it, and in whose name the certificate is issued where that is another.
SIGNERS = {"stranger's": (STRANGER,), "nearly the maker's": (NEARLY,), "issued by a stranger": (MAKER, STRANGER),
           "stranger's, issued by the maker": (STRANGER, MAKER)}
# What a file can be: what is logged of its signature once it is locked.
SIGNATURES = {
    "right": right,
    "issued by a stranger": right,
    "unsigned": lambda path: not_verified(path, NO_SIGNATURE),
    "changed": lambda path: not_verified(path, CHANGED),
    "stranger's": lambda path: signed_by(path, STRANGER),
    "stranger's, issued by the maker": lambda path: signed_by(path, STRANGER),
    "nearly the maker's": lambda path: signed_by(path, NEARLY),
}
# And why it cannot be locked.
REFUSALS = {"missing": "File not found. (00000002)", "held": "Sharing violation. (00000020)",
            "reached by a link": "Success. (00000000)"}


def counted(lines):
    """Repeated lines once, with their number."""
    return [(len(list(group)), *line) for line, group in itertools.groupby(lines)]


def make(target, source, kind):
    """Puts a file of that kind there."""
    if kind == "missing":
        return
    if kind in ("unsigned", "changed"):
        shutil.copyfile(source, target)
    if kind != "unsigned":
        sign(source, target, *SIGNERS.get(kind, ()))
    if kind == "changed":
        content = bytearray(target.read_bytes())
        content[0x400] ^= 1
        target.write_bytes(content)


def expected(path, kind, trusting):
    """Whether such a file is accepted, and the lines."""
    if kind in REFUSALS:
        return False, [("LockFile", f"Failed to lock file {path}: {REFUSALS[kind]}")] * 25 + \
            [("LockElevatedBinaries", f"Failed to lock {path}")]
    lines = [("LockFile", f"Locked {path}"), *SIGNATURES[kind](path)]
    good = SIGNATURES[kind] is right
    if good or not trusting:
        return good, lines
    return True, [*lines, ("LockElevatedBinaries", f"Overriding signature verification failure for {path}")]


class Attempt:
    """The folders of one elevated start, as the engine makes them below the temporary one."""

    def __init__(self, scene, name, executable, planted=None):
        self.scene, self.name = scene, name
        self.folder = f"{TEMP}\\{name}"
        self.own, self.elevated = scene.machine.path(self.folder) / ".ba", scene.machine.path(self.folder) / ".be"
        for folder in (self.own, self.elevated):
            folder.mkdir(parents=True)
        shutil.copyfile(PROBE, self.own / "probe.exe")
        make(self.own / VERSION, VERSION_LIBRARY, "right")
        make(self.elevated / SETUP, PROBE, executable)
        if planted:
            make(self.elevated / VERSION, VERSION_LIBRARY, planted)

    def lock(self, executable=SETUP):
        """Locks and gives what was recorded; no file that was there is written over."""
        before = {file.name: file.read_bytes() for file in self.elevated.iterdir()}
        record = f"{EXCHANGE}\\{self.name}.json"
        self.scene.machine.prefix.run(f"{self.folder}\\.ba\\probe.exe", "lock", executable, record)
        after = {file.name: file.read_bytes() for file in self.elevated.iterdir()}
        self.scene.checks.equal(f"{self.name}: files that are replaced",
                               [name for name in before if after.get(name) != before[name]], [])
        found = json.loads(self.scene.machine.read(record))
        return found["locked"], found["held"], [tuple(line) for line in found["lines"]], found["milliseconds"]

    def check(self, executable, planted, trusting=False):
        locked, held, lines, milliseconds = self.lock()
        kinds = {SETUP: executable, VERSION: planted or "right"}
        wanted = {name: expected(f"{self.folder}\\.be\\{name}", kind, trusting) for name, kind in kinds.items()}
        unlocked = [name for name, kind in kinds.items() if kind in REFUSALS]
        self.scene.checks.equal(f"{self.name}: whether it may be run", locked, all(good for good, _ in wanted.values()))
        self.scene.checks.equal(f"{self.name}: the lines", counted(lines),
                               counted(line for _, expected_lines in wanted.values() for line in expected_lines))
        self.scene.checks.equal(f"{self.name}: what nobody else can write to or delete", held,
                               [name for name, kind in kinds.items() if kind not in ("missing", "reached by a link")])
        self.scene.checks.that(f"{self.name}: a second for each file that cannot be locked",
                         milliseconds >= 1000 * len(unlocked), milliseconds)


ATTEMPTS = [  # what it is called, the executable, the library planted beside it
    ("right", "right", None), ("unsigned", "unsigned", None), ("changed", "changed", None),
    ("strangers", "stranger's", None), ("nearly", "nearly the maker's", None), ("missing", "missing", None),
    ("there already", "right", "right"), ("planted", "right", "unsigned"),
    ("planted by a stranger", "right", "stranger's"), ("all swapped", "unsigned", "changed"),
    ("two certificates", "issued by a stranger", "stranger's, issued by the maker"),
]
TRUSTING = [  # on a machine of the maker's own
    ("right and trusting", "right", None), ("planted and trusting", "right", "unsigned"),
    ("strangers and trusting", "stranger's", "changed"), ("missing and trusting", "missing", None),
]


def play(scene):
    before = listing(scene)
    for name, executable, planted in ATTEMPTS:
        Attempt(scene, name, executable, planted).check(executable, planted)

    held = Attempt(scene, "held", "right")
    answer = scene.machine.command(f"hold-file {held.folder}\\.be\\{SETUP}")
    scene.checks.equal("another process holds the file", answer, "held")
    held.check("held", None)
    scene.machine.command("release")

    linked = Attempt(scene, "linked", "right", "right")
    linked.elevated.rename(scene.machine.path(TEMP) / "elsewhere")
    linked.elevated.symlink_to(scene.machine.path(TEMP) / "elsewhere")
    linked.check("reached by a link", "reached by a link")

    bare = Attempt(scene, "nothing to put beside it", "right")
    (bare.own / VERSION).unlink()
    scene.checks.equal("without a library to put beside it nothing is tried", bare.lock()[:3], (False, [], []))
    unnamed = Attempt(scene, "unnamed", "right")
    scene.checks.equal("without an executable neither", unnamed.lock("")[:3],
                       (False, [], [("LockElevatedBinaries", "Failed to determine elevated bootstrapper path")]))

    scene.machine.make_configurable()
    for name, executable, planted in TRUSTING:
        Attempt(scene, name, executable, planted).check(executable, planted, trusting=True)
    check_changes(scene, "all of them", before, {})
