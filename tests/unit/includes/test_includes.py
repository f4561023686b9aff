"""tests/includes finds what is planted in a tree of its own, and nothing else."""

import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

CHECK = Path(__file__).resolve().parents[2] / "includes"


class Includes(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.root = Path(self.folder.name)
        self.plant("tests/includes", "")
        shutil.copy(CHECK, self.root / "tests" / "includes")
        self.plant("common/text.h", "#pragma once\n#include <string>\n")

    def plant(self, path, text):
        (self.root / path).parent.mkdir(parents=True, exist_ok=True)
        (self.root / path).write_text(text, encoding="utf-8")

    def faults(self, path, text):
        self.plant(path, text)
        done = subprocess.run(["python3", "-B", self.root / "tests" / "includes", path], capture_output=True, text=True,
                              timeout=60)
        self.assertEqual(done.returncode, 1 if done.stderr else 0, done.stderr)
        return done.stderr.splitlines()

    def test_headers_of_the_project_and_of_the_standard_library_pass(self):
        self.assertEqual(self.faults("app/a.cpp", '#include "common/text.h"\n\n#include <vector>\n#  include <cstdint>\n'), [])

    def test_every_header_of_the_system_is_found(self):
        for header in ("windows.h", "Windows.h", "windowsx.h", "commctrl.h", "shellapi.h", "ole2.h", "sapi.h", "rpc.h",
                       "sys/types.h", "unistd.h"):
            with self.subTest(header):
                self.assertEqual(self.faults("app/a.cpp", f"#include <string>\n#include <{header}>\n"),
                                 [f"app/a.cpp:2: includes <{header}>"])

    def test_no_way_of_writing_it_escapes(self):
        for line in ('#include "windows.h"', "#include<windows.h>", "  #  include <windows.h> // why", "%:include <windows.h>",
                     "# /* here */ include <windows.h>", "#inc\\\nlude <windows.h>", "#define W <windows.h>\n#include W",
                     '#include "../../usr/include/windows.h"', '#include "common/missing.h"', "#include_next <windows.h>"):
            with self.subTest(line):
                self.assertEqual(len(self.faults("app/a.h", line + "\n")), 1)

    def test_what_is_commented_out_is_no_include(self):
        self.assertEqual(self.faults("app/a.cpp", "// #include <windows.h>\n/* \n#include <windows.h>\n*/\n"), [])

    def test_the_folders_that_carry_things_out_may(self):
        for folder in ("ui/win32", "platform/win32", "common/com", "companions/agent/stage/windows",
                       "companions/agent/voice/win32", "tests/windows/program", "bench/windows/list"):
            with self.subTest(folder):
                self.assertEqual(self.faults(f"{folder}/a.cpp", "#include <windows.h>\n"), [])
        for folder in ("ui", "platform", "common", "companions/agent/stage", "ui/win32x", "app/tests"):
            with self.subTest(folder):
                self.assertEqual(len(self.faults(f"{folder}/a.cpp", "#include <windows.h>\n")), 1)

    def test_libraries_belong_to_the_tools(self):
        self.assertEqual(self.faults("tools/pictures/a.cpp", "#include <png.h>\n"), [])
        self.assertEqual(self.faults("app/a.cpp", "#include <png.h>\n"), ["app/a.cpp:1: includes <png.h>"])


if __name__ == "__main__":
    unittest.main()
