"""Times the start of the window, with both folders granted, against that of an empty one, one after the other in turn:
window_start.py PROGRAM EMPTY. To be run on a desktop of tests/window/desktop.py; prints medians and ratios.

A start ends when the first of the window's pixels are on the screen, which is asked of the display's own memory. The
processor time up to then, of all threads, hardly depends on what else the machine does.
"""

import os
import pathlib
import pwd
import signal
import statistics
import subprocess
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).parents[1] / "tests" / "window"))
import desktop  # noqa: E402

ROUNDS = 31
AT_MOST = 1.3  # times the empty window's time


def start(program, screen, nothing, environment):
    """Milliseconds to the first pixels: of time, and of processor time."""
    begin = time.perf_counter()
    child = os.posix_spawn(program, [program], environment)
    while inside(screen) == nothing:
        time.sleep(0.0001)
    passed = time.perf_counter() - begin
    worked = time.clock_gettime(~child << 3 | 2)  # the clock of a process: clock_getcpuclockid(3)
    os.kill(child, signal.SIGTERM)
    os.waitpid(child, 0)
    while inside(screen) != nothing:
        time.sleep(0.001)
    return passed * 1000, worked * 1000


def inside(screen):
    """A point that the window covers wherever it is put, away from the pointer in the middle."""
    return screen.line(screen.width * 2 // 5, screen.height * 2 // 5, 1)


def main():
    program, empty = sys.argv[1:]
    account = pathlib.Path(os.environ["HOME"])
    folders = {"home": account / pwd.getpwuid(os.getuid()).pw_name, "Applications": account / "Applications"}
    for grant, folder in folders.items():
        (folder / "Any.app").mkdir(parents=True)
        subprocess.run([f"{program}-cli", "grant", grant, folder], check=True, stdout=subprocess.DEVNULL)
    screen = desktop.Screen()
    nothing = inside(screen)
    # Nobody listens to what the windows say.
    environment = {name: value for name, value in os.environ.items() if name != "QT_LINUX_ACCESSIBILITY_ALWAYS_ON"}
    rounds = [(start(program, screen, nothing, environment), start(empty, screen, nothing, environment))
              for _ in range(ROUNDS + 1)][1:]  # the first one only fills caches
    for at, what in enumerate(("time", "processor")):
        ours, theirs = [our[at] for our, _ in rounds], [their[at] for _, their in rounds]
        ratios = sorted(our / their for our, their in zip(ours, theirs))
        ratio = statistics.median(ratios)
        verdict = f"   at most {AT_MOST:.2f}{': OVER' if ratio > AT_MOST else ''}" if what == "time" else ""
        print(f"start    {what:9} window {statistics.median(ours):.1f} ms   empty window "
              f"{statistics.median(theirs):.1f} ms   ratio {ratio:.2f} ({ratios[0]:.2f} to {ratios[-1]:.2f}){verdict}")


main()
