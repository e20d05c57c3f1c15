"""The report's services fail at each step: the run ends as ever, and is told with the report's id or without one."""
from harness.scenario.telemetry import TRACKING_ID, told_so_far

NO_ID, ID = None, TRACKING_ID
NO_URL = "<reportResponse><trackingId>er-1</trackingId><puts><put><signedUrl>no address</signedUrl></put></puts></reportResponse>"
# What goes wrong, at which service, what that is told, the id that the run is told with, how many packages come.
ROWS = [
    ("refusing-service", "reports", None, NO_ID, 0),
    ("silent-service", "reports", {"delay": 10, "cut": "reset"}, NO_ID, 0),
    ("half-an-answer", "reports", {"cut": "close half-way"}, NO_ID, 0),
    ("no-url-at-all", "reports", {"body": NO_URL}, "er-1", 0),
    ("refusing-storage", "storage", None, ID, 0),
    ("resetting-storage", "storage", {"cut": "reset"}, ID, 1),
    ("storage-500", "storage", {"status": 500}, ID, 1),
    ("slow-storage", "storage", {"delay": 10}, ID, 1),
    ("none", "reports", {}, ID, 1),
]


def play(scene):
    services = scene.services
    scene.script("before-files fail 1603")
    for what, name, answer, wanted, packages in ROWS:
        service, told, before = getattr(services, name), told_so_far(scene), len(services.requests("storage"))
        service.down() if answer is None else service.answer(**answer)
        run = scene.run("/quiet", log="engine" if what == "none" else what)
        service.up() if answer is None else service.answer()
        scene.check_exit_code(run, 1, f"{what}: the engine")
        events = [event for post in services.requests("brisk")[told["brisk"]:] for event in post.body]
        scene.check_equal(f"{what}: the run is told to its end", [event["s"] for event in events],
                          ["strt", "strt", "erro", "fail", "stop"])
        scene.check_equal(f"{what}: the failure's report", [event["param"].get("report_id") for event in events
                                                            if event["s"] == "fail"], [wanted])
        scene.check_equal(f"{what}: packages come", len(services.requests("storage")) - before, packages)
        uploads = run.log.messages("`anonymous-namespace'::uploadData")
        scene.check_equal(f"{what}: the upload is logged", uploads,
                          [f"Uploaded report with trackingId={wanted}"] if wanted else [])
    scene.check_equal("nothing that the services are sent is wrong", services.received.faults, [])
