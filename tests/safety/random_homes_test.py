"""What is gone after a removal is what its dry run listed, and nothing else has changed, in homes made at random.
Usage: random_homes_test.py PROGRAM [SEED]; the variable TARNBY_SEED gives a seed, too."""
import concurrent.futures
import os
import random
import re
import stat
import sys
import unittest

from home import PLAIN_USER, Home, as_told, changes, is_within, paths_told, plain_user_reaches, random_seed

HOMES = 240

IDENTIFIERS = [b"com.acme.editor", b"com.acme.editor.pro", b"com.acme.edit", b"org.gone.tool", b"org.gone.toolkit",
               b"org.gone.tool.kit", b"com.apple.thing", b"net.\xc3\xa9t\xc3\xa9.app", b"x.y.z"]
NAMES = [b"Editor", b"Editor Pro", b"editor", b"Edit", b"\xc3\x89diteur", b"a", b".hidden", b"..x", b"new\nline", b"~",
         b"-rf", b"*", b"\xff\xfe", b"bad\xc3.plist", b"N" * 200, b"a b", b"x.app", b"Nested.bundle"]
ENDINGS = [b"", b"", b".plist", b".savedState", b".dmg", b".pkg", b".log"]
PLACES = [b"Library/" + place for place in (
    b"Caches", b"Logs", b"Preferences", b"Containers", b"Saved Application State", b"Application Scripts", b"Cookies",
    b"Application Support", b"Group Containers", b"LaunchAgents", b"WebKit", b"Safari/LocalStorage",
    b"Application Support/Google/Chrome/Default/Thumbnails", b"Application Support/Firefox/Profiles/p/storage",
    b"Containers/com.apple.mail/Data/Library/Mail Downloads", b"Containers/org.gone.tool/Data/Library/Caches")]
PLACES += [b".Trash", b".Trash", b"Downloads", b"Documents", b"Desktop", b"Pictures", b"Applications"]
LINUX_PLACES = [b".cache", b".cache/thumbnails/large", b".cache/vlc", b".cache/evolution", b".cache/rclone/vfs",
                b".cache/mozilla/firefox/p.default/cache2", b".cache/chromium/Default/Cache", b".config", b".config/Signal",
                b".config/mozilla/firefox/p.default/storage/default/https+++a", b".config/chromium/Default",
                b".config/chromium/Default/Service Worker/CacheStorage", b".local/state/nvim", b".npm/_logs",
                b".local/share/Trash/files", b".local/share/Trash/files", b".local/share/Trash/info", b".claws-mail/mimetmp",
                b".var/app/org.gone.tool.kit/cache", b".var/app/org.gone.tool.kit/data", b"snap/tool/common/.cache",
                b".ssh", b"Downloads", b"Documents", b"Desktop"]
# Which only such homes have, and which stay whatever is chosen.
LINUX_KEPT = [b"home/.ssh/id_ed25519", b"home/.cache/keepassxc/keepassxc.ini", b"home/.config/chromium/Default/Login Data",
              b"home/.config/mozilla/firefox/p.default/storage/default/moz-extension+++u/idb/filters.sqlite"]
GROUPS = [b"caches", b"logs", b"remainders", b"browsers", b"mails", b"installs", b"trash"]
CATEGORIES = [b"Caches", b"Logs", b"Remainders", b"Browsers", b"Mails", b"Trash"]


def without_unreadable(err):
    """What was told beside that a place may not be read, which these homes have."""
    return re.sub(r"tarnby-cleaner-cli: [^\n]* may not be read\n", "", err)


def size_of(told):
    """The logical size of what a snapshot tells of."""
    if stat.S_ISLNK(told[0]):
        return len(told[3])
    return told[3] if stat.S_ISREG(told[0]) else 0


class RandomHome(Home):
    def __init__(self, seed):
        self.random = random.Random(seed)
        super().__init__(PROGRAM, b"home/.Trash/box/Applications" if self.chance(6) else b"Applications")
        reachable = os.geteuid() != 0 or plain_user_reaches(self.program)
        self.plain = self.chance(3) and reachable
        self.linux = self.chance(2)
        self.files, self.closed = [], []
        for path in (b"outside/kept", b"outside/com.acme.editor/kept", b"home/Pictures/photo.jpg",
                     b"home/Documents/letter.txt", b"home/Library/Keychains/login.keychain"):
            self.file(path, 30)
            self.files.append(path)
        self.kept = len(self.files)
        if self.linux:
            for path in LINUX_KEPT:
                self.file(path, 30)
                self.files.append(path)
            self.kept = len(self.files)
        places = LINUX_PLACES if self.linux else PLACES
        self.applications = [self.bundle() for _ in range(self.random.randrange(1, 6))]
        for _ in range(self.random.randrange(10, 50)):
            self.entry(b"home/%s/%s" % (self.random.choice(places), self.name()))
        if self.plain and os.geteuid() == 0:
            self.give_to_plain_user()
        for path in self.closed if self.plain else ():
            os.chmod(self.path(path), self.random.choice([0, 0o400, 0o500]))

    def chance(self, of):
        return self.random.randrange(of) == 0

    def name(self):
        return self.random.choice(IDENTIFIERS + NAMES) + self.random.choice(ENDINGS)

    def bundle(self):
        place = self.random.choice([self.granted, self.granted + b"/Sub/Deep", b"home/Applications", b"home/Desktop"])
        path = b"%s/%s.app" % (place, self.random.choice(NAMES[:8]))
        self.application(path, self.random.choice(IDENTIFIERS))
        if self.chance(3):
            self.application(path + b"/Contents/Helpers/Editor.app", self.random.choice(IDENTIFIERS))
        return path

    def entry(self, path, depth=0):
        try:
            self.folder(os.path.dirname(path))
            if os.path.lexists(self.path(path)):
                return
            kind = self.random.randrange(10)
            if kind < 4:
                self.file(path, self.random.choice([0, 1, 500, 10_000_000, 1 << 33]))
                self.files.append(path)
            elif kind < 7 and depth < 4:
                self.folder(path)
                for _ in range(self.random.randrange(5)):
                    self.entry(path + b"/" + self.name(), depth + 1)
                if self.chance(5):
                    self.closed.append(path)
            elif kind == 7:
                away = self.random.choice(self.files + [b"outside", b"home", b"home/Library", b"nowhere"])
                os.symlink(self.path(away), self.path(path))
            elif kind == 8:
                os.link(self.path(self.random.choice(self.files)), self.path(path))
            else:
                os.mknod(self.path(path), 0o600 | self.random.choice([stat.S_IFIFO, stat.S_IFSOCK]))
        except (FileExistsError, NotADirectoryError):
            pass  # a file is in the way

    def removal(self):
        """The words of some removing command."""
        kind = self.random.randrange(2 if self.linux else 3)
        if kind == 2:
            return [b"uninstall", self.path(self.random.choice(self.applications))]
        names = [GROUPS, CATEGORIES][kind]
        chosen = self.random.sample(names, self.random.randrange(len(names)))  # none: all, or what is the default
        everything = [b"--all"] if self.linux and kind == 0 and self.chance(2) else []
        return [[b"clean", b"cleanup"][kind], *everything, *chosen]


class RandomHomes(unittest.TestCase):
    maxDiff = 3000

    def look_and_remove(self, seed):
        with RandomHome(seed) as home:
            words = home.removal()
            plain = home.plain and os.geteuid() == 0
            settings = {home.path(b"config"), home.path(b"config/tarnby-cleaner")}
            before = home.snapshot()
            dry = home.run(*words, b"--dry-run", plain=plain)
            self.assertEqual((dry.status, without_unreadable(dry.err)), (0, ""))
            self.assertEqual(changes(before, home.snapshot(), set()), {}, "a dry run changes nothing")
            run = home.run(*words, b"--yes", plain=plain)
            self.assertEqual(without_unreadable(run.err), "")
            after = home.snapshot()
            listed = paths_told(before, dry.told["would_remove"])
            left = paths_told(before, run.told["left"])
            removed = paths_told(before, run.told["removed"])
            # Each listed entry went as a whole, or was left and told; as root only what is never removed is left.
            self.assertEqual(listed, removed | (left & listed))
            self.assertEqual((removed & set(after), left - set(after)), (set(), set()))
            self.assertTrue(home.plain or not left & listed, left & listed)
            self.assertEqual(run.status, 1 if left else 0)
            self.assertEqual([path for path in before if is_within(path, removed) and path in after], [])
            # What is not at or below a listed entry is as it was.
            wrong = changes(before, after, listed)
            self.assertEqual({path: why for path, why in wrong.items() if not is_within(path, settings)}, {})
            self.assertLessEqual({home.path(path) for path in home.files[:home.kept]}, set(after))
            # Every byte that went counts, once, whichever groups have listed it. A Linux home counts blocks.
            if not home.linux:
                self.assertEqual(run.told["freed"],
                                 sum(size_of(told) for path, told in before.items() if path not in after))
            self.assertEqual(run.told["layout"], "linux" if home.linux else "macos")
            if not left:
                self.assertLessEqual(dry.told["would_free"], run.told["freed"])
            if not left and words[0] != b"uninstall":
                self.assertEqual(run.told["was_cleaned"], dry.told["was_cleaned"])
            return len(removed)

    def test_what_is_gone_is_what_was_listed(self):
        first = random_seed()

        def one(number):
            try:
                return self.look_and_remove(first + number)
            except Exception as error:  # whatever it is, it needs its seed
                raise AssertionError(f"the same again with TARNBY_SEED={first + number}: {error!r}") from error

        with concurrent.futures.ThreadPoolExecutor(os.cpu_count() + 1) as pool:
            removed = sum(pool.map(one, range(HOMES)))
        self.assertGreater(removed, HOMES, "homes that hold next to nothing prove next to nothing")


if __name__ == "__main__":
    PROGRAM = os.path.abspath(sys.argv[1])
    unittest.main(argv=sys.argv[:1])
