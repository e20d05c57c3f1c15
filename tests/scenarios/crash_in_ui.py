"""What is meant to crash does so as any crash: Enter on a link with the focus, a disc's key without a value."""
from harness.scenario.crash import ACCESS_FAULT, UNCAUGHT_EXCEPTION, check_crash, watch
from harness.desktop.window import BODY


def play(scene):
    watch(scene)
    link = scene.start_to_welcome()
    scene.wait_for(scene.window.keyboard, "the keyboard")
    scene.window.press("Tab")
    scene.wait_for(lambda: scene.window.look().focus == BODY, "the focus of the link", 10)
    scene.window.press("Return")
    codes = [check_crash(scene, link, "Enter on a link", ACCESS_FAULT)]
    key = scene.start("/contentIds", log="bare-key")
    codes.append(check_crash(scene, key, "a bare key", UNCAUGHT_EXCEPTION))
    scene.check("two crashes have two signatures", len(set(codes)) == 2, codes)
