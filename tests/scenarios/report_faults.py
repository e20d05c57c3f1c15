"""The report's services fail at each step: the run ends as usual, and its failure has the report's id or none."""
from harness.scenario.telemetry import TRACKING_ID, Sent
from harness.services.reports import response

NO_ID, ID = None, TRACKING_ID
# What goes wrong, at which service, its answer, the id that the failure reports, how many packages are stored.
ROWS = [
    ("refusing-service", "reports", None, NO_ID, 0),
    ("silent-service", "reports", {"delay": 10, "cut": "reset"}, NO_ID, 0),
    ("half-an-answer", "reports", {"cut": "close half-way"}, NO_ID, 0),
    ("no-url-at-all", "reports", {"body": response("er-1", "no address")}, "er-1", 0),
    ("refusing-storage", "storage", None, ID, 0),
    ("resetting-storage", "storage", {"cut": "reset"}, ID, 1),
    ("storage-500", "storage", {"status": 500}, ID, 1),
    ("slow-storage", "storage", {"delay": 10}, ID, 1),
    ("engine", "reports", {}, ID, 1),
]


def play(scene):
    services = scene.services
    scene.runs.script("before-files fail 1603")
    for what, name, answer, wanted, packages in ROWS:
        service, sent, before = getattr(services, name), Sent(scene), len(services.requests("storage"))
        service.down() if answer is None else service.answer(**answer)
        run = scene.runs.run("/quiet", log=what, code=1)
        service.up() if answer is None else service.answer()
        scene.checks.equal(f"{what}: the run is reported to its end", [event["s"] for event in sent.brisk()],
                           ["strt", "strt", "erro", "fail", "stop"])
        scene.checks.equal(f"{what}: the failure's report", [event["param"].get("report_id")
                                                             for event in sent.brisk("inst.inst.fail")], [wanted])
        scene.checks.equal(f"{what}: packages are sent", len(services.requests("storage")) - before, packages)
        scene.checks.equal(f"{what}: the upload is logged", run.log.messages("`anonymous-namespace'::uploadData"),
                           [f"Uploaded report with trackingId={wanted}"] if wanted else [])
    scene.checks.equal("nothing that the services are sent is wrong", services.received.faults, [])
