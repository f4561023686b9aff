"""What the neighbours write down: the character server's transcript and the Messenger client's log, read as they grow."""

import re
import time
from dataclasses import dataclass, field

_ESCAPES = {"t": "\t", "r": "\r", "n": "\n", "0": "\0", "\\": "\\"}


def unescape(text):
    return re.sub(r"\\(u[0-9A-Fa-f]{4}|.)",
                  lambda found: chr(int(found[1][1:], 16)) if len(found[1]) > 1 else
                  _ESCAPES.get(found[1], found[0]), text)


class Growing:
    """The complete lines of a file that another process writes, each given once, by `new`."""

    def __init__(self, path):
        self.path = path
        self._read = 0  # up to the end of the last line given

    def _unread(self):
        with open(self.path, "rb") as file:
            file.seek(self._read)
            return file.read()

    def new(self):
        try:
            data = self._unread()
            # A line can be seen while it is being written, torn: what is given has been read twice alike.
            for _ in range(50):
                time.sleep(0.002)
                before, data = data, self._unread()
                if data == before:
                    break
        except FileNotFoundError:
            return []
        complete = data[:data.rfind(b"\n") + 1]
        self._read += len(complete)
        return [line.rstrip(b"\r").decode("utf-8", "replace") for line in complete.split(b"\n")[:-1]]


@dataclass
class Act:
    """A line of the transcript."""
    seconds: float
    microseconds: int
    moment: str  # "ready", "call", "start", "end"
    key: str     # the character's id: the contact's sign-in name
    name: str    # of the character
    what: str    # "Speak", "Play", "Show", …
    of: str
    outcome: str


class Transcript:
    def __init__(self, path):
        self.path = path
        self._file = Growing(path)
        self.acts = []

    def new(self):
        added = []
        for line in self._file.new():
            fields = line.split("\t")
            if len(fields) < 7:
                raise ValueError(f"not a line of a transcript: {line!r}")
            added.append(Act(float(fields[0]), int(fields[1]), fields[2], unescape(fields[3]), unescape(fields[4]),
                             fields[5], unescape(fields[6]), fields[7] if len(fields) > 7 else ""))
        self.acts += added
        return added

    def is_ready(self):
        """True when programs can find the server."""
        self.new()
        return any(act.moment == "ready" for act in self.acts)

    def under_way(self):
        """Calls whose end has not been written yet."""
        open_calls = {}
        for act in self.acts:
            if act.what == "Stop":
                continue
            calls = open_calls.setdefault(act.key, [])
            if act.moment == "call":
                calls.append(act)
            elif act.moment == "end":
                for call in calls:
                    if (call.what, call.of) == (act.what, act.of):
                        calls.remove(call)
                        break
        return [call for calls in open_calls.values() for call in calls]


@dataclass
class Event:
    """A line of the Messenger client's log."""
    microseconds: int
    seconds: float
    kind: str
    signin: str
    text: str


class ClientLog:
    def __init__(self, path):
        self.path = path
        self._file = Growing(path)
        self.events = []
        self._given = {}  # when, by the event's identity: it is never forgotten

    def new(self):
        added = []
        for line in self._file.new():
            fields = line.split("\t")
            if len(fields) != 5:
                raise ValueError(f"not a line of the client's log: {line!r}")
            added.append(Event(int(fields[0]), float(fields[1]), fields[2], unescape(fields[3]),
                               unescape(fields[4])))
        self.events += added
        self._given.update((id(event), time.monotonic()) for event in added)
        return added

    def age(self, event):
        """Seconds since this log has given it."""
        return time.monotonic() - self._given[id(event)]

    def is_offered(self):
        """True when programs can find the client."""
        self.new()
        return bool(self.of_kind("offered"))

    def of_kind(self, kind):
        return [event for event in self.events if event.kind == kind]
