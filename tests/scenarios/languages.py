"""The strings' language: that of the machine's locale, unless the maker's settings name one that the library has."""
from harness.desktop.strings import all_texts
from harness.places import OTHER_CONFIGURATIONS, OTHER_LIBRARY

# What a language calls two shortcuts, which the package makes: the other deployment's German and French have names.
NAMES = ["INSTALLER_ERROR_REPORTER_SHORTCUT_TITLE", "INSTALLER_RECOVERY_HELPER_SHORTCUT_TITLE"]
STEPS = [f"before-files property {name}" for name in NAMES]
ROWS = [  # what the run is called, the machine's locale, the maker's setting, the language
    ("german", "de_DE.UTF-8", "", "de"),
    ("french-forced", "de_DE.UTF-8", "fr", "fr"),
    ("unknown-forced", "de_DE.UTF-8", "xx", "de"),
]


def play(scene):
    scene.runs.make_bundle(library=OTHER_LIBRARY)
    scene.machine.make_configurable()
    for what, locale, setting, language in ROWS:
        scene.machine.restart(locale)
        scene.machine.override(f"[location]\nlanguage = \"{setting}\"\n" if setting else "")
        scene.runs.script(*STEPS, "before-files fail 1603")
        run = scene.runs.run("/quiet", log=what, code=1)
        texts = all_texts(language, OTHER_CONFIGURATIONS)
        scene.checks.equal(f"{what}: the package is given the names of its shortcuts",
                           list(map(scene.runs.answer, STEPS)), [texts.get(name.lower(), "") for name in NAMES])
        scene.checks.equal(f"{what}: a language that is not there is logged", run.log.messages("Translator::Load"),
                           ["Failed to load localization resources for xx"] if setting == "xx" else [])
