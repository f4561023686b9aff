"""A conversation of any length that is written as fast as it is read: every message has to be spoken once, in order, by its
writer's character. Meanwhile it is counted what the three programs use."""

import dataclasses
import random
import re
import time

from desk.measuring import memory_mb, pid_of
from desk.prefix import windows_path
from desk.reading import NEIGHBOURS, Options, Reading
from inspector import Inspector

PEOPLE = {"ann@messenger.example": "Ann", "bob@messenger.example": "Bob", "cy@messenger.example": "Cy"}
OWN_SHARE = 20     # one message of so many is the user's own, which nobody speaks
EMOTICON_SHARE = 6
# Messages that are written and not yet spoken to their end: more would not make the reading faster, since the voices have
# something to say all the time.
AHEAD = 12
SILENT_SECONDS = 3     # after the last message: what would be said twice has been said by then
STALLED_SECONDS = 300  # without any progress, on the busiest machine

# Words that the program speaks as they are, but for their first letters.
WORDS = ("apple bridge candle door evening forest garden harbour island journey kitchen lantern morning notebook orange "
         "paper quiet river stone table umbrella village window yellow zebra about before could every from have into just "
         "know like more never only people quite really some that under very would yesterday and but the with").split()


class Lost(Exception):
    """The reading did not say what was written; the message tells what, and what it said instead."""


@dataclasses.dataclass
class Message:
    writer: str
    text: str
    spoken: list  # the words or the file of each Speak call, in order; empty: of the user's own


def make_message(number, chance):
    """A message that is like no other, and what is to be spoken of it."""
    words = " ".join(["number", str(number), *chance.choices(WORDS, k=chance.randint(1, 12))])
    spoken = [" ".join(word.capitalize() for word in words.split())]
    if chance.randrange(EMOTICON_SHARE) == 0:
        emoticon, sound = chance.choice([(":)", None), ("lol", "laugh.wav"), (":(", None), ("(y)", None), ("(B)", "burp.wav")])
        words += " " + emoticon
        spoken += [sound] if sound else []
    if chance.randrange(OWN_SHARE) == 0:
        return Message("me", words, [])
    return Message(chance.choice(sorted(PEOPLE)), words, spoken)


class _Acts:
    """The lines of a transcript as they are written; none is kept."""

    def __init__(self, path):
        self._path, self._file, self._rest = path, None, b""

    def new(self):
        if self._file is None:
            self._file = open(self._path, "rb")  # pylint: disable=consider-using-with
        data = self._rest + self._file.read()
        end = data.rfind(b"\n") + 1
        self._rest = data[end:]
        return [line.rstrip("\r").split("\t") for line in data[:end].decode("utf-8", "replace").split("\n")[:-1]]

    def close(self):
        if self._file:
            self._file.close()


class QuietReading(Reading):
    """Whose sound is not kept: of a long one it would fill the disk."""

    def start_character_server(self):
        self.desk.start("AgentServer.exe", self.desk.agent_server(), "/transcript", windows_path(self.transcript.path),
                        "/speed", f"{self.options.speed_of_stage():g}")


@dataclasses.dataclass
class Use:
    memory: float
    handles: int
    graphics: int
    windows: int


class LongReading:
    def __init__(self, desk, stage_speed, seed=1):
        self.desk, self.stage_speed = desk, stage_speed
        self.written = 0
        self.text_mb = 0        # of the conversation, as the client and the program hold it
        self.has_sounds = True  # without them what should have sounded fails, and the words go on
        self.reading = self.inspector = self._acts = None
        self._chance = random.Random(seed)
        self._due = []                            # (writer, what) of every Speak call, in order
        self._ends = {key: [] for key in PEOPLE}  # of it each writer's: two characters can end at once
        self._reached = {}                        # how many there were, by moment, of the ends by writer
        self._news = time.monotonic()

    def begin(self):
        conversation = self.desk.output / "conversation.txt"
        conversation.write_text("".join(f"[09:00] <{name}> good morning\n" for name in PEOPLE.values()), "utf-8")
        self.reading = QuietReading(self.desk, Options(conversation, output=self.desk.output, speed=100, orders=True,
                                                       stage_speed=self.stage_speed))
        self.reading.start_neighbours()
        self.reading.start_program()
        self.reading.start_reading()
        self.reading.follow()
        self.inspector = Inspector(self.desk)
        self._acts = _Acts(self.reading.transcript.path)
        self._acts.new()

    def end(self):
        for one in (self._acts, self.inspector):
            if one:
                one.close()

    def write(self, count):
        """So many messages more, at once."""
        for _ in range(count):
            self._write()

    def write_and_hear(self, count):
        """So many messages more, as fast as they are spoken; Lost where one is not, or another one is."""
        last = self.written + count
        while self.written < last or self._waiting() > 0:
            while self.written < last and self._waiting() < AHEAD:
                self._write()
            if not self.look():
                if time.monotonic() - self._news > STALLED_SECONDS:
                    raise Lost(f"nothing has been said for {STALLED_SECONDS} s; due is {self._due[self._count():][:3]}\n"
                               + self.desk.state())
                time.sleep(0.002)

    def look(self):
        """Compares what has been done since the last look with what is due; True where there was something."""
        self.reading.check_programs()
        news = False
        for fields in self._acts.new():
            if len(fields) < 7 or fields[5] != "Speak":
                continue
            what = re.sub(r"(\\[rn])+", " ", fields[6]).strip()
            if what.startswith("file:"):
                what = re.split(r"[\\/]", what)[-1]
            if what:
                self._compare(fields[2], fields[3], what, fields[-1])
                news = True
        if news:
            self._news = time.monotonic()
        return news

    def _compare(self, moment, key, what, outcome):
        due, name = (self._ends.get(key, []), (moment, key)) if moment == "end" else (self._due, moment)
        number = self._reached.get(name, 0)
        wanted = due[number] if number < len(due) else None
        if wanted != (key, what):
            raise Lost(f"{moment} {number + 1}: {wanted} was due, but it was {(key, what)}\n{self.desk.state()}")
        silent = what.endswith(".wav") and not self.has_sounds
        if moment == "end" and outcome != "complete" and not silent:
            raise Lost(f"{what!r} of {key} was not spoken to its end: {outcome}\n{self.desk.state()}")
        self._reached[name] = number + 1

    def _count(self):
        return sum(number for name, number in self._reached.items() if name not in ("call", "start"))

    def _waiting(self):
        return len(self._due) - self._count()

    def _write(self):
        message = make_message(self.written + 1, self._chance)
        answer = self.inspector.ask(f"client say {message.writer} {message.text}")
        if answer != ["1"]:
            raise Lost(f"the client has not taken the message {message.text!r}: {answer}\n{self.desk.state()}")
        entries = [(message.writer, what) for what in message.spoken]
        self._due += entries
        for key, what in entries:
            self._ends[key].append((key, what))
        self.written += 1
        name = PEOPLE.get(message.writer, "You")
        self.text_mb += 2 * len(f"\r\n{name} says:\r\n{message.text}") / 2**20

    def assert_silent(self):
        """Nothing is said that nobody wrote."""
        due = time.monotonic() + SILENT_SECONDS
        while time.monotonic() < due:
            self.look()
            time.sleep(0.05)

    def use(self):
        """What each program has: memory that is its own in MB, handles, graphics objects and windows; None for what the
        system does not tell."""
        use = {}
        for program in NEIGHBOURS:
            counts = self.inspector.ask(f"objects {program}")
            if len(counts) != 1:
                raise Lost(f"{program} runs {len(counts)} times\n{self.desk.state()}")
            fields = counts[0].split("\t")[1:]
            use[program] = Use(memory_mb(pid_of(self.desk, program))[0],
                               *(int(field) if field.isdigit() else None for field in fields))
        return use
