"""What is told of an install when it begins: a default and a custom folder, another drive, and a machine without WMI."""
LOCATOR = "HKLM\\Software\\Classes\\CLSID\\{4590F811-1D3A-11D0-891F-00AA004B2E24}\\InprocServer32"
NOT_REGISTERED = "hr=80040154"


def records(scene) -> list[dict]:
    """The attributes of each install that has begun so far."""
    events = [event for request in scene.services.requests("brisk") for event in request.body]
    return [event["param"] for event in events if (event["m"], event["g"], event["s"]) == ("inst", "inst", "strt")]


def check_record(scene, what: str, *arguments: str, path: str = "default", drive: str = "system") -> object:
    """Installs; one more record has come, and the log has the same."""
    before = len(records(scene))
    run = scene.run("/quiet", *arguments, log=what.replace(" ", "-"))
    scene.check_exit_code(run, 0, f"{what}: the engine")
    found = records(scene)[before:]
    told = [{key: value for key, value in row.items() if key != "intm"} for row in found]
    scene.check_equal(f"{what}: what is told", told, [{"inst": "new", "path": path, "dskm": "", "dtyp": drive}])
    lines = [line for line in run.log.messages("OnExecuteBegin") if line.startswith("instTelemetry.")]
    wanted = ["instTelemetry.diskMedia = ", f"instTelemetry.driveType(system/data) = {drive}",
              "instTelemetry.installStatus = new", *[f"instTelemetry.installTime = {row['intm']}" for row in found],
              f"instTelemetry.path (custom/default) = {path}"]
    scene.check_equal(f"{what}: the log has the same", lines, wanted)
    return run


def check_way(scene, what: str, run, lines: list[str]) -> None:
    found = [line.text for line in run.log.library_lines() if line.function == "installTelemetry"]
    scene.check_equal(f"{what}: how it was found out", found, lines)


def machines(scene) -> set[str]:
    """The machine's hashes told so far."""
    return {event["machash"] for request in scene.services.requests("brisk") for event in request.body}


def play(scene):
    scene.services  # there before the first run
    (scene.out / "data").mkdir()
    scene.prefix.add_drive("E", scene.out / "data")

    for what, folder, path, drive, root in (
            ("default folder", "", "default", "system", "C:"),
            ("custom folder", "C:\\Spiele", "custom", "system", "C:"),
            ("another drive", "E:\\Spiele", "custom", "data", "E:")):
        given = ["InstallFolder=" + folder] if folder else []
        run = check_record(scene, what, *given, path=path, drive=drive)
        # Wine's WMI knows drives, but a partition without a name, so that the medium stays unknown.
        check_way(scene, what, run, [f"Install Root: {root}"])
        scene.uninstall()

    known = machines(scene)
    scene.check("all are of one machine", len(known) == 1, known)

    for view in ("32", "64"):
        scene.prefix.run("reg", "delete", LOCATOR, "/f", f"/reg:{view}", check=True)
    run = check_record(scene, "no WMI", drive="")
    check_way(scene, "no WMI", run, ["Error initializing WMI"])
    scene.check("no WMI: the log tells what is missing",
                run.log.has(f"^Failed to create WbemLocator in namespace: .*{NOT_REGISTERED}$"))
    unknown = machines(scene) - known
    scene.check("no WMI: the machine has another hash", [len(text) for text in unknown] == [40], unknown)
