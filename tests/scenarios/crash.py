"""A crash is told at once with its signature, shows one box in the user's language and then goes on to the system."""
from harness.scenario.crash import ACCESS_FAULT, check_crash, watch

ROWS = [  # the machine's locale, the language, what the event says of them
    ("C.UTF-8", "EN", {}),
    ("de_DE.UTF-8", "DE", {"lang": "de", "cntry": "DE"}),
]


def play(scene):
    services = watch(scene)
    scene.make_configurable()
    scene.override("[qa]\ninstaller.crashOnStart = true\n")
    codes = []
    for locale, language, identity in ROWS:
        scene.prefix.environment["LC_ALL"] = locale
        scene.restart_machine()
        run = scene.start(log="engine" if language == "EN" else language)
        codes.append(check_crash(scene, run, language, ACCESS_FAULT, language, development=True, **identity))
    scene.check("one crash has one signature", len(set(codes)) == 1, codes)
    scene.check_equal("nothing but the crashes is told", len(services.requests()), len(ROWS))
