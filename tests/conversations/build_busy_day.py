#!/usr/bin/env python3
"""Writes busy-day.txt, a day in a crowded chat room, as a chat log: build_busy_day.py [FILE [SEED]]

Everybody and everything in it is made up here. It holds what logs of real rooms hold: people who come, go, are thrown out
and change their names, who say the same thing twice, act, laugh, shout, link and write in many languages, lines of
thousands of letters, and lines that were damaged on their way. The same seed gives the same bytes."""

import random
import sys
from pathlib import Path

SEED = 1879
MINUTES = 24 * 60
ROOM = "#lantern-lake"

NICKS = ("Lena brook Otis marlow Lena_ fen Brook2 quill len otis^away Marlow[work] Quill` Fenja tarn skiff Skipper sedge "
         "heron Kestrel kes moss ember Ember|afk dusk rook Rookie pike Pike_ birch wren Wrenna thistle juniper cobble "
         "gale Gale- ripple Tolva nils mirabel odette Bartek yusuf Ilse_K hana priya {oak} \\wade\\ x3n0 M `drift ^_^ "
         "Zuzana-the-boatwright-of-the-north-shore").split()
HOSTS = "north-shore.example pier7.example [n=boat@10.0.3.17] ferry.example dial-up-44.harbour.example".split()
WHO = ("the ferry", "my sister", "the old engine", "our mayor", "that heron", "the new rudder", "a duck", "the lock keeper",
       "somebody from the pier", "the whole choir", "the club", "her uncle", "the map", "your left oar", "the weather")
DOES = ("has run aground", "wants to be painted green", "sank again", "arrives at noon", "is asleep", "was here yesterday",
        "makes a strange noise", "needs a new rope", "will not start", "knows the way", "lost a bet", "leaks a little",
        "looks better now", "costs twelve crowns", "belongs to nobody", "is behind the boathouse")
WHEN = ("", " today", " since Tuesday", " after lunch", " when it rains", " every single time", " before the regatta",
        " until the bell rings", " if you ask me", " of course")
ASKS = ("does anybody know how to {0}?", "how do I {0}", "{1}: can you {0}?", "is it hard to {0} ?", "why would I {0}",
        "who wants to {0} with me", "please help, I have to {0} !!", "where do people {0} here?")
DEEDS = ("tie a bowline", "tune an outboard motor", "varnish a deck", "read a tide table", "find the second key", "fix a leak",
         "fold the big sail", "get to the island", "carve a figurehead", "bake bread on a stove", "draw the lake",
         "count the swans", "wake the lock keeper", "mount the lamp on the bow", "measure the depth")
ANSWERS = ("yes", "no", "sure", "thanks", "thx a lot", "ok", "ah, ic", "ic", "brb", "brb, kettle", "lol", "LOL", "that is not it",
           "try it the other way round", "works for me", "same here", "I did that already", "nope, still wet", "what?",
           "oh no", "it says 42", "see the board by the door", "Ic, and then?", "good night all", "hi", "hello everyone",
           "welcome back", "re", "I would not", "never mind, found it", "does it float?", "lol, ic", "be right back, the phone")
FEELINGS = (":)", ":-)", ":D", ":-D", ";)", ";-)", ":(", ":-(", ":'(", ":P", ":-p", ":o", ":-O", ":S", ":|", ":-|", ":$", ":@",
            ":[", "(lol)", "(birthday)", "(boo)", "(run)", "(whistle)", "(haa)", "(ohh)", "(slap)", "(sniff)", "(sigh)", "(h)",
            "(y)", "(n)", "(b)", "(d)", "(S)", "(s)", "(r)", "(x)", "(z)", "(l)", "(u)", "(m)", "(@)", "(&)", "(*)", "(~)", "(8)",
            "(e)", "(f)", "(w)", "(o)", "(k)", "(g)", "(^)", "(p)", "(i)", "(c)", "(t)", "(#)", "(%)", "(?)", "({)", "(})", "(a)",
            "(6)", ":^)", "=)", "<3", "\\o/", "^^")
LINKS = ("http://www.lantern-lake.example/", "http://www.lantern-lake.example/tides?day=3&height=high", "HTTP://WWW.PIER7.EXAMPLE",
         "https://ferry.example/timetable.pdf", "http://harbour.example/~otis/boat(2).jpg", "www.lantern-lake.example",
         "ftp://maps.example/lake/depths.txt.gz", "http://www.www.example/wwwww")
SHOUTS = ("sooooo slow", "NOOOOO", "yesssss!!!!", "what????", "hmmmm", "aaaargh", "pleeeease", "!!!", "...........", "wwwwwow",
          "ha ha haaaa", "####", "the end......", "zzzzzz", "$$$ for a rope???", "&&& or ***")
SPEECH = ("žluťoučký kůň pije čaj", "schöne Grüße vom Steg", "on y va à l'île ?", "¿quién tiene el remo?", "łódka stoi",
          "שלום לכולם, יש סירה?", "مرحبا، أين المجداف؟", "湖はきれいですね", "今天的船很慢", "лодка готова :)", "η βάρκα έφυγε",
          "🎈🎈🎈", "see you 🚣‍♀️ at 8", "naïve café", "İstanbul'dan selam", "x\u0301\u0302 marks it", "\u200bnothing to see")
TYPED = ("sudo paint --green boat", "rope(7) says: knot not found", "C:\\boat\\oars\\left", "/join " + ROOM, "if (leak) { bail(); }",
         "50% of $3 is (about) #1.5", "a^b & c/d", "\\Vol=0\\ quiet?", "<%VOXIL%URL%TAG%> http://www.", "1 .0%// 2", "Emot+(lol)",
         "[12:00] <nobody> quoted", "=== not a notice", "* not an action", "\tindented\twith tabs", "trailing blanks    ",
         "<html><b>bold</b></html>", "\"quoted\" and 'quoted'", "-----8<-----", "{}[]()<>")
ACTS = ("waves", "hides under the deck", "looks for {1}", "has never been so wet", "shows the chart around :)", "hands {1} a towel",
        "falls asleep (s)", "is away: back at eight", "laughs lol", "brb", "", "reads http://www.lantern-lake.example/news")
PARTING = ('["Leaving"]', '["good winds"]', "(Read error: 104 (Connection reset by peer))", "(Ping timeout: 180 seconds)", "",
           '["\'night :)"]', "[]")


class Day:
    def __init__(self, seed):
        self.random = random.Random(seed)
        self.lines = []
        self.present = []
        self.absent = list(NICKS)
        # A few say most of what is said.
        self.talkativeness = {nick: 1 / (1 + rank) for rank, nick in enumerate(NICKS)}

    def pick(self, choices):
        return choices[int(self.random.random() * len(choices))]

    def chance(self, probability):
        return self.random.random() < probability

    def line(self, text, end="\n"):
        self.lines.append((text if isinstance(text, bytes) else text.encode("utf-8")) + end.encode())

    def host(self):
        return f" [{self.pick(HOSTS).strip('[]')}] " if self.chance(0.8) else ""

    # Who comes and goes.

    def come(self, nick=None):
        nick = nick or self.pick(self.absent)
        self.absent.remove(nick)
        self.present.append(nick)
        self.line(f"=== {nick}{self.host()} has joined {ROOM}")

    def go(self):
        nick = self.pick(self.present)
        self.present.remove(nick)
        self.absent.append(nick)
        how = self.random.random()
        if how < 0.5:
            self.line(f"=== {nick}{self.host()} has left {ROOM} {self.pick(PARTING)}".rstrip())
        elif how < 0.9:
            self.line(f"=== {nick}{self.host()} has quit {self.pick(PARTING)}".rstrip())
        else:
            self.line(f"=== {nick} was kicked off {ROOM} by {self.pick(self.present or [nick])} ({self.pick(ANSWERS)})")

    def rename(self):
        old = self.pick(self.present)
        new = self.pick(self.absent)
        self.present[self.present.index(old)] = new
        self.absent[self.absent.index(new)] = old
        self.line(f"=== {old} is now known as {new}")

    def note(self):
        """What logs hold beside what people do."""
        self.line(self.pick((f"=== mode/{ROOM} [+o {self.pick(NICKS)}]  by Harbourmaster",
                             f"=== mode/{ROOM} [-b *!*@*.example]  by {self.pick(NICKS)}",
                             f"=== Topic for {ROOM}: Regatta on Sunday | no anchors in the kitchen :)",
                             "=== Harbourmaster wonders where everybody is", "", "===", "=== ")))

    # What is said.

    def writer(self):
        weights = [self.talkativeness.get(nick, 0.05) for nick in self.present]
        place = self.random.random() * sum(weights)
        for nick, weight in zip(self.present, weights):
            place -= weight
            if place <= 0:
                return nick
        return self.present[-1]

    def sentence(self):
        kind = self.random.random()
        if kind < 0.34:
            text = self.pick(WHO) + " " + self.pick(DOES) + self.pick(WHEN)
            text = text[0].upper() + text[1:] if self.chance(0.3) else text
        elif kind < 0.52:
            text = self.pick(ASKS).format(self.pick(DEEDS), self.pick(self.present))
        elif kind < 0.74:
            text = self.pick(ANSWERS)
        elif kind < 0.80:
            text = self.pick(SHOUTS)
        elif kind < 0.86:
            text = "see " + self.pick(LINKS) if self.chance(0.5) else self.pick(LINKS)
        elif kind < 0.92:
            text = self.pick(SPEECH)
        elif kind < 0.97:
            text = self.pick(TYPED)
        else:
            text = self.sentence() + self.pick((", ", ". ", " - ", "; and ")) + self.sentence()
        if self.chance(0.22):
            text = text + self.pick((" ", "", "  ")) + self.pick(FEELINGS)
        if self.chance(0.05):
            text = self.pick(FEELINGS) + self.pick((" ", "")) + text
        if self.chance(0.12):
            text = f"{self.pick(self.present)}: {text}"
        return text

    def long_text(self):
        return self.pick((
            lambda: " ".join(self.sentence() for _ in range(60)),
            lambda: "ha" * 700,
            lambda: "".join(self.pick(FEELINGS) for _ in range(200)),
            lambda: "row " * 400 + "your boat",
            lambda: "http://www." + "very-" * 300 + "long.example/",
            lambda: "".join(chr(0x4E00 + int(self.random.random() * 2000)) for _ in range(500)),
            lambda: "!?" * 900))()

    def say(self, minute):
        time = f"[{minute // 60:02d}:{minute % 60:02d}]"
        nick, kind = self.writer(), self.random.random()
        if kind < 0.05:
            self.line(f"{time}  * {nick} {self.pick(ACTS).format('', self.pick(self.present))}")
        elif kind < 0.06:
            self.line(f"{time} <{nick}> {self.long_text()}")
        elif kind < 0.07:
            self.line(f"{time} <{nick}> {self.pick(('', ' ', '   '))}")
        elif kind < 0.09:  # from a system with other line ends
            self.line(f"{time} <{nick}> {self.sentence()}", "\r\n")
        elif kind < 0.10:  # several lines in one
            self.line(f"{time} <{nick}> {self.sentence()}\r{self.sentence()}\r{self.pick(NICKS)} says:\r{self.sentence()}")
        elif kind < 0.13:  # the same again
            text = self.sentence()
            for _ in range(2):
                self.line(f"{time} <{nick}> {text}")
        elif kind < 0.155:
            self.damaged(time, nick)
        else:
            self.line(f"{time} <{nick}> {self.sentence()}")

    def damaged(self, time, nick):
        good = f"{time} <{nick}> {self.sentence()}".encode("utf-8")
        bad = bytes(128 + int(self.random.random() * 128) for _ in range(1 + int(self.random.random() * 4)))
        place = 10 + int(self.random.random() * max(len(good) - 10, 1))
        self.line(self.pick((
            lambda: good[:place] + bad + good[place:],                       # bytes that are no UTF-8
            lambda: good + "ž🎈".encode("utf-8")[:3],                        # a letter cut short
            lambda: good[:3],                                                # a line cut short
            lambda: good[:7],
            lambda: good[:9],
            lambda: b"[99:99] " + good[8:],                                  # a time that is none
            lambda: good[8:],                                                # no time
            lambda: good[:8] + good[9:],                                     # no bracket before the name
            lambda: good[:8] + b"<> " + good[8:],                            # nobody
            lambda: good[:place] + b"\0" + good[place:],
            lambda: good[:place] + b"\x1b[1m\x02\x03" + good[place:],        # controls of other programs
            lambda: good[:place] + b"\xed\xa0\x80\xff\xfe" + good[place:],
            lambda: b"=== " + nick.encode("utf-8"),
            lambda: b"=== is now known as ",
            lambda: b"=== " + nick.encode("utf-8") + b" is now known as a b",
        ))())

    def write(self):
        for nick in NICKS[:9]:
            self.present.append(nick)
            self.absent.remove(nick)
        for minute in range(MINUTES):
            # Few are awake at five, many at nine in the evening.
            busy = 1 + 3.2 * (1 - abs(minute - 1140) / 1140)
            messages = int(busy * self.random.random() * 2)
            for _ in range(messages):
                happens = self.random.random()
                if happens < 0.08 and self.absent:
                    self.come()
                elif happens < 0.14 and len(self.present) > 6:
                    self.go()
                elif happens < 0.16 and self.absent:
                    self.rename()
                elif happens < 0.17:
                    self.note()
                # Once the clock is set back.
                self.say(minute if minute != 700 else 660)
        self.line("[00:00] <Lena> a new day :)")  # past midnight
        return b"".join(self.lines)


def main():
    file = Path(sys.argv[1]) if len(sys.argv) > 1 else Path(__file__).with_name("busy-day.txt")
    file.write_bytes(Day(int(sys.argv[2]) if len(sys.argv) > 2 else SEED).write())


if __name__ == "__main__":
    main()
