"""Records the system calls of every command that only looks, and of every dry run: none changes the disk, none leaves
the machine. Usage: looking_test.py PROGRAM"""
import os
import re
import sys
import tempfile
import unittest

from home import Home, skip_where_nothing_may_be_traced

COMMANDS = [
    (b"scan",), (b"junk",), (b"large",), (b"apps",), (b"unused",), (b"languages",),
    (b"app", b"%Applications/Editor.app"),
    (b"clean", b"--dry-run"), (b"cleanup", b"--dry-run"),
    (b"uninstall", b"%Applications/Editor.app", b"--dry-run"),
]

# Everything that can change a disk, under all its names; opening and writing are looked at more closely.
CHANGING = re.compile(r"""(unlink|rmdir|rename|mkdir|mknod|link|symlink|chmod|fchmod|chown|lchown|fchown|utime|futimes|
    truncate|ftruncate|fallocate|setxattr|lsetxattr|fsetxattr|removexattr|lremovexattr|fremovexattr|creat|mount|umount|
    copy_file_range|sendfile|splice|io_uring_setup|pwrite|swapon|acct|quotactl)(at)?(\d+|at2|2|v|v2|64|ns)?$""", re.X)
WRITING_FLAGS = re.compile(r"O_WRONLY|O_RDWR|O_CREAT|O_TRUNC|O_TMPFILE|O_APPEND")
# The C library asks for the name cache of the account database, on this machine, if there is one.
LOCAL = re.compile(r"socket\(AF_UNIX|connect\(\d+(<.*?>)?, \{sa_family=AF_UNIX")
NETWORK = re.compile(r"(socket|socketpair|connect|bind|listen|accept4?|send(to|msg|mmsg)?)$")


def offence(line):
    """Why a line of the record is one that should not be there; None for most."""
    call = re.match(r"(?:\d+ +)?(\w+)\(", line)
    if not call:
        return None
    name = call[1]
    if CHANGING.match(name):
        return "changes the disk"
    if name.startswith("open") and WRITING_FLAGS.search(line) and '"/dev/null"' not in line:
        return "opens for writing"
    if name in ("write", "writev") and not re.search(r"writev?\([12][<,]", line) and "eventfd" not in line:
        return "writes to something else than its output"
    if NETWORK.match(name) and not LOCAL.search(line):
        return "talks to somebody"
    return None


class Looking(unittest.TestCase):
    def test_changes_nothing_and_talks_to_nobody(self):
        with Home(PROGRAM) as home:
            home.application(b"Applications/Editor.app", b"com.acme.editor")
            home.file(b"Applications/Editor.app/Contents/Resources/de.lproj/x", 10)
            for path in (b"Library/Logs/a/b", b"Library/Caches/org.gone.tool/c", b".Trash/d", b"Downloads/e.dmg",
                         b"Library/Preferences/org.gone.tool.plist", b"Library/Application Support/Editor/f",
                         b"Library/Application Support/Google/Chrome/Default/Thumbnails/g", b"Documents/h.mov"):
                home.file(b"home/" + path, 20_000_000)
            home.age()
            before = home.snapshot(accessed=True)
            for command in COMMANDS:
                words = [home.path(word[1:]) if word.startswith(b"%") else word for word in command]
                with self.subTest(command=command), tempfile.NamedTemporaryFile("r") as record:
                    run = home.run(*words, under=["strace", "-f", "-y", "-o", record.name])
                    self.assertEqual((run.status, run.err), (0, ""))
                    self.assertTrue(run.told, "it had something to tell")
                    lines = record.read().splitlines()
                    self.assertGreater(len(lines), 100)
                    self.assertEqual([(offence(line), line) for line in lines if offence(line)], [])
                    self.assertEqual(home.snapshot(accessed=True), before, "not even a time of access is renewed")


if __name__ == "__main__":
    skip_where_nothing_may_be_traced()
    PROGRAM = os.path.abspath(sys.argv.pop(1))
    unittest.main()
