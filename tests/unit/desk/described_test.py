"""The check of a reading, given what neighbours wrote down: what the program's own capture makes of a conversation is
right, whenever its ticks fell, and what it does not make is not."""

import json
import os
import random
import subprocess
import sys
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[3]
sys.path.insert(0, str(ROOT / "tools"))

from desk.described import Described, Trace, blanked, take  # noqa: E402
from desk.records import Act, Event  # noqa: E402

TRACE = os.environ.get("MURMELIX_TRACE", ROOT / "build" / "host" / "tools" / "trace")
ANN, BOB = "ann@x", "bob@x"


class Conversation:
    """A client's log and a server's transcript as they are made, on a clock of its own."""

    def __init__(self, trace, **names):
        self._trace = trace
        self._now = 0
        self.events, self.acts = [], []
        self.event("signin", "me@x", "Me")
        for name, friendly in names.items():
            self.event("present", f"{name}@x", friendly)

    def event(self, kind, who, text=""):
        self._now += 1
        self.events.append(Event(self._now, self._now / 1e6, kind, who, text))

    def say(self, who, text):
        self.event("message", who, text)

    def speak(self, who, text):
        """The calls that a text comes to."""
        for what, of in self._trace.calls(text):
            self.call(who, what, of)

    def call(self, who, what, of):
        self._now += 1
        self.acts.append(Act(self._now / 1e6, self._now, "call", who, "Plonk", what, of, ""))

    def fault(self):
        return Described(self.events, self.acts, self._trace).fault()


class DescribedReading(unittest.TestCase):
    def setUp(self):
        self.trace = self.enterContext(Trace(TRACE))
        self.talk = Conversation(self.trace, ann="Ann", bob="Bob")

    def test_a_message_with_and_without_the_next_one_behind_it(self):
        self.talk.say(ANN, "hello")
        self.talk.speak(ANN, "hello")
        self.talk.say(BOB, "one")
        self.talk.say(ANN, "two")
        self.talk.speak(BOB, "one\r\n")
        self.talk.speak(ANN, "two")
        self.assertIsNone(self.talk.fault())

    def test_an_emoticon_at_the_end_of_a_line_leaves_a_line_break_to_be_spoken(self):
        self.talk.say(ANN, "fine :)")
        self.talk.say(BOB, "good")
        self.talk.speak(ANN, "fine :)\r\n")
        self.talk.speak(BOB, "good")
        self.assertIn(("ann@x", "Speak", "\r\n"), [(act.key, act.what, act.of) for act in self.talk.acts])
        self.assertIsNone(self.talk.fault())

    def test_a_line_break_before_the_next_message_was_written_is_a_fault(self):
        self.talk.say(ANN, "fine :)")
        self.talk.speak(ANN, "fine :)\r\n")
        self.talk.say(BOB, "good")
        self.talk.speak(BOB, "good")
        self.assertIn(r"came [('ann@x', 'Play', 'restpose'), ('ann@x', 'Speak', '\r\n')", self.talk.fault())

    def test_what_is_missing_said_twice_or_by_another_is_a_fault(self):
        self.talk.say(ANN, "one")
        self.assertIn("'one'", self.talk.fault())
        self.talk.speak(ANN, "one")
        self.assertIsNone(self.talk.fault())
        self.talk.speak(ANN, "one")
        self.assertIn("nobody wrote", self.talk.fault())
        other = Conversation(self.trace, ann="Ann", bob="Bob")
        other.say(ANN, "one")
        other.speak(BOB, "one")
        self.assertIn("'one'", other.fault())

    def test_order_counts(self):
        self.talk.say(ANN, "one")
        self.talk.say(BOB, "two")
        self.talk.speak(BOB, "two")
        self.talk.speak(ANN, "one\r\n")
        self.assertIn("'one'", self.talk.fault())

    def test_lines_of_somebody_who_is_gone_are_the_last_writers_or_nobodys(self):
        self.talk.say(BOB, "bye")
        self.talk.event("leave", BOB)
        self.assertIsNone(self.talk.fault())  # after a tick that found nothing
        self.talk.say(ANN, "gone")
        self.talk.speak(ANN, "gone")
        self.assertIsNone(self.talk.fault())
        other = Conversation(self.trace, ann="Ann", bob="Bob")
        other.say(ANN, "one")
        other.say(BOB, "bye")
        other.speak(ANN, "one\r\n")
        other.event("leave", BOB)
        other.speak(ANN, "Bob says:\r\nbye")
        self.assertIsNone(other.fault())

    def test_of_somebody_who_goes_in_the_middle_a_part_is_read(self):
        self.talk.say(BOB, "fine :) bye")
        calls = self.trace.calls("fine :) bye")
        self.talk.call(BOB, *calls[0])
        self.talk.call(BOB, *calls[1])
        self.assertIn("bye", self.talk.fault())
        self.talk.event("leave", BOB)
        self.assertIsNone(self.talk.fault())
        self.talk.say(ANN, "one")
        self.talk.speak(ANN, "one")
        self.assertIsNone(self.talk.fault())

    def test_somebody_who_is_there_is_read(self):
        self.talk.event("leave", BOB)
        self.talk.say(ANN, "one")
        self.talk.event("join", BOB, "Bob")
        self.talk.say(BOB, "two")
        self.talk.speak(ANN, "one\r\n")
        self.assertIn("'two'", self.talk.fault())

    def test_a_new_name_counts_from_the_moment_it_is_given(self):
        self.talk.say(ANN, "one")
        self.talk.event("rename", ANN, "Anna (:p)")
        self.talk.say(ANN, "two")
        self.talk.speak(ANN, "two")
        self.assertIsNone(self.talk.fault())  # the first was nobody's any more
        self.talk.event("rename", BOB, "An")
        self.talk.say(ANN, "three")
        self.talk.speak(BOB, "three")
        self.assertIn("'three'", self.talk.fault())  # "Anna" stands before "An" in the client's list
        self.assertEqual(blanked("a (S)(s):-):D(lol)"), "a  (s)  (lol)")

    def test_the_first_name_that_fits_takes_the_lines(self):
        talk = Conversation(self.trace, ann="An", bob="Anna")
        talk.say(BOB, "hello")
        talk.speak(ANN, "hello")
        self.assertIsNone(talk.fault())

    def test_long_messages_are_taken_two_lines_at_a_time(self):
        self.talk.say(ANN, "1\r\n2\r\n3 :)\r\n4")
        self.talk.say(BOB, "five")
        self.talk.speak(ANN, "1\r\n")
        self.talk.speak(ANN, "2\r\n3 :)\r\n")
        self.talk.speak(ANN, "4\r\nBob says:\r\n")
        self.talk.speak(ANN, "five")
        self.assertIsNone(self.talk.fault())

    def test_two_lines_and_the_position_behind_them(self):
        history = "\r\nA says:\r\nhi\r\nB says:\r\nyo"
        self.assertEqual(take(history, len(history), 2), ("\nA says:\r\nhi\r\n", 16))
        self.assertEqual(take(history, len(history), 16), ("B says:\r\nyo", len(history) + 2))
        self.assertEqual(take(history, 13, 2), ("\nA says:\r\nhi", 15))

    def read_by_the_program(self, seed):
        """A conversation at random and what the program's own capture makes of it, its ticks falling anywhere."""
        random_ = random.Random(seed)
        pieces = ["hi", " ", ":)", "(lol)", "brb", ":-D", "\r\n", "Ann", "Bob", "\\", "ic", "!!!!", "🎈", "ah ha", "(r)", "#"]
        names = random_.choice([("Ann", "Bob"), ("Ann", "Anna"), ("(S) X", ":) Y"), ("", "Bob"), ("hi", "🎈")])
        talk = Conversation(self.trace, ann=names[0], bob=names[1])
        program = subprocess.Popen([str(TRACE), "capture"], stdin=subprocess.PIPE, stdout=subprocess.PIPE)

        def tell(what):
            program.stdin.write(json.dumps(what).encode() + b"\n")
            program.stdin.flush()

        def tick():
            tell({"ticks": 1})
            spoken = json.loads(program.stdout.readline())["speak"]
            if spoken and spoken["key"] in (ANN, BOB):
                talk.speak(spoken["key"], spoken["text"])
            return spoken

        tell({"me": {"signin": "me@x", "friendly": "Me"}, "history": "before",
              "contacts": [{"signin": ANN, "friendly": names[0]}, {"signin": BOB, "friendly": names[1]}]})
        for _ in range(30):
            who = random_.randrange(2)
            text = "".join(random_.choices(pieces, k=random_.randint(1, 5))).strip("\r\n") or "."
            talk.say((ANN, BOB)[who], text)
            tell({"append": f"\r\n{names[who]} says:\r\n{text}"})
            for _ in range(random_.choice([0, 0, 1, 1, 2, 9])):
                tick()
        while tick():
            pass
        program.stdin.close()
        program.wait()
        program.stdout.close()
        return talk

    def test_whatever_the_program_makes_of_a_conversation_is_described(self):
        for seed in range(60):
            talk = self.read_by_the_program(seed)
            self.assertIsNone(talk.fault(), f"seed {seed}")
            # And not with a call less, or in another order.
            words = [at for at, act in enumerate(talk.acts) if act.what == "Speak"]
            if words:
                lost = random.Random(seed).choice(words)
                without = Described(talk.events, talk.acts[:lost] + talk.acts[lost + 1:], self.trace)
                self.assertIsNotNone(without.fault(), f"seed {seed}, without {talk.acts[lost]}")


if __name__ == "__main__":
    unittest.main(verbosity=2)
