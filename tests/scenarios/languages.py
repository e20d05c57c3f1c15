"""The strings' language: that of the machine's locale, unless the maker's settings name one that the library has."""
from harness.places import OTHER_CONFIGURATIONS, OTHER_LIBRARY
from harness.desktop.strings import all_texts

# What a language calls two shortcuts, which the package makes: the other deployment's German and French have names.
NAMES = ["INSTALLER_ERROR_REPORTER_SHORTCUT_TITLE", "INSTALLER_RECOVERY_HELPER_SHORTCUT_TITLE"]
LACKING = "Failed to load localization resources for xx"
ROWS = [  # what the run is called, the machine's locale, the maker's setting, the language
    ("german", "de_DE.UTF-8", "", "de"),
    ("french-forced", "de_DE.UTF-8", "fr", "fr"),
    ("unknown-forced", "de_DE.UTF-8", "xx", "de"),
]


def play(scene):
    scene.make_bundle(library=OTHER_LIBRARY)
    scene.make_configurable()
    for what, locale, setting, language in ROWS:
        scene.prefix.environment["LC_ALL"] = locale
        scene.restart_machine()
        scene.override(f"[location]\nlanguage = \"{setting}\"\n" if setting else "")
        scene.script("\n".join(f"before-files property {name}" for name in NAMES) + "\nbefore-files fail 1603")
        run = scene.run("/quiet", log=what)
        scene.check_exit_code(run, 1, f"{what}: with a failing package the engine")
        texts = all_texts(language, OTHER_CONFIGURATIONS)
        scene.check_equal(f"{what}: the package is told the names of its shortcuts",
                          [scene.answer(f"before-files property {name}") for name in NAMES],
                          [texts.get(name.lower(), "") for name in NAMES])
        scene.check_equal(f"{what}: a language that is not there is logged", run.log.messages("Translator::Load"),
                          [LACKING] if setting == "xx" else [])
