"""From the first screen to a clean disk, and what may come between."""

import json
import os
import pathlib
import signal
import subprocess

import window
from window import BUILD, ENTRY_BOX, GROUP_BOX, PROGRAM, byte_count, run, said, tree_of


def amount(items):
    """The bytes that removing these takes, each file once, however often it is listed."""
    files = {}
    for top in (pathlib.Path(path) for item in items for path in item["paths"]):
        for file in (top, *top.rglob("*")):
            if file.is_symlink() or file.is_file():
                files[file] = file.lstat().st_size
    return sum(files.values())


class Road(window.Window):
    def test_from_the_access_screen_to_the_cleaned_screen(self):
        scan = json.loads(run(BUILD / "tarnby-cleaner-cli", "scan", "--json", "--home", self.home, "--applications",
                              self.applications))
        before = tree_of(self.folder / "sample")
        groups = {group["type"]: group for group in scan["groups"]}
        caches = groups["caches"]["items"]
        someone = self.person
        someone.starts([PROGRAM])

        self.pick("Allow access to the home folder", self.applications)  # the wrong one: nothing happens
        self.pick("Allow access to the home folder", self.home)
        self.pick("Allow access to the Applications folder", self.applications)

        someone.presses("Scan")
        closed = [said(group) for group in scan["groups"]]
        self.expect_rows(closed)
        self.expect_selected(byte_count(amount(item for group in scan["groups"] for item in group["items"])))

        someone.strikes("Return")  # opens the first group
        self.expect_rows([closed[0], *map(said, caches), *closed[1:]])
        someone.strikes("Down", "space")
        self.expect_rows([said(groups["caches"], "partly ticked", caches[1:]), said(caches[0], "not ticked"),
                          *map(said, caches[1:]), *closed[1:]])
        self.click_box(said(caches[2]), ENTRY_BOX)
        left_of_caches = [caches[1], *caches[3:]]
        first = [said(groups["caches"], "partly ticked", left_of_caches), said(caches[0], "not ticked"),
                 said(caches[1]), said(caches[2], "not ticked"), *map(said, caches[3:])]
        self.expect_rows([*first, *closed[1:]])
        someone.strikes("Home", "Return", "Down", "space")  # closes it, and unticks the next one as a whole
        self.expect_rows([first[0], said(groups["logs"], "not ticked"), *closed[2:]])
        self.click_box(closed[6], GROUP_BOX)
        self.expect_rows([first[0], said(groups["logs"], "not ticked"), *closed[2:6],
                          said(groups["trash"], "not ticked")])

        ticked = [*left_of_caches, *(item for name in ("remainders", "browsers", "mails", "installs")
                                     for item in groups[name]["items"])]
        size = amount(ticked)
        self.expect_selected(byte_count(size))
        self.assertEqual(tree_of(self.folder / "sample"), before)  # so far nothing was touched
        someone.presses("Remove")
        self.assertEqual(someone.sees("dialog", f"Remove {byte_count(size)} for good?").description,
                         f"{len(ticked)} entries do not go to the Trash and cannot be brought back.")
        someone.presses(f"Remove {byte_count(size)}")
        someone.sees("label", "was cleaned")
        someone.sees("label", byte_count(size))
        someone.presses("Done")
        someone.sees("label", f"Cleaned so far: {byte_count(size)}")
        someone.sees("push button", "Scan")
        self.close_window()

        gone = [pathlib.Path(path) for item in ticked for path in item["paths"]]
        self.assertEqual(tree_of(self.folder / "sample"),
                         {path: state for path, state in before.items()
                          if not any(path == top or top in path.parents for top in gone)})
        kept = self.settings()
        self.assertEqual({key: kept[key] for key in ("TotallyCleaned", "appLaunchCount", "home", "Applications")},
                         {"TotallyCleaned": size, "appLaunchCount": 1, "home": os.fsencode(self.home),
                          "Applications": os.fsencode(self.applications)})

    def test_the_categories_and_the_large_files(self):
        command = [BUILD / "tarnby-cleaner-cli", "--json", "--home", self.home, "--applications", self.applications]
        junk = json.loads(run(*command, "junk"))
        large = json.loads(run(*command, "large", "--at-least", "1GB"))
        before = tree_of(self.folder / "sample")

        def amount_of(*keys, more=()):
            return amount([*(category for category in junk["categories"] if category["key"] in keys), *more])
        self.grant_both()
        someone = self.person
        someone.starts([PROGRAM])
        someone.presses("Categories", "link")
        someone.reads('Scan in "')
        applications = ("Caches", "Logs", "Remainders")
        ticked = amount_of(*applications, "Trash", "Mails")
        someone.sees("label", byte_count(ticked))  # of both pages
        someone.presses("Media junk")
        someone.sees("label", byte_count(ticked))
        someone.presses("Mail attachments", "check box")
        ticked = amount_of(*applications, "Trash")
        someone.sees("label", byte_count(ticked))

        someone.presses("Large files", "check box")
        someone.sees("slider", "Least size")
        someone.waits_for("the search", lambda: self.rows("Large files"))
        someone.strikes("shift+Tab", *["Right"] * 4)  # from the list back to the slider
        someone.sees("label", "At least 1 GB")
        someone.strikes("Tab", "Down", "space")
        first = large["groups"][0]["items"][0]
        someone.sees("label", f"Selected: {byte_count(first['size'])}")
        someone.presses("Add to cleanup")
        ticked = amount_of(*applications, "Trash", more=[{"paths": [first["path"]]}])
        someone.sees("label", byte_count(ticked))
        someone.presses("Clean")
        asked = f"Remove {byte_count(ticked)} for good?"
        someone.sees("dialog", asked)
        someone.presses("Cancel")
        someone.waits_for("the sheet to go", lambda: not someone.find("dialog", asked))
        self.assertEqual(tree_of(self.folder / "sample"), before)
        someone.presses("Clean")
        self.agree(byte_count(ticked))
        someone.reads('Cleanup in "')
        someone.sees("label", "was cleaned")
        cleaned = {*applications, "Trash"}
        someone.sees("label", byte_count(ticked))
        someone.presses("Done")
        someone.sees("push button", "Scan")
        self.close_window()

        gone = [pathlib.Path(path) for category in junk["categories"] if category["key"] in cleaned
                for path in category["paths"]] + [pathlib.Path(first["path"])]
        self.assertEqual(tree_of(self.folder / "sample"),
                         {path: state for path, state in before.items()
                          if not any(path == top or top in path.parents for top in gone)})
        kept = self.settings()
        self.assertEqual({key: kept[key] for key in ("TotallyCleaned", "Mails", "LargeFiles", "Trash")},
                         {"TotallyCleaned": ticked, "Mails": False, "LargeFiles": True, "Trash": True})

    def test_a_second_start_brings_the_first_window_to_the_front(self):
        self.grant_both()
        self.person.starts([PROGRAM])
        self.person.sees("push button", "Scan")
        window = self.person.waits_for("its window", self.person.window)
        run("xdotool", "windowminimize", window)
        self.person.waits_for("no window", lambda: not self.person.window())
        self.assertEqual(self.person.waits_for_end(subprocess.Popen([PROGRAM])), 0)
        self.person.waits_for("the window in front", lambda: self.person.window() == window
                              and self.person.has_in_front(window))
        self.close_window()
        self.assertEqual(self.settings()["appLaunchCount"], 1)

    def test_closing_the_window_in_the_middle_of_a_scan_quits(self):
        for number in range(8_000):
            place = self.home / "Library" / "Caches" / f"cache {number // 20}"
            if number % 20 == 0:
                place.mkdir(parents=True)
            os.close(os.open(place / str(number), os.O_CREAT | os.O_WRONLY, 0o600))
        before = tree_of(self.folder / "sample")
        self.grant_both()
        program = self.person.starts([PROGRAM])
        self.person.presses("Scan")
        # Seen in a folder that only the scan opens, the program is held there until the window has been told to close.
        handles = pathlib.Path("/proc", str(program.pid), "fd")
        self.person.waits_for("the scan", lambda: any(
            os.readlink(handle).startswith(f"{self.home}/") for handle in handles.iterdir()))
        program.send_signal(signal.SIGSTOP)
        self.person.strikes("alt+F4")
        program.send_signal(signal.SIGCONT)
        self.assertEqual(self.person.waits_for_end(), 0)
        self.assertEqual(tree_of(self.folder / "sample"), before)
        self.assertEqual(self.settings()["appLaunchCount"], 1)


if __name__ == "__main__":
    window.main(__file__)
