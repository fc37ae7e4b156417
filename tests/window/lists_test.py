"""What is found, and how a person goes through it: scans that are stopped, homes with nothing to find, long lists."""

import json
import os
import pwd

import window
from window import BUILD, OUTLINE, run, said


class Road(window.Window):
    def test_a_scan_that_is_stopped_leads_home_and_the_next_one_finds_everything(self):
        scan = json.loads(run(BUILD / "tarnby-cleaner-cli", "scan", "--json", "--home", self.home, "--applications",
                              self.applications))
        self.grant_both()
        self.start()
        someone = self.person
        someone.presses("Scan")
        someone.presses("Stop")
        someone.presses("Scan")
        self.stop_by_key()
        someone.presses("Categories", "link")
        someone.reads('Scan in "')
        self.stop_by_key()
        someone.presses("Scan")
        self.expect_rows([said(group) for group in scan["groups"]])
        self.close_window()

    def stop_by_key(self):
        self.person.waits_in_front("push button", "Stop")
        self.person.strikes("Escape")
        self.person.sees("push button", "Scan")

    def test_a_home_with_nothing_to_remove_is_told_why(self):
        someone = self.person
        name = pwd.getpwuid(os.getuid()).pw_name
        for number, (places, title) in enumerate((
                (["Library/Logs", "Library/Caches", ".Trash", "Downloads"], "There is nothing to remove"),
                (["Music"], "There was nothing to look at"),
                ([], "There is nothing here yet"))):
            self.home = self.folder / f"home {number}" / name
            self.home.mkdir(parents=True)
            for place in places:
                (self.home / place).mkdir(parents=True)
            self.grant_both()
            self.start()
            someone.presses("Scan")
            someone.sees("label", title)
            self.assertIsNone(someone.find("tree", OUTLINE))
            self.assertIsNone(someone.find("push button", "Remove"))
            someone.waits_in_front("push button", "Done")
            someone.strikes("Return")
            someone.sees("push button", "Scan")
            self.close_window()

    def test_large_files_are_there_at_once_when_the_sheet_comes_again(self):
        self.grant_both()
        self.start()
        someone = self.person
        someone.presses("Categories", "link")
        someone.presses("Media junk")
        someone.presses("Large files", "check box")
        rows = someone.waits_for("the search", lambda: self.rows("Large files"))
        someone.strikes("Down", "shift+F10", "Escape")
        someone.waits_in_front("tree", "Large files")
        self.assertFalse((self.folder / "opened").exists())  # opening the menu alone does nothing
        someone.strikes("Escape")
        someone.waits_for("the sheet to go", lambda: not someone.find("tree", "Large files"))
        someone.presses("Large files", "check box")
        someone.waits_for("the same rows", lambda: self.rows("Large files") == rows)
        someone.presses("Cancel")
        self.close_window()


if __name__ == "__main__":
    window.main(__file__)
