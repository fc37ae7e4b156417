"""Makes the Debian package of a build, has it judged, installs it into a folder, runs it from there, removes it.

package_test.py SOURCE_FOLDER BUILD_FOLDER VERSION
"""

import gzip
import json
import os
import pathlib
import plistlib
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest

SOURCE, BUILD, VERSION = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2]), sys.argv[3]
PACKAGING = SOURCE / "packaging"
IDENTIFIER = "com.corvash.tarnby-cleaner"
# The system's tools are meant, the administrator's among them, and English answers.
TOOLS = {"PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "LC_ALL": "C.UTF-8"}


def run(*words, **options):
    return subprocess.run([str(word) for word in words], env=TOOLS | options.pop("env", {}), text=True,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=120, **options)


def files_below(folder):
    return sorted(str(path.relative_to(folder)) for path in folder.rglob("*"))


class Package(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.work = pathlib.Path(tempfile.mkdtemp(prefix="tarnby-package."))
        cls.addClassCleanup(shutil.rmtree, cls.work)
        made = run("cpack", "--config", BUILD / "CPackConfig.cmake", "-B", cls.work, cwd=cls.work, umask=0o077)
        if made.returncode != 0:
            raise AssertionError(made.stdout)
        (cls.package,) = cls.work.glob(f"tarnby-cleaner_{VERSION}_*.deb")
        cls.root = cls.work / "unpacked"
        run("dpkg-deb", "-x", cls.package, cls.root).check_returncode()

    def passes(self, *words, **options):
        result = run(*words, **options)
        self.assertEqual(result.returncode, 0, f"{words}\n{result.stdout}")
        return result.stdout

    def test_lintian_finds_nothing(self):
        self.passes("lintian", "--no-cfg", "--allow-root", "--fail-on", "error,warning", self.package,
                    env={"TMPDIR": str(self.work)})

    def test_desktops_understand_what_it_says_of_itself(self):
        entry = self.root / f"usr/share/applications/{IDENTIFIER}.desktop"
        self.assertEqual(self.passes("desktop-file-validate", entry), "")
        self.passes("appstreamcli", "validate-tree", "--no-net", "--no-color", self.root)
        words = dict(re.findall(r"^(TryExec|Exec|Icon)=(.*)$", entry.read_text(), re.MULTILINE))
        for key in ("TryExec", "Exec"):
            self.assertTrue(os.access(self.root / "usr/bin" / words[key], os.X_OK))
        icons = files_below(self.root / "usr/share/icons/hicolor")
        for size in ("scalable", "16x16", "48x48", "256x256"):
            self.assertTrue(any(icon.startswith(f"{size}/apps/{words['Icon']}.") for icon in icons), icons)

    def test_manual_is_well_formed_and_tells_what_the_help_lists(self):
        pages = self.root / "usr/share/man/man1"
        for page in pages.iterdir():
            self.assertNotIn("standard input", self.passes("man", "--warnings=w", "-l", page))
        manual = self.passes("zcat", pages / "tarnby-cleaner-cli.1.gz")
        told = re.search(r"\.SH COMMANDS.*\.SH EXIT STATUS", manual, re.DOTALL)[0]
        told = re.sub(r"^\.RS.*?^\.RE", "", told, flags=re.DOTALL | re.MULTILINE)  # groups and names, not commands
        told = {word.replace("\\", "") for word in re.findall(r"^\.TP\n\.BI? ([a-z\\-]+)", told, re.MULTILINE)}
        help_text = self.passes(self.root / "usr/bin/tarnby-cleaner-cli", "--help")
        self.assertEqual(told, set(re.findall(r"^  ([a-z-]+) .* {2}\S", help_text, re.MULTILINE)))

    def test_one_version_everywhere(self):
        metainfo = (self.root / f"usr/share/metainfo/{IDENTIFIER}.metainfo.xml").read_text()
        self.assertEqual(re.search(r'<release version="([^"]*)"', metainfo)[1], VERSION)
        changelog = self.root / "usr/share/doc/tarnby-cleaner/changelog.gz"
        self.assertIn(f"tarnby-cleaner ({VERSION})", self.passes("zcat", changelog).splitlines()[0])
        for program in ("tarnby-cleaner", "tarnby-cleaner-cli"):
            self.assertEqual(self.passes(self.root / "usr/bin" / program, "--version"), f"{program} {VERSION}\n")

    def test_nothing_tells_of_the_machine_that_built_it(self):
        for file in (path for path in self.root.rglob("*") if path.is_file()):
            content = gzip.decompress(file.read_bytes()) if file.suffix == ".gz" else file.read_bytes()
            for folder in (SOURCE, BUILD):
                self.assertFalse(os.fsencode(folder) in content, file)

    def test_works_where_it_was_unpacked(self):
        self.passes(BUILD / "tools/sample-home", self.work / "sample")
        (home,) = (entry for entry in (self.work / "sample").iterdir() if entry.name != "Applications")
        words = ("--home", home, "--applications", self.work / "sample/Applications", "--json", "scan")
        found = self.passes(self.root / "usr/bin/tarnby-cleaner-cli", *words, env={"HOME": str(self.work)})
        self.assertGreater(json.loads(found)["total_smart_size"], 10**9)
        resources = self.root / "usr/share/tarnby-cleaner"
        self.assertEqual(files_below(resources), files_below(SOURCE / "resources"))
        completion = self.root / "usr/share/bash-completion/completions/tarnby-cleaner-cli"
        self.assertIn("-F", self.passes("bash", "--norc", "-c", f"source {completion}; complete -p tarnby-cleaner-cli"))

    def test_decodes_pictures_where_the_window_looks_for_that(self):
        program = self.root / "usr/bin" / "../libexec/tarnby-cleaner/tarnby-cleaner-pictures"
        picture = (self.root / f"usr/share/icons/hicolor/48x48/apps/{IDENTIFIER}.png").read_bytes()
        side, length = 20, len(picture)
        done = subprocess.run([program, "icns", "png", "jpeg"], input=struct.pack("=III", 0, side, length) + picture,
                              stdout=subprocess.PIPE, env={}, timeout=60, check=True)
        self.assertEqual(done.stdout[:9], b"+" + struct.pack("=II", side, side))
        self.assertEqual(len(done.stdout), 9 + 4 * side * side)

    def test_leaves_nothing_after_removal(self):
        # An account that is no administrator is one among itself, in a namespace of its own.
        as_administrator = () if os.geteuid() == 0 else ("unshare", "--map-root-user")
        if as_administrator and run(*as_administrator, "true").returncode != 0:
            self.skipTest("installing needs root, or user namespaces, which this machine forbids")
        root = self.work / "installed"
        for folder in ("updates", "info", "triggers"):
            (root / "var/lib/dpkg" / folder).mkdir(parents=True)
        (root / "var/lib/dpkg/status").touch()
        # Small systems tell their dpkg to leave manuals out; here all is wanted.
        dpkg = (*as_administrator, "dpkg", f"--root={root}", "--force-depends", "--path-include=*",
                f"--log={self.work}/dpkg.log")

        def installed():
            return [name for name in files_below(root) if not f"{name}/".startswith(("var/", "var/lib/dpkg/"))]

        self.passes(*dpkg, "--install", self.package)
        self.assertEqual(installed(), files_below(self.root))
        self.passes(*dpkg, "--remove", "tarnby-cleaner")
        self.assertEqual(installed(), [])
        self.assertNotIn("Package: tarnby-cleaner", (root / "var/lib/dpkg/status").read_text())


class MacBundle(unittest.TestCase):
    def test_lists_parse_and_say_what_they_must(self):
        text = (PACKAGING / "macos/Info.plist.in").read_text().replace("@PROJECT_VERSION@", VERSION)
        bundle = plistlib.loads(text.encode())
        self.assertEqual((bundle["CFBundleIdentifier"], bundle["CFBundleShortVersionString"]), (IDENTIFIER, VERSION))
        self.assertEqual(bundle["LSMinimumSystemVersion"], "10.13")
        self.assertEqual(bundle["LSApplicationCategoryType"], "public.app-category.utilities")
        self.assertIs(bundle["NSHighResolutionCapable"], True)
        # Not one right more than the program needs.
        right = "com.apple.security."
        self.assertEqual(plistlib.loads((PACKAGING / "macos/tarnby-cleaner.entitlements").read_bytes()), {
            right + "app-sandbox": True,
            right + "application-groups": [f"QJ4RW7NX2P.{IDENTIFIER}"],
            right + "files.bookmarks.app-scope": True,
            right + "files.user-selected.read-write": True,
        })


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
