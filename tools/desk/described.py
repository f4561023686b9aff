"""What a reading may come to, worked out anew from what was written and when: the capture of new text, tick by tick, as it
is described. What a message becomes for its character is what `trace` says.

A tick takes two lines at a time and asks the client who takes part. So what is read depends on what has been written by
then: a message that another one follows closely ends with a line break, which is spoken too, and the lines of somebody
who is gone already are nobody's. All that can have been at the moments between two calls is tried; a call that no tick
can have made is a fault, and so is text that none was made for."""

import json
import subprocess
from dataclasses import dataclass

LINE_BREAK = "\r\n"
WITHOUT_CR = 4  # characters of a head that ends nowhere
# In the order in which they are blanked; the first counts with its letter case.
EMOTICONS = ("(S),(r),(y),(n),(b),(d),(x),(z),:-[,:[,(}),({),(l),(u),(m),(@),(&),(*),(~),(8),(e),(f),(w),(o),(k),(g),"
             "(^),(p),(i),(c),(t),(#),(%),(?),:-),:),:-D,:d,;-),;),:-O,:o,:-P,:p,(h),:-@,:@,:-S,:s,:$,:-$,:-(,:(,:'(,"
             ":-|,:|,(a),(6)").split(",")


def units(text):
    """A text with each half of a surrogate pair as a character: positions are counted in UTF-16."""
    data = text.encode("utf-16-le", "surrogatepass")
    return "".join(chr(int.from_bytes(data[at:at + 2], "little")) for at in range(0, len(data), 2))


def whole(text):
    """The opposite; a half alone becomes U+FFFD, as in every file of the neighbours."""
    return text.encode("utf-16-le", "surrogatepass").decode("utf-16-le", "replace")


def lower(text):
    """Letter by letter, so that every position stays."""
    return "".join(small if len(small := letter.lower()) == 1 else letter for letter in text)


def blanked(name):
    """A name with a blank for each of its emoticons."""
    for number, emoticon in enumerate(EMOTICONS):
        if number == 0:
            name = name.replace(emoticon, " ")
            continue
        at = lower(name).find(lower(emoticon))
        while at >= 0:
            name = name[:at] + " " + name[at + len(emoticon):]
            at = lower(name).find(lower(emoticon), at + 1)
    return name


def opens(head, name):
    at = lower(head).find(lower(name))
    if at < 0:
        at = lower(head).find(lower(blanked(name)))
    return at in (0, 1)


def take(history, visible, position):
    """The next two lines of a history of which so much is visible, from a position on, which is counted from 1; and the
    position behind them."""
    end = history.find(LINE_BREAK, position - 1, visible)
    if end >= 0:
        end = history.find(LINE_BREAK, end + len(LINE_BREAK), visible)
    end = end + 1 if end >= 0 else visible
    return history[position - 1:min(end + 1, visible)], end + 2


def comparable(what, of):
    """Animation names compare without letter case; of a sound the file name counts."""
    if what == "Speak" and of.startswith("file:"):
        of = "file:" + of.removeprefix("file:").replace("/", "\\").rpartition("\\")[2].casefold()
    return what, of.casefold() if what == "Play" else whole(of)


class Trace:
    """`trace message`, kept running: what a message comes to for its writer's character, as (what, of) of words, sounds
    and animations alone; a character shows itself for other reasons too."""

    def __init__(self, program):
        self._program = program
        self._process = None
        self._known = {}

    def __enter__(self):
        self._process = subprocess.Popen([str(self._program), "message"], stdin=subprocess.PIPE,
                                         stdout=subprocess.PIPE)
        return self

    def __exit__(self, *_):
        self._process.stdin.close()
        self._process.wait()
        self._process.stdout.close()

    def calls(self, text):
        if text not in self._known:
            line = "".join("\\\\" if letter == "\\" else f"\\u{ord(letter):04X}"
                           if letter < " " or "\uD800" <= letter <= "\uDFFF" else letter for letter in text)
            self._process.stdin.write(line.encode("utf-8") + b"\n")
            self._process.stdin.flush()
            answer = json.loads(self._process.stdout.readline())
            self._known[text] = [
                comparable(call["call"], "file:" + call["url"] if call.get("url") else
                           call["text"] if call["call"] == "Speak" else call["animation"])
                for call in answer if call["key"] == "a@x" and call["call"] in ("Speak", "Play")]
        return self._known[text]


@dataclass
class _Moment:
    """What the client holds after one of its events."""
    microseconds: int
    length: int         # of the history
    names: tuple        # of those who take part: (sign-in name, friendly name), in the client's order
    own: tuple          # the user's own
    message: str = ""   # what was written last, for people


def _moments(events):
    """The moments of a client's log, and the text that was appended to the history by the last of them."""
    moments, appended, length, names, present, own = [_Moment(0, 0, (), ("", ""))], [], 0, {}, [], ""
    for event in events:
        message = ""
        if event.kind in ("present", "join", "rename", "signin"):
            names[event.signin] = units(event.text)
        if event.kind in ("present", "join"):
            present.append(event.signin)
        elif event.kind == "leave":
            present.remove(event.signin)
        elif event.kind == "signin":
            own = event.signin
        elif event.kind == "message":
            appended.append(LINE_BREAK + names[event.signin] + " says:" + LINE_BREAK + units(event.text))
            length += len(appended[-1])
            message = f"{event.signin}: {event.text!r}"
        elif event.kind != "rename":
            continue
        moments.append(_Moment(event.microseconds, length, tuple((who, names[who]) for who in present),
                               (own, names.get(own, "")), message))
    return moments, "".join(appended)


def _writer(head, moment):
    return next((signin for signin, name in (*moment.names, moment.own) if signin and opens(head, name)), "")


class Described:
    """All readings that come to the calls of a transcript."""

    def __init__(self, events, acts, trace):
        self._moments, self._history = _moments(events)
        self._calls = [act for act in acts if act.moment == "call" and act.what in ("Speak", "Play")
                       and act.of.casefold() != "startlistening"]
        self._made = [(act.key, *comparable(act.what, act.of)) for act in self._calls]
        self._trace = trace

    def fault(self):
        """What was not read as described, for people; None: all was."""
        # How many calls are accounted for, the position, the writer of the text read last, the moment of the last look.
        waiting, tried = [(0, 2, "", 0)], set()
        best = (0, 0, 0)
        while waiting:
            state = waiting.pop()
            if state in tried:
                continue
            tried.add(state)
            matched, position, _, _ = state
            if matched == len(self._made) and position >= len(self._history):
                return None
            best = max(best, (matched, position, state[3]))
            waiting += self._next(*state)
        return self._told(*best)

    def _told(self, matched, position, _):
        made = self._made[matched:matched + 4]
        unread = next((moment.message for moment in self._moments if moment.message and moment.length > position), None)
        if unread is None:
            return f"nobody wrote what became {made}"
        text = take(self._history, len(self._history), position)[0]
        return f"{unread} should have been read next, as {text!r}, but there came {made or 'nothing'}"

    def _next(self, matched, position, user, seen):
        """The states after the next tick that finds something, whenever it looked."""
        # A look comes before the calls that it leads to.
        limit = self._before(matched, seen)
        users = {user}
        if self._moments[seen].length <= position:
            users.add("")  # a tick that finds nothing forgets the writer
        outcomes, last = {}, None
        for look in range(seen, limit):
            visible = self._moments[look].length
            if visible <= position or visible == last:
                continue
            last = visible
            text, behind = take(self._history, visible, position)
            head_length = text.find("\r") + 1 or WITHOUT_CR
            names = None
            for asked in range(look, limit):
                if (self._moments[asked].names, self._moments[asked].own) == names:
                    continue
                names = (self._moments[asked].names, self._moments[asked].own)
                writer = _writer(text[:head_length], self._moments[asked])
                outcomes.setdefault((text, behind, writer, head_length), (look, asked))
            if behind <= visible:
                break  # two whole lines: what comes later changes nothing
        for (text, behind, writer, head_length), (look, asked) in outcomes.items():
            for key in {writer} if writer else users:
                message = text[head_length + 1:] if writer else text
                for count in self._counts(key, message, matched, asked):
                    yield matched + count, behind, key, look

    def _before(self, call, seen):
        """The end of the moments before a call, from one that was seen on."""
        end = len(self._moments)
        if call < len(self._calls):
            end = next((at for at in range(seen + 1, end)
                        if self._moments[at].microseconds > self._calls[call].microseconds), end)
        return end

    def _counts(self, key, message, matched, asked):
        """How many of the calls made next can be those of a message, if they are."""
        if key in ("", self._moments[asked].own[0]):
            return {0}
        wanted = [(key, *call) for call in self._trace.calls(message)]
        made = self._made[matched:matched + len(wanted)]
        if made == wanted:
            return {len(wanted)}
        # Of those who go meanwhile, before what was called next, a part is read, or nothing.
        return {count for count in range(len(wanted)) if made[:count] == wanted[:count]
                and any(key not in dict(moment.names)
                        for moment in self._moments[asked:self._before(matched + count, asked)])}
