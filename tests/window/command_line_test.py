"""What the window's program says before there is a window, and where there can be none."""

import os
import pathlib
import subprocess
import sys
import unittest

PROGRAM = pathlib.Path(sys.argv.pop(1)) / "tarnby-cleaner"
NO_DISPLAY = "tarnby-cleaner: there is no display to open a window on; in a terminal use tarnby-cleaner-cli\n"
TOOLKIT = ("DISPLAY", "WAYLAND_DISPLAY", "WAYLAND_SOCKET", "QT_QPA_PLATFORM")


class CommandLine(unittest.TestCase):
    def expect(self, words, status, out="", err="", **environment):
        kept = {name: value for name, value in os.environ.items() if name not in TOOLKIT}
        ended = subprocess.run([PROGRAM, *words], env=kept | environment, stdin=subprocess.DEVNULL,
                               capture_output=True, text=True, timeout=60, check=False)
        with self.subTest(words=words, **environment):
            self.assertEqual((ended.returncode, ended.stderr), (status, err))
            self.assertTrue(ended.stdout.startswith(out) if out else ended.stdout == "", ended.stdout)

    def test_help_version_and_mistakes_are_told_without_a_display(self):
        for words in (["--help"], ["-h"], ["-platform", "xcb", "--help"], ["--languages", "de", "--help"]):
            self.expect(words, 0, "Usage: tarnby-cleaner ")
        for words in (["--version"], ["-v"]):
            self.expect(words, 0, "tarnby-cleaner ")
        for words, fault in ((["--nonsense"], 'there is no option "--nonsense"'),
                             (["file"], 'there is no option "file"'),
                             (["-style=fusion", "-x"], 'there is no option "-x"'),
                             (["--languages"], "--languages takes a LIST")):
            self.expect(words, 2, err=f"tarnby-cleaner: {fault}; see tarnby-cleaner --help\n")

    def test_without_a_display_it_names_the_terminal_program_and_does_not_abort(self):
        for environment in ({}, {"DISPLAY": ":4711"}, {"QT_QPA_PLATFORM": "nonsense"}):
            self.expect([], 1, err=NO_DISPLAY, **environment)
            self.expect(["--languages=fr"], 1, err=NO_DISPLAY, **environment)


if __name__ == "__main__":
    unittest.main()
