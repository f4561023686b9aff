"""The version stands in CMakeLists.txt alone; the log of changes begins with it."""

import re
import subprocess
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[3]
VERSION = re.search(r"^project\(Murmelix VERSION (\d+\.\d+\.\d+)", (ROOT / "CMakeLists.txt").read_text("utf-8"), re.M)[1]
# Which tell of versions: what has changed in each, and files of other versions that tests make up.
TELL_OF_VERSIONS = {"CMakeLists.txt", "CHANGELOG.md"}
MADE_UP = re.compile(r"tests/(unit|windows|fuzz)/(updater|resources)/")


def tracked():
    listed = subprocess.run(["git", "ls-files", "-z"], cwd=ROOT, capture_output=True, check=True, timeout=60).stdout
    return [ROOT / name for name in listed.decode().split("\0") if name]


class TheVersion(unittest.TestCase):
    def test_stands_in_one_place(self):
        number = re.compile(rb"(?<![\d.])" + re.escape(VERSION.encode()) + rb"(?![\d]|\.[1-9])")
        named = []
        for file in tracked():
            name = file.relative_to(ROOT).as_posix()
            if name not in TELL_OF_VERSIONS and not MADE_UP.match(name) and file.is_file():
                data = file.read_bytes()
                if b"\0" not in data and number.search(data):
                    named.append(name)
        self.assertEqual(named, [])

    def test_is_the_latest_of_the_changes(self):
        latest = re.search(r"^## (\S+)", (ROOT / "CHANGELOG.md").read_text("utf-8"), re.M)
        self.assertEqual(latest and latest[1], VERSION)


if __name__ == "__main__":
    unittest.main()
