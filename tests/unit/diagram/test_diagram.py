"""The diagram of the architecture shows the source as it is, whose folders include one another downwards alone."""

import sys
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[3]
sys.path.insert(0, str(ROOT / "tools" / "diagram"))

import diagram  # noqa: E402


class Diagram(unittest.TestCase):
    def planted(self, files):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        for path, text in files.items():
            file = Path(folder.name) / path
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_text(text, "utf-8")
        return Path(folder.name)

    def test_the_picture_of_the_documents_is_that_of_the_source(self):
        self.assertEqual((ROOT / "docs" / "architecture.svg").read_text("utf-8"), diagram.draw(),
                         "draw it again: tools/diagram/diagram.py")

    def test_an_include_belongs_to_the_deepest_folder_and_to_a_module_that_stands_for_itself(self):
        root = self.planted({"app/main.cpp": '#include "common/com/error.h"\n#include "common/text.h"\n'
                                             '#include "matchups/matchup_store.h"\n#include "app/pages.h"\n#include <map>\n',
                             "app/pages.cpp": '#include "platform/system.h"\n'})
        names = ["app", "app/settings", "matchups", "matchups/matchup_store", "platform", "common/com", "common"]
        found = diagram.read(root, names)
        self.assertEqual(found["app"], {"common/com", "common", "matchups/matchup_store", "app/settings"})
        self.assertEqual(found["app/settings"], {"platform"})
        self.assertEqual(found["matchups"], set())

    def test_what_follows_from_other_arrows_is_left_out(self):
        self.assertEqual(diagram.reduced({"a": {"b", "c"}, "b": {"c"}, "c": set()}), {"a": {"b"}, "b": {"c"}, "c": set()})

    def test_a_folder_stands_below_all_that_include_it(self):
        self.assertEqual(diagram.rows({"c": set(), "a": {"b", "c"}, "b": {"c"}, "d": set()}), [["a", "d"], ["b"], ["c"]])

    def test_a_circle_is_refused_by_its_names(self):
        with self.assertRaisesRegex(diagram.Cycle, "^b -> c -> b$"):
            diagram.rows({"a": {"b"}, "b": {"c"}, "c": {"b"}})


if __name__ == "__main__":
    unittest.main()
