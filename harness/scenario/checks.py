"""The checks of a scenario: each is a line of its result, and the scenario goes on after one that fails."""
from harness.building.bundle import BUNDLE_VERSION
from harness.scenario import client
from harness.scenario.machine import TEMP, Machine


class Checks:
    def __init__(self, machine: Machine):
        self._machine = machine
        self.rows: list[dict] = []

    def that(self, name: str, ok: object, detail: object = "") -> None:
        self.rows.append({"name": name, "ok": bool(ok), "detail": str(detail)})

    def equal(self, name: str, found: object, wanted: object) -> None:
        shown = found if isinstance(found, str) else ""
        self.that(name, found == wanted, shown if found == wanted else f"found {found!r}, wanted {wanted!r}")

    def exit_code(self, run, wanted: int, whose: str = "the engine") -> None:
        found = run.exit_code
        self.that(f"{whose} ends with 0x{wanted:x}", found == wanted,
                  "no exit code in the log" if found is None else f"0x{found:x}")
        # The shell sees the low byte only; a crash after the log's last line shows here alone.
        self.equal(f"and its process with 0x{wanted & 0xff:x}", run.process_code, wanted & 0xff)

    def cancelled(self, run, whose: str, why: str = "user_action") -> None:
        """The run ends with success to its caller, logs a cancel and no error, and leaves no temporary file."""
        self.exit_code(run, 0, whose)
        self.equal("it is logged as a cancel", run.log.messages("OnShutdown"),
                   ["Entering OnShutdown", f"The run was cancelled: {why}"])
        updates = run.log.messages("UpdateInstallStatus")
        self.that("its last status is the user's exit", updates and updates[-1].endswith("(80070642)"), updates)
        self.no_error(run, whose)
        self.only_logs_left()

    def no_error(self, run, whose: str) -> None:
        self.equal(f"{whose}: no error is logged", run.log.closing_errors() + run.log.messages("OnError"), [])

    def only_logs_left(self) -> None:
        left = [file.name for file in self._machine.path(TEMP).iterdir() if file.suffix != ".log"]
        self.equal("nothing but logs is left in the temporary folder", left, [])

    def nothing_planned(self, run, what: str) -> None:
        self.that(f"{what}: nothing is detected or planned", not run.log.numbered("100") + run.log.numbered("200"))

    def files_there(self, install_folder: str = client.INSTALL_FOLDER) -> None:
        self.equal("the client's files are there", self._machine.client_files(install_folder), set(client.FILES))

    def installed(self, install_folder: str = client.INSTALL_FOLDER, version: str = BUNDLE_VERSION) -> None:
        self.files_there(install_folder)
        wrong = []
        for (key, view), wanted in client.values(install_folder, version).items():
            found = self._machine.values(key, view)
            wrong += [f"{key} [{name}] in view {view}: {found.get(name)!r}, wanted {text!r}"
                      for name, text in wanted.items() if found.get(name) != text]
        self.that("the client's registry values are there", not wrong, "\n".join(wrong[:3]))

    def gone(self) -> None:
        """Nothing of the client and of the bundle is left, as far as they are to go."""
        self.equal("the client's files are gone", self._machine.client_files(), set())
        values = [f"{key} [{name}]" for (key, view), wanted in client.values().items()
                  for name in wanted.keys() & self._machine.values(key, view).keys()]
        self.equal("the client's registry values are gone", values, [])
        entry = self._machine.command(f"registry 32 {client.uninstall_entry()}")
        self.equal("the bundle has no entry", entry, "null")
        cached = [file.name for file in self._machine.path("C:\\ProgramData\\Package Cache").rglob("*")
                  if file.is_file()]
        self.equal("the engine's cache is empty", cached, [])
