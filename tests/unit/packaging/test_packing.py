"""The same files make the same packages, byte for byte, whenever and from wherever they are packed."""

import hashlib
import os
import re
import subprocess
import sys
import tempfile
import unittest
import zipfile
from pathlib import Path

ROOT = Path(__file__).resolve().parents[3]
PACK = ROOT / "packaging" / "pack.py"
VERSION = re.search(r"project\(Murmelix VERSION (\S+)", (ROOT / "CMakeLists.txt").read_text("utf-8"))[1]
DATE = 1_700_000_001  # an odd second: a .zip counts in twos
FILES = {"LICENSE.txt": b"A licence\n", "Murmelix.exe": b"MZ1" * 5000, "MSAGENT.exe": b"MZ2", "tv_enua.exe": b"MZ3",
         "updater.exe": b"MZ4", "MessengerClient.exe": b"MZ5", "conversations/conversation.txt": b"[09:00] <Ann> hello\n",
         "sounds/default/smile.wav": b"RIFF", "sounds/default/wilted-flower.wav": b"RIFF2", "CharPics/Ann.gif": b"GIF",
         "msagent/AgentServer.exe": b"MZ6", "msagent/chars/Ann.acs": b"ACS"}


class Packing(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def stage(self, name, files):
        """A program directory whose files were made in this order, and are as old as the place in it."""
        staged = self.folder / name
        for age, file in enumerate(files):
            (staged / file).parent.mkdir(parents=True, exist_ok=True)
            (staged / file).write_bytes(FILES.get(file, b"more"))
            os.utime(staged / file, (DATE - age * 1000, DATE - age * 1000))
        return staged

    def run_pack(self, *arguments):
        return subprocess.run([sys.executable, "-B", PACK, *map(str, arguments)], capture_output=True, text=True, timeout=200,
                              check=False, env=dict(os.environ, TZ="Asia/Tokyo", LC_ALL="C"))

    def pack(self, staged, out, *more):
        done = self.run_pack("--staged", staged, "--date", DATE, "--out", self.folder / out, "--compression", "zlib", *more)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        return {file.name: file.read_bytes() for file in (self.folder / out).iterdir()}

    def test_twice_the_same_bytes_for_both_kinds_of_windows(self):
        one, other = self.stage("one", FILES), self.stage("a longer name", reversed(FILES))
        for bits in ("64", "32"):
            with self.subTest(bits):
                first, second = self.pack(one, f"first{bits}", "--bits", bits), self.pack(other, f"second{bits}", "--bits", bits)
                self.assertEqual(sorted(first), [f"Murmelix-{VERSION}-win{bits}-portable.zip",
                                                 f"MurmelixSetup-{VERSION}-win{bits}.exe"])
                self.assertEqual({name: hashlib.sha256(data).hexdigest() for name, data in first.items()},
                                 {name: hashlib.sha256(data).hexdigest() for name, data in second.items()})

    def test_another_file_makes_others(self):
        staged = self.stage("one", FILES)
        before = self.pack(staged, "before", "--bits", "64")
        (staged / "msagent" / "chars" / "Ann.acs").write_bytes(b"AC5")
        after = self.pack(staged, "after", "--bits", "64")
        self.assertEqual([name for name in before if before[name] == after[name]], [])

    def test_zip_unpacks_to_one_folder_in_order(self):
        self.pack(self.stage("one", FILES), "out", "--bits", "64", "--only", "zip")
        with zipfile.ZipFile(self.folder / "out" / f"Murmelix-{VERSION}-win64-portable.zip") as archive:
            entries = archive.infolist()
            self.assertEqual([entry.filename for entry in entries],
                             sorted(f"Murmelix/{name}" for name in [*FILES, "READ ME.txt"]))
            self.assertEqual({entry.date_time for entry in entries}, {(2023, 11, 14, 22, 13, 20)})
            self.assertEqual(archive.read("Murmelix/msagent/chars/Ann.acs"), b"ACS")

    def test_sums_are_those_that_sha256sum_checks(self):
        self.pack(self.stage("one", FILES), "out", "--bits", "64")
        self.assertEqual(self.run_pack("--sums", self.folder / "out").returncode, 0)
        check = subprocess.run(["sha256sum", "--check", "--strict", "SHA256SUMS"], cwd=self.folder / "out", capture_output=True,
                               text=True, timeout=60, check=False)
        self.assertEqual((check.returncode, check.stdout.count(": OK")), (0, 2), check.stdout + check.stderr)

    def test_names_that_the_script_would_take_for_something_else_are_refused(self):
        for name in ("sounds/$INSTDIR.wav", 'sounds/a"b.wav', "sounds/`.wav"):
            staged = self.stage(name.encode().hex(), [*FILES, name])
            done = self.run_pack("--staged", staged, "--bits", "64", "--date", DATE, "--out", self.folder / "out")
            self.assertNotEqual(done.returncode, 0)
            self.assertIn("names that a setup cannot carry", done.stderr)
        self.assertFalse((self.folder / "out").exists() and any((self.folder / "out").iterdir()))


if __name__ == "__main__":
    unittest.main()
