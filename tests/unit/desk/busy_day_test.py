"""The chat log of the tests is what its script writes, and holds all that it promises."""

import importlib.util
import re
import unittest
from pathlib import Path

FOLDER = Path(__file__).resolve().parents[2] / "conversations"


class BusyDay(unittest.TestCase):
    def setUp(self):
        self.bytes = (FOLDER / "busy-day.txt").read_bytes()

    def test_it_is_what_the_script_writes(self):
        found = importlib.util.spec_from_file_location("build_busy_day", FOLDER / "build_busy_day.py")
        script = importlib.util.module_from_spec(found)
        found.loader.exec_module(script)
        self.assertEqual(script.Day(script.SEED).write(), self.bytes)
        self.assertNotEqual(script.Day(script.SEED + 1).write(), self.bytes)

    def test_it_holds_what_logs_hold(self):
        lines = self.bytes.decode("utf-8", "replace").split("\n")
        self.assertGreaterEqual(len(lines), 3000)
        for form, at_least in ((r"^=== .* has joined #", 100), (r"^=== .* has (left|quit)", 100), (r" was kicked off #", 5),
                               (r"^=== \S+ is now known as \S+$", 30), (r"^\[\d\d:\d\d\]  \* \S+ ", 80),
                               (r"(?i)http://www\.", 50), (r":-?[)(DPO|]", 100), (r"\((lol|S|r|birthday)\)", 20),
                               (r"(?i)\b(brb|lol|ic)\b", 80), (r".{1000}", 15), ("\uFFFD", 10), ("\r", 20), ("\0", 2),
                               (r"[\u0590-\u06FF]", 20), (r"[\u3000-\u9FFF]", 20), (r"[\U00010000-\U0010FFFF]", 10),
                               (r"([a-z!?.])\1\1", 50), (r"^\[99:99\]", 2), (r"^$", 2)):
            found = sum(bool(re.search(form, line)) for line in lines)
            self.assertGreaterEqual(found, at_least, form)


if __name__ == "__main__":
    unittest.main(verbosity=2)
