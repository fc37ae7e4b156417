"""The window around its screens: access to folders and how it is changed, the menu, the preferences."""

import os
import pathlib
import re

import window
from window import BUILD, PROGRAM, run

HOME, APPLICATIONS = "Allow access to the home folder", "Allow access to the Applications folder"


class Road(window.Window):
    def reads_in_card(self, words):
        self.person.waits_for(f"… {words} …", lambda: any(
            element.getRoleName() == "label" and words in element.name for element, _ in self.person.everything()))

    def menu(self, letter, entry):
        """Chooses an entry of a menu with the keys."""
        self.person.strikes(f"alt+{letter}")
        item = self.person.sees("menu item", entry)
        item.queryAction().doAction(0)
        if self.person.find("menu item", entry):
            self.person.strikes("Escape")

    def test_wrong_folders_keep_the_access_screen_open_and_the_menu_leads_back_to_it(self):
        someone = self.person
        empty = self.folder / "elsewhere" / "Applications"
        empty.mkdir(parents=True)
        someone.starts([PROGRAM])
        self.pick(APPLICATIONS, empty)
        self.reads_in_card("No application is in")
        self.pick(HOME, self.applications)
        self.reads_in_card("is another folder. Pick your home folder")
        self.pick(HOME, self.home)
        self.reads_in_card("No application is in")
        self.close_window()

        someone.starts([PROGRAM])  # what was stored is no better at the next launch
        self.reads_in_card("No application is in")
        self.assertIsNone(someone.find("push button", "Scan"))
        self.pick(APPLICATIONS, self.applications)
        someone.sees("push button", "Scan")

        other = self.folder / "other" / self.home.name
        (other / "Library" / "Logs").mkdir(parents=True)
        (other / "Library" / "Logs" / "only here.log").write_bytes(bytes(5000))
        self.menu("t", "Folder access…")
        someone.sees("push button", "Done")
        self.pick(HOME, self.applications)
        self.reads_in_card("is another folder. Pick your home folder")
        self.assertEqual(self.settings()["home"], os.fsencode(self.home))
        self.pick(HOME, other)
        someone.presses("Done")
        someone.presses("Scan")
        someone.sees("push button", "Remove")
        self.assertTrue(any(row.startswith("Applications logs, 5 KB") for row in self.rows()), self.rows())
        self.close_window()
        self.assertEqual(self.settings()["home"], os.fsencode(other))

    def test_keys_struck_together_begin_one_scan_and_the_window_has_an_icon(self):
        someone = self.person
        self.grant_both()
        self.start()
        someone.waits_in_front("frame", "Tarnby cleaner")
        someone.strikes("--delay", "1", "ctrl+k", "ctrl+r", "ctrl+k", "ctrl+r")
        someone.reads('Scan in "')
        self.assertIsNone(someone.find("push button", "Remove"))
        someone.sees("push button", "Media junk")  # the pages that the first key asked for
        properties = run("xprop", "-notype", "-id", someone.window(), "_NET_WM_ICON")
        self.assertRegex(properties, re.compile("Icon \\(|= [0-9]"))
        self.close_window()

    def test_what_is_not_to_be_asked_again_is_taken_back_and_what_is_not_installed_is_not_shown(self):
        someone = self.person
        self.grant_both()
        self.set(SkipWarning="true", appLaunchCount=8)
        self.start()
        someone.waits_in_front("push button", "Scan")
        someone.strikes("ctrl+comma")
        someone.waits_in_front("check box", "Ask before removing")
        self.assertIsNone(someone.find("check box", "Scheduler"))
        someone.strikes("space", "Escape")
        someone.presses("Scan")
        someone.presses("Remove")
        someone.presses("Cancel")
        self.close_window()
        self.assertFalse(self.settings()["SkipWarning"])
        run("test", "-d", self.home / "Library" / "Caches")

    def test_browsers_are_chosen_beside_the_row_that_they_change(self):
        someone = self.person
        self.grant_both()
        self.start()
        someone.presses("Categories", "link")
        row = someone.sees("check box", "Browsers")
        someone.presses("About Browsers")
        someone.presses("Choose browsers…")
        first = someone.sees("check box", "Google Chrome").queryComponent().getExtents(0)
        place = row.queryComponent().getExtents(0)
        self.assertGreater(first.y, place.y + place.height)  # below the row
        someone.presses("Done")
        someone.waits_for("the panel to go", lambda: not someone.find("push button", "Done"))
        self.close_window()


if __name__ == "__main__":
    window.main(__file__)
