"""Stub."""
def play(scene):
    run = scene.run("/quiet")
    scene.check_exit_code(run, 0)
    from harness import facts
    for key, name, view, wanted in facts.client_values():
        scene.check_equal(key+name, scene.prefix.registry(key, name, view), wanted)
