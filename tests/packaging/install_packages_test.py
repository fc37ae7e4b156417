"""Runs tools/install-packages on a machine of stand-ins: what it asks of the system, and when. Usage: SOURCE_FOLDER"""

import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

SOURCE = pathlib.Path(sys.argv[1])
POLICY = "{name}:\n  Installed: {installed}\n  Candidate: {candidate}\n  Version table:\n"


class InstallPackages(unittest.TestCase):
    def setUp(self):
        self.top = pathlib.Path(tempfile.mkdtemp(prefix="tarnby-install."))
        self.addCleanup(shutil.rmtree, self.top)
        for folder in ("bin", "tools"):
            (self.top / folder).mkdir()
        shutil.copy(SOURCE / "tools/install-packages", self.top / "tools")
        (self.top / "packages.txt").write_text("# what is needed\nold\nnew\nheld\nabsent\n")

    def stand_in(self, program, lines):
        path = self.top / "bin" / program
        path.write_text("#!/bin/sh\n" + lines)
        path.chmod(0o755)

    def run_with(self, installed, candidates, works=True):
        """What it asked of apt-get, and what it said."""
        calls = self.top / "calls"
        calls.write_text("")
        self.stand_in("dpkg-query", "".join(f"echo '{name} install ok installed'\n" for name in installed))
        self.stand_in("apt-mark", "echo held\n")
        self.stand_in("apt-cache", "cat <<'END'\n" + "".join(
            POLICY.format(name=name, installed=installed.get(name, "(none)"), candidate=candidate)
            for name, candidate in candidates.items()) + "END\n")
        for program in ("apt-get", "sudo"):
            self.stand_in(program, f'echo "$*" >> {calls}\n{"true" if works else "false"}\n')
        done = subprocess.run([self.top / "tools/install-packages"], env={"PATH": f"{self.top}/bin:/usr/bin:/bin"},
                              text=True, stderr=subprocess.PIPE, timeout=60, check=False)
        self.assertEqual(done.returncode, 0, done.stderr)
        return [line.removeprefix("apt-get ") for line in calls.read_text().splitlines()], done.stderr

    def test_asks_only_for_what_is_missing_or_old(self):
        all_there = {"old": "1", "new": "2", "held": "1", "absent": "1"}
        self.assertEqual(self.run_with(all_there, all_there), ([], ""), "what is up to date is left alone")
        self.assertEqual(self.run_with(all_there, all_there | {"old": "2"}), ([], ""), "it looks once a day")
        (self.top / "build/packages-looked-at").unlink()
        self.assertEqual(self.run_with(all_there, {}), ([], ""), "nothing is known where there are no lists")
        (self.top / "build/packages-looked-at").unlink()
        calls, told = self.run_with({"old": "1", "new": "2", "held": "1", "very-absent": "1"},
                                    {"old": "2", "new": "2", "held": "2", "absent": "1"})
        self.assertEqual([call.split()[-1] for call in calls if call.startswith("install")], ["absent", "old"])
        self.assertIn("Bringing up to date: old", told)

    def test_goes_on_where_older_versions_cannot_be_replaced(self):
        calls, told = self.run_with({"old": "1", "new": "2", "held": "1", "absent": "1"}, {"old": "2"}, works=False)
        self.assertEqual(len(calls), 1)
        self.assertIn("older versions", told)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
