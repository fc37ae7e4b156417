"""A desktop of its own: an X display, a session bus, a window manager, and folders that nobody else uses.

Everything started here or below is ended with it, whatever became of it.  desktop.py WORDS...  runs a program there.
"""

import contextlib
import ctypes
import mmap
import os
import pathlib
import shutil
import signal
import struct
import subprocess
import sys
import tempfile
import time
import zlib

NEEDED = ("Xvfb", "dbus-run-session", "openbox", "xdotool")
PR_SET_CHILD_SUBREAPER = 36


def why_not():
    """What is missing on this machine to have a desktop; empty when nothing is."""
    missing = [program for program in NEEDED if shutil.which(program) is None]
    with contextlib.suppress(ImportError):
        import pyatspi  # noqa: F401
        return f"{', '.join(missing)} not installed" if missing else ""
    return "python3-pyatspi not installed"


def run_inside(words):
    """Runs `words` on such a desktop and tells its exit status."""
    # Services that the bus starts turn their back on their parent; as a subreaper this process gets them all the same.
    ctypes.CDLL(None).prctl(PR_SET_CHILD_SUBREAPER, 1, 0, 0, 0)
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(143))
    with tempfile.TemporaryDirectory(prefix="tarnby-window-") as folder:
        try:
            environment = _environment(folder)
            environment["DISPLAY"] = _start_display(folder, environment)
            _start_window_manager(environment)
            return subprocess.run(["dbus-run-session", "--", *words], env=environment, check=False).returncode
        finally:
            _end_children()


class Screen:
    """What the display shows: it keeps its picture in a file (XWD version 7), four bytes a pixel."""

    def __init__(self):
        with open(pathlib.Path(os.environ["TARNBY_DESKTOP"]) / "screen" / "Xvfb_screen0", "rb") as file:
            self._picture = mmap.mmap(file.fileno(), 0, prot=mmap.PROT_READ)
        header = struct.unpack(">25I", self._picture[:100])
        self.width, self.height, self._line_size = header[4], header[5], header[12]
        self._start = header[0] + header[19] * 12

    def shows(self, color, width, height):
        """Whether there is an area of that colour (blue, green, red), at least that large."""
        runs = [(color + unused) * width for unused in (b"\0", b"\xff")]
        lines = (self.line(0, y, self.width) for y in range(self.height))
        return sum(any(run in line for run in runs) for line in lines) >= height

    def line(self, x, y, width):
        """Blue, green, red and a byte that is not used, for each pixel from there on to the right."""
        start = self._start + y * self._line_size + x * 4
        return self._picture[start:start + width * 4]


def save_screenshot(path):
    """Writes what the display shows to a PNG file."""
    screen = Screen()
    width, height = screen.width, screen.height
    lines = bytearray()
    for at in range(height):
        line = screen.line(0, at, width)
        rgb = bytearray(width * 3)
        rgb[0::3], rgb[1::3], rgb[2::3] = line[2::4], line[1::4], line[0::4]
        lines += b"\0" + rgb
    with open(path, "wb") as file:
        file.write(b"\x89PNG\r\n\x1a\n")
        for kind, data in ((b"IHDR", struct.pack(">2I5B", width, height, 8, 2, 0, 0, 0)),
                           (b"IDAT", zlib.compress(bytes(lines))), (b"IEND", b"")):
            file.write(struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data)))


def _environment(folder):
    """Nothing of the person's own desktop gets in, but what sanitizers are told."""
    kept = {name: value for name, value in os.environ.items() if name == "PATH" or name.endswith("SAN_OPTIONS")}
    places = {"HOME": "account", "XDG_RUNTIME_DIR": "runtime", "XDG_CONFIG_HOME": "config", "TMPDIR": "tmp"}
    for name, place in places.items():
        kept[name] = os.path.join(folder, place)
        os.mkdir(kept[name], 0o700)
    # Of the kind of the homes that the tests grant: by that the window knows which folders to ask for.
    os.makedirs(os.path.join(kept["HOME"], "Library", "Preferences"))
    os.mkdir(os.path.join(folder, "screen"))
    return kept | {"TARNBY_DESKTOP": folder, "LC_ALL": "C.UTF-8", "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
                   "QT_QPA_PLATFORM": "xcb", "GSETTINGS_BACKEND": "memory", "NO_AT_BRIDGE": "1"}


def _start_display(folder, environment):
    """Takes the first display that is free and tells its name."""
    read_end, write_end = os.pipe()
    subprocess.Popen(["Xvfb", "-displayfd", str(write_end), "-screen", "0", "1280x900x24", "-nolisten", "tcp",
                      "-noreset", "-fbdir", os.path.join(folder, "screen")], pass_fds=[write_end], env=environment,
                     stdout=subprocess.DEVNULL, stderr=open(os.path.join(folder, "display.log"), "wb"))
    os.close(write_end)
    with open(read_end, encoding="ascii") as told:
        number = told.readline().strip()
    if not number:
        sys.exit("Xvfb did not start:\n" + pathlib.Path(folder, "display.log").read_text())
    return ":" + number


def _start_window_manager(environment):
    """Waits until it is at work: a window that is there before it would be moved between two of its frames."""
    quiet = {"env": environment, "stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}
    manager = subprocess.Popen(["openbox", "--sm-disable"], **quiet)
    while subprocess.run(["xdotool", "get_num_desktops"], check=False, **quiet).returncode != 0:
        if manager.poll() is not None:
            sys.exit("openbox did not start")
        time.sleep(0.01)


def _end_children():
    """Ends every process below this one: politely, and after two seconds for good."""
    give_up = time.monotonic() + 2
    asked = set()
    while children := _children():
        for child in children:
            too_late = time.monotonic() > give_up
            if child not in asked or too_late:
                asked.add(child)
                with contextlib.suppress(ProcessLookupError):
                    os.kill(child, signal.SIGKILL if too_late else signal.SIGTERM)
        with contextlib.suppress(ChildProcessError):
            while os.waitpid(-1, os.WNOHANG)[0] != 0:
                pass
        time.sleep(0.01)


def _children():
    with open(f"/proc/self/task/{os.getpid()}/children", encoding="ascii") as children:
        return [int(child) for child in children.read().split()]


if __name__ == "__main__":
    sys.exit(run_inside(sys.argv[1:]))
