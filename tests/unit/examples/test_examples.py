"""The examples of the documents do what is said of them."""

import re
import subprocess
import sys
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[3]
sys.path.insert(0, str(ROOT / "tools"))

from desk.chat_servers import Person  # noqa: E402


class Bridge(unittest.TestCase):
    def setUp(self):
        self.bridge = subprocess.Popen(
            [sys.executable, "-B", ROOT / "docs" / "examples" / "bridge.py", "--channel", "#office", "--port", "0"],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        self.addCleanup(self.end)
        told = re.fullmatch(r"at irc://127\.0\.0\.1:(\d+)/office\n", self.bridge.stderr.readline())
        self.port = int(told[1])

    def end(self):
        self.bridge.kill()
        self.bridge.communicate(timeout=60)

    def says(self, line):
        self.bridge.stdin.write(line + "\n")
        self.bridge.stdin.flush()

    def test_who_was_there_is_listed_and_who_speaks_first_comes(self):
        self.says("Ann Lee: before anybody listened")
        with Person("first", self.port) as first:
            first.join("#office")
            self.says("Bob: good morning")
            first.wait_for_line("Bob's coming", lambda line: line == ":Bob!Bob@bridge JOIN #office")
            first.wait_for_line("Bob's words", lambda line: line == ":Bob!Bob@bridge PRIVMSG #office :good morning")
            with Person("second", self.port) as second:
                second.join("#office")
                second.wait_for_line("the names", lambda line: line == ":bridge 353 second = #office :second Ann_Lee Bob")

    def test_what_is_typed_in_the_channel_goes_to_the_output(self):
        with Person("typist", self.port) as typist:
            typist.join("#office")
            typist.say("#office", "is anybody here: yes")
            self.assertEqual(self.bridge.stdout.readline(), "typist: is anybody here: yes\n")

    def test_it_lives_on_after_a_client_that_goes_without_a_word(self):
        with Person("short", self.port) as short:
            short.join("#office")
        self.says("no name, no line")
        self.says("Ann: one")
        with Person("next", self.port) as after:
            after.join("#office")
            self.says("Ann: two")
            after.wait_for_line("Ann's words", lambda line: line == ":Ann!Ann@bridge PRIVMSG #office :two")

    def test_it_ends_with_its_input(self):
        self.bridge.stdin.close()
        self.assertEqual(self.bridge.wait(timeout=60), 0)
        self.bridge.stdin = None


if __name__ == "__main__":
    unittest.main()
