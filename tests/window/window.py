"""The real program on a desktop of its own, with a sample home: what every road through it needs.

A file of roads is run as  FILE BUILD TEST...  where BUILD is the folder of the build to test. It ends with status 77
where the machine has no such desktop to offer.
"""

import decimal
import os
import pathlib
import plistlib
import pwd
import subprocess
import sys
import unittest

import desktop

SKIPPED = 77
BUILD = pathlib.Path(sys.argv[1])
CONFIG = pathlib.Path(os.environ.get("XDG_CONFIG_HOME", "/nowhere"))  # the desktop's own
PROGRAM = str(BUILD / "tarnby-cleaner")
OUTLINE = "What can be removed"

# Where a check box is, from the left of its row: half of one behind what stands before it.
GROUP_BOX, ENTRY_BOX = 49, 73
ABOVE_BOTTOM = -14  # a header may stand above a row, nothing stands below it


class Window(unittest.TestCase):
    def setUp(self):
        import person  # only within a desktop
        self.folder = pathlib.Path(os.environ["TARNBY_DESKTOP"])
        self.person = person.Person()
        sample = self.folder / "sample"
        run(BUILD / "tools" / "sample-home", sample)
        self.home, self.applications = sample / pwd.getpwuid(os.getuid()).pw_name, sample / "Applications"
        self.opener = self.folder / "bin" / "xdg-open"  # keeps what it was to open
        self.opener.parent.mkdir()
        self.opener.write_text(f'#!/bin/sh\nprintf "%s\\n" "$1" >>{self.folder}/opened\n')
        self.opener.chmod(0o755)
        os.environ["PATH"] = f"{self.opener.parent}:{os.environ['PATH']}"

    def run(self, result=None):
        before = len(result.failures) + len(result.errors)
        super().run(result)
        if len(result.failures) + len(result.errors) > before:
            picture = f"/tmp/tarnby-window-{self._testMethodName}-{os.getpid()}.png"
            desktop.save_screenshot(picture)
            print(f"The screen was {picture} and told:\n{self.person.tells()}", file=sys.stderr)

    def grant_both(self):
        run(BUILD / "tarnby-cleaner-cli", "grant", "home", self.home)
        run(BUILD / "tarnby-cleaner-cli", "grant", "Applications", self.applications)

    def settings(self, suite="settings"):
        return plistlib.loads((CONFIG / "tarnby-cleaner" / f"{suite}.plist").read_bytes())

    def set(self, **settings):
        for key, value in settings.items():
            run(BUILD / "tarnby-cleaner-cli", "settings", key, value)

    def start(self, *words, environment=None):
        """Starts the program, or what the words say, on both folders."""
        self.person.starts(words or [PROGRAM], environment)
        self.person.sees("push button", "Scan")

    def expect_opened(self, *addresses):
        """What the desktop's opener was asked to open, so far."""
        def opened():
            return (self.folder / "opened").read_text().splitlines()
        self.person.waits_for(f"{addresses[-1]} opened", lambda: len(opened()) >= len(addresses))
        self.assertEqual(opened(), list(addresses))

    def close_window(self):
        self.person.waits_in_front("frame", "Tarnby cleaner")
        self.assertEqual(self.person.closes_window(), 0)

    def pick(self, button, folder):
        self.person.presses(button)
        self.person.types_into(self.person.sees("text", "Directory:"), str(folder))
        self.person.presses("Allow")
        self.person.waits_for("the chooser to go", lambda: not self.person.find("dialog", "Allow access"))

    def agree(self, size=None):
        """Agrees to the removal that the sheet asks about, which says how much, wherever it was asked for."""
        def button():
            asked = [element.name for element, _ in self.person.everything() if element.getRoleName() == "dialog"
                     and element.name.startswith(f"Remove {size or ''}")]
            return asked and self.person.find("push button", asked[0].removesuffix(" for good?"))
        self.person.waits_for("the sheet that asks", button).queryAction().doAction(0)

    def rows(self, outline=OUTLINE):
        return [cell.name for cell in self.person.sees("tree", outline) if cell.getRoleName() == "table cell"]

    def click_box(self, text, box):
        self.person.clicks(self.person.sees("table cell", text), box, ABOVE_BOTTOM)

    def expect_rows(self, expected):
        try:
            self.person.waits_for("the rows", lambda: self.rows() == expected)
        except AssertionError:
            self.assertEqual(self.rows(), expected)

    def expect_selected(self, size):
        """Beside the word, below the outline."""
        def told():
            names = [element.name for element, _ in self.person.everything()]
            return size == names[names.index("Selected") + 1]
        self.person.waits_for(f"{size} selected", told)


def run(*words):
    """What the program printed; its end must be a good one."""
    return subprocess.run([str(word) for word in words], check=True, stdout=subprocess.PIPE, text=True).stdout


def byte_count(size):
    for power, unit in enumerate(("KB", "MB", "GB")):
        step = decimal.Decimal(1).scaleb(-power)  # no decimals, one, two
        number = decimal.Decimal(size).scaleb(-3 * power - 3).quantize(step, decimal.ROUND_HALF_UP)
        if number < 1000:
            return f"{number.normalize():f} {unit}"
    raise ValueError(size)


def said(row, state="ticked", items=None):
    """What a row of the outline says of itself, with the size of those items or its own."""
    size = row["size"] if items is None else sum(item["size"] for item in items)
    return f"{row['label']}, {byte_count(size)}, {state}"


def tree_of(top):
    """Everything below a folder, with what would show that it was touched; folders are touched by what goes in them."""
    state = {}
    for folder, folders, files in os.walk(top):
        for name in folders + files:
            path = pathlib.Path(folder, name)
            status = path.lstat()
            is_folder = path.is_dir() and not path.is_symlink()
            state[path] = (status.st_ino, status.st_mode) + (() if is_folder else (status.st_size, status.st_mtime_ns))
    return state


def main(file):
    """Runs the tests of a file, on a desktop of their own."""
    if "TARNBY_DESKTOP" in os.environ:
        unittest.main(argv=[sys.argv[0], *sys.argv[2:]], warnings="ignore")  # the bindings warn of themselves
    if missing := desktop.why_not():
        print(f"Skipped: {missing}")
        sys.exit(SKIPPED)
    sys.exit(desktop.run_inside([sys.executable, "-B", file, *sys.argv[1:]]))
