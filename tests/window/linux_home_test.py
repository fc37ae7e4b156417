"""A home of the kind that Linux desktops make, from the one folder that is asked for to the cleaned screen."""

import json
import os
import pwd
import shutil
import subprocess

import window
from window import BUILD, ENTRY_BOX, PROGRAM, byte_count, run


class Road(window.Window):
    def setUp(self):
        super().setUp()
        sample = self.folder / "linux"
        run(BUILD / "tools" / "sample-home", "--linux", sample)
        self.home = sample / pwd.getpwuid(os.getuid()).pw_name
        # What the browser of this row is known by: the file of its executable.
        self.browser = self.folder / "bin" / "chromium"
        shutil.copy("/usr/bin/sleep", self.browser)

    def scan(self):
        return json.loads(run(BUILD / "tarnby-cleaner-cli", "scan", "--json", "--home", self.home))

    def test_a_linux_home_asks_for_one_folder_and_spares_what_runs_or_may_be_lost(self):
        someone = self.person
        running = subprocess.Popen([self.browser, "1000"])
        self.addCleanup(lambda: (running.kill(), running.wait()))
        groups = {group["type"]: group for group in self.scan()["groups"]}
        someone.starts([PROGRAM], os.environ | {"HOME": str(self.home)})
        someone.sees("label", "Allow access to your home folder")
        self.assertIsNone(someone.find("push button", "Allow access to the Applications folder"))
        self.pick("Allow access to the home folder", self.home)
        someone.presses("Scan")

        ticked = [item for group in groups.values() for item in group["items"] if item["ticked"]]
        self.expect_selected(byte_count(sum(item["frees"] for item in ticked)))
        someone.strikes("Down", "Down", "Down", "Return")  # opens the browsers
        chromium = next(item for item in groups["browsers"]["items"] if item["label"] == "Chromium")
        self.assertTrue(chromium["running"])
        row = f"Chromium, {byte_count(chromium['frees'])}, not ticked"
        someone.sees("table cell", row)
        self.click_box(row, ENTRY_BOX)  # where the others have their box
        self.expect_selected(byte_count(sum(item["frees"] for item in ticked)))

        someone.presses("Remove")
        self.agree()
        someone.sees("label", "was cleaned")
        self.assertTrue((self.home / ".cache/chromium/Default/Cache/Cache_Data/f_1").exists())
        self.assertTrue((self.home / ".cache/huggingface/hub/model").exists())
        self.assertFalse((self.home / ".cache/thumbnails/large/1f.png").exists())
        self.close_window()


if __name__ == "__main__":
    window.main(__file__)
