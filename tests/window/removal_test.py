"""A removal that takes its time: what it shows meanwhile, and how it is stopped."""

import fcntl
import os

import window
from window import BUILD, byte_count, tree_of

FOLDERS, FILES, BYTES = 100, 60, 1000


class Road(window.Window):
    def begin_removal(self):
        """One that goes on only when the file that this returns is closed."""
        caches = self.home / "Library" / "Caches"
        content = b"x" * BYTES
        for folder in range(FOLDERS):
            place = caches / f"many {folder}"
            place.mkdir(parents=True)
            for file in range(FILES):
                handle = os.open(place / str(file), os.O_CREAT | os.O_WRONLY, 0o600)
                os.write(handle, content)
                os.close(handle)
        self.grant_both()
        someone = self.person
        hold = open(self.folder / "hold", "w")
        fcntl.flock(hold, fcntl.LOCK_EX)
        held = [str(BUILD / "tests" / "held-window")]
        self.program = someone.starts(held, {**os.environ, "TARNBY_TEST_HOLD": hold.name})
        someone.presses("Scan")
        someone.presses("Remove")
        self.before = bytes_of(tree_of(self.home))
        self.agree()
        someone.sees("push button", "Stop")
        return hold

    def test_a_removal_is_stopped_and_tells_what_went_and_what_stayed(self):
        hold, someone = self.begin_removal(), self.person
        someone.strikes("alt+F4")
        someone.sees("dialog", "Stop removing?")
        someone.presses("Keep going")
        someone.waits_for("the question to go", lambda: not someone.find("dialog", "Stop removing?"))
        someone.reads("removed of ")
        someone.strikes("Escape")
        hold.close()
        someone.reads("Stopped. ")
        gone = self.before - bytes_of(tree_of(self.home))
        self.assertTrue(0 < gone < self.before)
        someone.sees("label", byte_count(gone))
        someone.sees("label", f"Cleaned so far: {byte_count(gone)}")
        someone.presses("Show list")
        someone.reads("~/Library/Caches/many ")
        someone.presses("Close")
        self.close_window()
        self.assertEqual(self.settings()["TotallyCleaned"], gone)

    def test_a_session_that_ends_stops_a_removal_and_counts_what_went(self):
        hold, someone = self.begin_removal(), self.person
        someone.reads("removed of ")
        self.program.terminate()
        hold.close()
        self.assertEqual(self.program.wait(timeout=60), 0)
        gone = self.before - bytes_of(tree_of(self.home))
        self.assertGreater(gone, 0)
        self.assertEqual(self.settings()["TotallyCleaned"], gone)


def bytes_of(tree):
    """Of the files and links of a tree."""
    return sum(state[2] for state in tree.values() if len(state) > 2)


if __name__ == "__main__":
    window.main(__file__)
