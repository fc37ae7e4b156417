"""Every system call of a removal and of a saving of settings fails in turn, in every way it can, and the program is
killed at each in turn. What must hold then is told by `Bearing.check`. Usage: faults_test.py PROGRAM"""
import concurrent.futures
import datetime
import os
import plistlib
import re
import stat
import subprocess
import sys
import tempfile
import unittest

from home import Home, as_told, changes, is_within, paths_told, skip_where_nothing_may_be_traced

ERRORS = ["EACCES", "EIO", "ENOSPC", "EINTR", "ENOENT"]
OF_A_SYSTEM_AT_ITS_LIMITS = ["ENOMEM", "EMFILE"]
CALLS = ("openat openat2 newfstatat getdents64 read readlink unlinkat mkdir flock write writev fchmod fsync rename "
         "renameat2 unlink lseek").split()
SETTINGS = {"TotallyCleaned": 1000, "helper_url": "/kept", "Trash": False}
LAST_TIME = datetime.datetime(2001, 2, 3)
SHARED = b"config/tarnby-cleaner/QJ4RW7NX2P.com.corvash.tarnby-cleaner.plist"  # with the program that cleans at times


def small_home():
    """Names stand once, since a fault is aimed at one by its name."""
    home = Home(PROGRAM)
    home.application(b"Applications/Editor.app", b"com.acme.editor")
    for path in (b"Caches/org.gone.tool/c1", b"Caches/org.gone.tool/c2/c3", b"Logs/l1", b"Logs/l2/l3", b"Logs/l2/l4",
                 b"Preferences/com.acme.editor.plist", b"Preferences/org.gone.tool.plist"):
        home.file(b"home/Library/" + path, 100)
    for path in (b"home/.Trash/t1/t2", b"home/Documents/kept", b"outside/kept"):
        home.file(path, 10)
    os.symlink(b"../../outside/kept", home.path(b"home/.Trash/t3"))
    home.file(b"dotfiles/real", content=plistlib.dumps(SETTINGS))
    os.symlink(b"../../dotfiles/real", home.path(b"config/tarnby-cleaner/settings.plist"))
    home.file(SHARED, content=plistlib.dumps({"Date": LAST_TIME, "theirs": 1}))
    return home


def tracing(fault, paths=(), follow=False):
    """The words before a command that has to bear the fault. Without `follow` only the first thread has to, so that its
    calls can be counted."""
    aim = [word for path in paths for word in (b"-P", path)]
    call = re.match(r"inject=(\w+)", fault)[1]
    return ["strace", *(["-f"] if follow else []), "-o", "/dev/null", "-e", "trace=" + call, *aim, "-e", fault]


class Bearing:
    """What a command that removes must bear."""
    maxDiff = 2000

    @classmethod
    def setUpClass(cls):
        with small_home() as home:
            before = home.snapshot()
            told = home.run(*cls.command, b"--dry-run").told
            cls.listed = {os.path.relpath(path, home.top) for path in paths_told(before, told["would_remove"])}
            cls.bytes = told["would_free"]
            below = {path for path in before if is_within(path, {home.path(path) for path in cls.listed})}
            cls.below = {os.path.relpath(path, home.top): stat.S_ISDIR(before[path][0]) for path in below}

    def check(self, home, before, run):
        """The promise, whatever failed."""
        after = home.snapshot()
        listed = {home.path(path) for path in self.listed}
        # Nothing that was not listed has changed, and of what was listed nothing but its presence.
        settings = {home.path(path) for path in (b"dotfiles", b"dotfiles/real", b"dotfiles/real.lock", SHARED,
                                                 SHARED + b".lock", os.path.dirname(SHARED))}
        others = {path: why for path, why in changes(before, after, listed).items() if path not in settings}
        killed = run.status < 0 or run.status == 137
        litter = {path for path in others if re.fullmatch(rb".*(/dotfiles/real|\.tarnby-cleaner\.plist)\.unfinished-\w{6}", path)}
        self.assertEqual({path: why for path, why in others.items() if not (killed and path in litter)}, {})
        # The settings are whole, the old ones or the new ones, and what others wrote is in both.
        self.assertTrue(os.path.islink(home.path(b"config/tarnby-cleaner/settings.plist")))
        with open(home.path(b"dotfiles/real"), "rb") as file:
            kept = plistlib.load(file)
        self.assertEqual({key: kept.get(key) for key in ("helper_url", "Trash")},
                         {"helper_url": "/kept", "Trash": False})
        with open(home.path(SHARED), "rb") as file:
            shared = plistlib.load(file)
        self.assertEqual(shared["theirs"], 1)
        self.assertGreaterEqual(shared["Date"], LAST_TIME)
        # Bytes are counted once, and only after the last attempt to remove.
        gone = {path for path in listed if path not in after}
        counted = kept["TotallyCleaned"] - 1000
        self.assertLessEqual(counted, self.bytes)
        if killed:
            self.assertTrue(counted == 0 or gone == listed)
        elif "removed" in run.told:
            freed = min(run.told["freed"], run.told["was_cleaned"])
            if run.told["left"]:
                self.assertLessEqual(counted, freed)
            else:
                self.assertEqual(counted, 0 if "the total of all runs could not be saved" in run.err else freed)
            is_date_saved = "the date of this run could not be saved" not in run.err
            self.assertEqual(shared["Date"] != LAST_TIME, "date" in run.told and is_date_saved)
            # It says what went and what was left.
            self.assertLessEqual({as_told(path) for path in gone}, {as_told(path) for path in run.told["removed"]})
            for path in run.told["removed"]:
                self.assertNotIn(path.encode(), after)
            for path in run.told["left"]:
                self.assertIn(path.encode(), after)
            cut_short = "could not be read" in run.err
            self.assertEqual(run.status, 1 if run.told["left"] else 4 if cut_short else 0)
        elif "the result could not be written" in run.err:
            self.assertEqual((gone, counted, run.status), (listed, self.bytes, 1))
        else:
            self.assertEqual((gone, counted), (set(), 0))
            self.assertRegex(run.err, "^tarnby-cleaner-cli: ")

    def bear(self, fault, paths=(), follow=False, must_do=False):
        """Why one run has not borne the fault; None when it has. With `must_do` nothing may come of the fault at all."""
        with small_home() as home:
            before = home.snapshot()
            aims = [path.replace(b"%", home.top) for path in paths]
            run = home.run(*self.command, b"--yes", under=tracing(fault, aims, follow))
            run.err = re.sub("strace: .*\n", "", run.err)
            try:
                self.check(home, before, run)
                if must_do or "EINTR" in fault:
                    self.assertEqual((run.status, run.err), (0, ""))
                    self.assertEqual(len(run.told["removed"]), len(self.listed))
                return None
            except AssertionError as error:
                return f"{fault} {paths}: {error}; it said {run.status} {run.told} {run.err}"

    def all_bear(self, runs):
        self.assertGreater(len(runs), 20)
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count() + 1) as pool:
            failed = [why for why in pool.map(lambda run: self.bear(*run), runs) if why]
        self.assertEqual("\n\n".join(failed[:3]), "", f"{len(failed)} of {len(runs)} failed")

    def faults_after(self, first, words):
        """Each call of the first thread from one of this kind on, numbered by its kind."""
        with small_home() as home, tempfile.NamedTemporaryFile("r") as record:
            home.run(*words, under=["strace", "-o", record.name, "-e", "trace=" + ",".join(CALLS)])
            names = re.findall(r"^(\w+)\(", record.read(), re.M)
        begin = names.index(first)
        for at in range(begin, len(names)):
            yield names[at], names[:at + 1].count(names[at])

    def test_few_handles(self):
        version = ["prlimit", "--nofile=8:8", PROGRAM, "--version"]
        if subprocess.run(version, check=False, capture_output=True).returncode != 0:
            self.skipTest("what watches this build needs handles of its own")
        for handles in (8, 9, 10, 11, 12, 16, 20):
            with self.subTest(handles=handles), small_home() as home:
                before = home.snapshot()
                run = home.run(*self.command, b"--yes", under=["prlimit", f"--nofile={handles}:{handles}"])
                self.check(home, before, run)
                if handles >= 12:
                    self.assertEqual((run.status, run.err), (0, ""), "so many are enough")
                    self.assertEqual(len(run.told["removed"]), len(self.listed))

    def test_each_call_of_the_first_thread(self):
        runs = []
        for call, number in self.faults_after("unlinkat", (*self.command, b"--yes")):
            whats = ["error=" + error for error in ERRORS] + ["signal=KILL"]
            runs += [(f"inject={call}:{what}:when={number}",) for what in whats]
        self.all_bear(runs)


class Clean(Bearing, unittest.TestCase):
    command = (b"clean",)

    def test_each_entry_by_its_name_in_whatever_thread(self):
        runs = []
        bundle = b"Applications/Editor.app"
        looked_at = {b"Applications": True, b"home": True, bundle: True, bundle + b"/Contents": True,
                     bundle + b"/Contents/Info.plist": False}
        for path, is_folder in {**self.below, **looked_at}.items():
            aims = [b"%/" + path, os.path.basename(path)]
            for call in ("unlinkat", "newfstatat", "openat", *(("openat2", "getdents64") if is_folder else ())):
                for error in ERRORS + (OF_A_SYSTEM_AT_ITS_LIMITS if path in looked_at else []):
                    if path.startswith(bundle) and error == "ENOENT" and call in ("newfstatat", "openat2"):
                        continue  # then it is not there, and nobody knows who it was
                    first = ":when=1" if error == "EINTR" else ""  # else it would be asked for ever
                    runs.append((f"inject={call}:error={error}{first}", aims, True))
            runs.append(("inject=unlinkat:signal=KILL", aims, True))
        self.all_bear(runs)

    def test_a_system_that_gives_no_threads(self):
        self.assertIsNone(self.bear("inject=clone3:error=EAGAIN", follow=True))
        after_the_scan = "inject=clone3:error=EAGAIN:when=3+"  # one that starts others, one that scans
        self.assertIsNone(self.bear(after_the_scan, follow=True, must_do=True))


class Cleanup(Bearing, unittest.TestCase):
    """The other road: it measures again, and writes the time into settings that are shared with another program."""
    command = (b"cleanup", b"Caches", b"Logs", b"Remainders", b"Trash")

    def test_settings_that_cannot_be_read_decide_nothing(self):
        for call in ("newfstatat", "openat", "read"):
            for error in ("EACCES", "EIO"):
                with self.subTest(call=call, error=error), small_home() as home:
                    before = home.snapshot()
                    paths = [home.path(b"dotfiles/real"), home.path(b"config/tarnby-cleaner/settings.plist")]
                    run = home.run(b"cleanup", b"--yes", under=tracing(f"inject={call}:error={error}", paths))
                    self.assertEqual((run.status, run.told), (3, {}))
                    self.assertIn("cannot be read", run.err)
                    self.assertEqual(changes(before, home.snapshot(), set()), {}, "Trash is switched off in them")


if __name__ == "__main__":
    skip_where_nothing_may_be_traced()
    PROGRAM = os.path.abspath(sys.argv.pop(1))
    unittest.main()
