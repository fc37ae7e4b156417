"""Homes for the safety tests, and runs of the real terminal program over them.

All paths are bytes, since names may be any. Python's own subprocess and os calls take them as they are.
"""
import json
import os
import random
import re
import shutil
import stat
import subprocess
import sys
import tempfile

PLAIN_USER = 65534
SKIPPED = 77


def skip_where_nothing_may_be_traced():
    """A sandbox may forbid one process to trace another."""
    if subprocess.run(["strace", "-o", "/dev/null", "true"], check=False, capture_output=True).returncode != 0:
        print("Skipped: strace may not trace here")
        sys.exit(SKIPPED)


def plain_user_reaches(file):
    """Whether that user may get to a file: root's checkout may lie in a folder that only root may enter."""
    while os.stat(file).st_mode & stat.S_IXOTH:
        if os.path.dirname(file) == file:
            return True
        file = os.path.dirname(file)
    return False


def random_seed():
    """The seed of a random proof: the last word of the command line, or TARNBY_SEED, else another one each time."""
    given = sys.argv[-1] if sys.argv[-1].isdigit() else os.environ.get("TARNBY_SEED")
    return int(given) if given else random.SystemRandom().randrange(1 << 30)


class Home:
    """A fresh tree with a home, an Applications folder, settings, and an "outside" that nothing may touch."""

    def __init__(self, program, granted=b"Applications"):
        self.program = program
        self.granted = granted
        self.top = os.path.realpath(tempfile.mkdtemp(prefix="safety-")).encode()
        for folder in (b"home", granted, b"outside", b"config/tarnby-cleaner"):
            self.folder(folder)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        for folder, names, _ in os.walk(self.top):  # what cannot be entered cannot be emptied
            for name in names:
                path = os.path.join(folder, name)
                if not os.path.islink(path):
                    os.chmod(path, 0o700)
        shutil.rmtree(self.top)

    def path(self, relative=b""):
        return os.path.join(self.top, relative) if relative else self.top

    def folder(self, path):
        os.makedirs(self.path(path), exist_ok=True)

    def file(self, path, size=0, content=None):
        """Sparse, unless it has a content."""
        self.folder(os.path.dirname(path))
        with open(self.path(path), "wb") as file:
            if content is None:
                file.truncate(size)
            else:
                file.write(content)

    def application(self, path, identifier):
        plist = b"<plist><dict><key>CFBundleIdentifier</key><string>%s</string></dict></plist>" % identifier
        self.file(path + b"/Contents/Info.plist", content=plist)

    def age(self):
        """Gives everything an old time of access, which the next reading would renew."""
        for folder, folders, files in os.walk(self.top, topdown=False):
            for name in folders + files:
                os.utime(os.path.join(folder, name), (1_000_000_000, 1_500_000_000), follow_symlinks=False)

    def give_to_plain_user(self):
        for folder, folders, files in os.walk(self.top):
            for name in [b"."] + folders + files:
                os.lchown(os.path.join(folder, name), PLAIN_USER, PLAIN_USER)

    def command(self, *words):
        given = [b"--home", self.path(b"home"), b"--applications", self.path(self.granted), b"--json"]
        return [self.program, *words, *given]

    def run(self, *words, under=(), plain=False):
        """What one run of the program says; `under` is a program to run it under."""
        user = {"user": PLAIN_USER, "group": PLAIN_USER, "extra_groups": []} if plain else {}
        environment = {"XDG_CONFIG_HOME": self.path(b"config"), "XDG_RUNTIME_DIR": self.path(b"run"),
                       "HOME": "/none", "LANG": "C.UTF-8"}
        run = subprocess.run([*under, *self.command(*words)], env=environment, stdin=subprocess.DEVNULL,
                             capture_output=True, cwd="/", **user)
        return Run(run.returncode, json.loads(run.stdout) if run.stdout else {}, run.stderr.decode())

    def snapshot(self, accessed=False):
        """Everything in the tree by path, and what must not change about it: with `accessed` also when it was last
        read. Looking leaves no trace."""
        seen = {}
        pending = [self.top]
        while pending:
            folder = pending.pop()
            handle = os.open(folder, os.O_RDONLY | os.O_DIRECTORY | os.O_NOATIME)
            with os.scandir(handle) as entries:
                names = [os.fsencode(entry.name) for entry in entries]
            for name in names:
                path = os.path.join(folder, name)
                info = os.lstat(path)
                told = (info.st_mode, info.st_uid, info.st_mtime_ns)
                if stat.S_ISLNK(info.st_mode):
                    told += (os.readlink(path),)
                elif stat.S_ISDIR(info.st_mode):
                    pending.append(path)
                else:
                    told += (info.st_size, info.st_blocks)
                if accessed and not stat.S_ISLNK(info.st_mode):
                    told += (info.st_atime_ns,)
                seen[path] = told
            os.close(handle)
        return seen


class Run:
    def __init__(self, status, told, err):
        self.status, self.told, self.err = status, told, err


def is_within(path, tops):
    """Whether one of these is the path or holds it."""
    while path not in tops:
        parent = os.path.dirname(path)
        if parent == path:
            return False
        path = parent
    return True


def as_told(path):
    """A path as the program tells it: what is not UTF-8 is replaced, by how many signs is nobody's matter here."""
    return re.sub("�+", "�", path.decode(errors="replace") if isinstance(path, bytes) else path)


def paths_told(snapshot, told):
    """The entries of a snapshot that were told as paths. No two may be told alike."""
    by_text = {as_told(path): path for path in snapshot}
    return {by_text[as_told(text)] for text in told}


def changes(before, after, may_go):
    """What differs apart from the loss of what may go, and from the times of the folders that lost it."""
    gone = set(before) - set(after)
    lost_something = {os.path.dirname(path) for path in gone}
    wrong = {path: "gone" for path in gone if not is_within(path, may_go)}
    for path, told in after.items():
        if path not in before:
            wrong[path] = "new"
        elif told != before[path] and not (path in lost_something and told[:2] == before[path][:2]):
            wrong[path] = (before[path], told)
    return wrong
