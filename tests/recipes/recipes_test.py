"""The recipes of CONTRIBUTING.md name every place: each is compared with the files in which its example stands."""

import pathlib
import re
import sys
import unittest

TOP = pathlib.Path(sys.argv.pop(1))

# What tells the example of a recipe, wherever it stands.
EXAMPLES = {
    "A category": r"remainders_item|\"[Rr]emainders\"|AboutRemainders|scan_remainders|smart_scan_remainders"
                  r"|outlineRemaindersItem|applications_remainders|store_remainders",
    "A mail program": r"[Aa]irmail",
    "A browser": r"\"GoogleChrome\"|\bGoogleChrome Mozilla\b|\bFirefox\b|firefox_|\"mozilla\"|mozilla_(?!profiles)|\"firefox\"",
    "A setting": r"SkipWarning",
    "A screen": r"RateOnAppStore|rate_on_app_store",
    "A language": r"\"ja\"|\[ja\]|\.ja\.|\bja\.plist",
}
ROOMS = ("files", "text", "platform", "places", "inventory", "leftovers", "engine", "cli", "ui", "app", "packaging",
         "resources")


def files_with(pattern):
    """Files of the product in whose name or content the example stands."""
    for room in ROOMS:
        for path in (TOP / room).rglob("*"):
            name = str(path.relative_to(TOP))
            if path.is_file() and (re.search(pattern, name) or
                                   re.search(pattern, path.read_text(encoding="utf-8", errors="replace"))):
                yield name


def recipes():
    """Title and named files of each; a name that ends in ".*" stands for the header and the source."""
    text = (TOP / "CONTRIBUTING.md").read_text(encoding="utf-8").split("## How to add", 1)[1].split("\n## ", 1)[0]
    for recipe in re.split(r"\n(?=\*\*)", text)[1:]:
        named = re.findall(r"`([\w/.*-]+/[\w/.*-]+)`", recipe)
        both = [name[:-1] + ending for name in named if name.endswith(".*") for ending in ("h", "cpp")]
        yield recipe.split("**")[1], {name for name in named if not name.endswith(".*")} | set(both)


class Recipes(unittest.TestCase):
    maxDiff = None

    def test_name_every_place_of_their_example(self):
        told = dict(recipes())
        self.assertEqual(set(told), set(EXAMPLES))
        for title, pattern in EXAMPLES.items():
            with self.subTest(title):
                self.assertEqual(sorted(told[title]), sorted(files_with(pattern)))


if __name__ == "__main__":
    unittest.main()
