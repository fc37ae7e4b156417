"""What comes at some launches, or until it was answered: the scheduler's offer, the companion, the rating, the guide to
full disk access. The program really ends and starts again in between."""

import configparser
import os
import time

import window
from window import BUILD, CONFIG, byte_count, run

ENTRY = CONFIG / "autostart" / "com.corvash.tarnby-cleaner-scheduler.desktop"
OFFER = "Keep your disk clean?"
GROUP_SUITE = "QJ4RW7NX2P.com.corvash.tarnby-cleaner"
# Files whose mode keeps everybody out keep root out, too.
NO_OVERRIDE = ["setpriv", "--bounding-set=-dac_override,-dac_read_search", "--"] if os.geteuid() == 0 else []


class Road(window.Window):
    def setUp(self):
        super().setUp()
        self.grant_both()

    def expect_entry(self, **also):
        """What is in the autostart entry on the disk, and nothing else."""
        def entry():
            read = configparser.ConfigParser(interpolation=None)
            read.optionxform = str
            read.read_string(ENTRY.read_text())
            return read
        program = "tarnby-cleaner-scheduler"
        expected = {"Type": "Application", "NoDisplay": "true", "Name": program, "TryExec": program, "Exec": program}
        self.person.waits_for("the autostart entry", lambda: dict(entry()["Desktop Entry"]) == expected | also)

    def expect_no_entry(self):
        self.person.waits_for("no autostart entry", lambda: not os.path.lexists(ENTRY))

    def install_scheduler(self):
        program = self.opener.with_name("tarnby-cleaner-scheduler")
        program.write_text("#!/bin/sh\n")
        program.chmod(0o755)

    def clean(self, button):
        self.person.presses(button)
        self.person.presses("Remove")

    def test_the_scheduler_is_offered_from_the_fifth_launch_until_answered_and_starts_at_login(self):
        someone = self.person
        self.install_scheduler()
        for launch in range(1, 5):
            self.start()
            self.close_window()
            self.assertEqual(self.settings()["appLaunchCount"], launch)
        self.start()
        someone.sees("dialog", OFFER)
        self.close_window()  # that is no answer
        self.start()
        someone.presses("Enable")
        self.expect_entry()
        self.close_window()
        kept = self.settings()
        self.assertEqual([kept[key] for key in ("appLaunchCount", "UOLaunchCount", "Scheduler", "EnableScheduler")],
                         [6, 6, True, True])
        self.assertIn("Date", self.settings(GROUP_SUITE))

        everyone = self.folder / "everyone"
        (everyone / "autostart").mkdir(parents=True)
        (everyone / "autostart" / ENTRY.name).write_text("[Desktop Entry]\nType=Application\nName=x\nExec=x\n")
        for environment in (None, os.environ | {"XDG_CONFIG_DIRS": str(everyone)}):
            self.start(environment=environment)
            begun = time.monotonic()
            someone.waits_in_front("push button", "Scan")
            someone.strikes("alt+t", "Down", "Return")  # the program's menu
            someone.waits_in_front("check box", "Ask before removing")
            someone.strikes("Tab", "space")
            self.expect_no_entry() if environment is None else self.expect_entry(Hidden="true")
            someone.strikes("Escape", "ctrl+comma")
            someone.waits_in_front("check box", "Ask before removing")
            someone.presses("Scheduler", "check box")
            self.expect_entry()
            someone.waits_for("the time of the offer", lambda: time.monotonic() > begun + 2)
            self.assertIsNone(someone.find("dialog", OFFER))
            self.close_window()
            self.assertTrue(self.settings()["Scheduler"])

    def test_where_nothing_can_start_at_login_the_window_says_so_and_goes_on(self):
        someone = self.person
        self.install_scheduler()
        ENTRY.parent.write_text("not a folder")
        self.set(appLaunchCount=4)
        self.start()
        someone.presses("Enable")
        notice = someone.sees("dialog", "The scheduler could not be switched")
        self.assertIn(str(ENTRY.parent), notice.description)
        someone.presses("Close")
        someone.waits_in_front("push button", "Scan")
        self.assertEqual(ENTRY.parent.read_text(), "not a folder")

        ENTRY.parent.unlink()
        ENTRY.parent.mkdir()
        ENTRY.write_bytes(b"[Desktop Ent\0\n=\xff")
        someone.strikes("ctrl+comma")
        someone.waits_in_front("check box", "Ask before removing")
        someone.strikes("Tab", "space")
        self.expect_no_entry()
        ENTRY.symlink_to("gone")
        someone.strikes("space")
        self.expect_entry()
        someone.presses("Close")
        someone.presses("Scan")
        someone.sees("push button", "Remove")
        self.close_window()
        self.assertTrue(self.settings()["Scheduler"] and self.settings()["EnableScheduler"])

    def test_the_tenth_launch_tells_of_the_companion_and_then_asks_for_a_rating(self):
        someone = self.person
        self.set(appLaunchCount=8, UOLaunchCount=8, UOAppearence=2, EnableScheduler="true")
        self.start()  # the ninth counts, and brings nothing
        self.close_window()
        self.start()
        self.clean("Scan")
        someone.presses("Do not ask again", "check box")
        self.agree()
        someone.presses("Download")
        companion = "appstream://com.corvash.uninstaller-orvane"
        self.expect_opened(companion)
        (self.home / ".Trash" / "again").write_bytes(b"made since")
        self.clean("Find now")
        rating = someone.sees("dialog", "Do you like Tarnby cleaner?")
        total = self.settings()["TotallyCleaned"]
        self.assertGreater(total, 1e9)
        self.assertEqual(rating.description,
                         f"For all time used of Tarnby cleaner you cleaned up {byte_count(total)}.")
        someone.presses("Rate")
        self.expect_opened(companion, "appstream://com.corvash.tarnby-cleaner")
        self.close_window()
        kept = self.settings()
        self.assertEqual([kept[key] for key in ("appLaunchCount", "UOLaunchCount", "UOAppearence", "RateOnStore",
                                                "TotallyCleaned")], [10, 10, 3, True, total])

    def test_the_guide_to_full_disk_access_comes_until_access_is_there(self):
        someone = self.person
        probe = self.home / "Library" / "Safari" / "CloudTabs.db"
        probe.write_bytes(b"tabs")
        probe.chmod(0)
        guarded = [*NO_OVERRIDE, str(BUILD / "tests" / "guarded-window")]
        pages = ("Some folders need your permission", "Open the settings", "Come back and check")
        self.start(*guarded)
        someone.sees("label", pages[0])
        self.assertTrue(self.settings()["PrivacyAccess"])
        for button, before, after in (("Next", 0, 1), ("Next", 1, 2), ("Back", 2, 1), ("Back", 1, 0)):
            someone.presses(button)
            someone.sees("label", pages[after])
            someone.waits_for("the page before to go", lambda gone=pages[before]: not someone.find("label", gone))
        someone.presses("Open settings")
        self.expect_opened("x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles")
        someone.presses("Check again")
        someone.sees("label", "Access is still missing.")
        run("xdotool", "windowactivate", "--sync", someone.window())
        self.close_window()  # the guide goes with it
        self.assertFalse(self.settings()["PrivacyFullDisk"])

        self.start(*guarded)
        someone.sees("label", pages[0])
        probe.chmod(0o600)
        someone.presses("Check again")
        someone.waits_for("the guide to go", lambda: not someone.find("label", pages[0]))
        someone.presses("Scan")
        someone.sees("push button", "Remove")
        self.close_window()
        self.assertTrue(self.settings()["PrivacyFullDisk"])


if __name__ == "__main__":
    window.main(__file__)
