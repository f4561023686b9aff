#!/usr/bin/env python3
"""A busy channel of the streaming chat, read aloud by the whole programs in Wine: from a line to the Speak call of its writer's
character, a hundred thousand lines at once, an evening a hundred times as fast, and ten quiet channels. Fails where a limit
is exceeded."""

import argparse
import shutil
import statistics
import sys
import threading
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
sys.path.insert(0, str(ROOT / "tools"))
sys.path.insert(0, str(ROOT / "tests" / "e2e" / "whole"))

from desk.chat_servers import StreamingServer, tagged  # noqa: E402
from desk.measuring import memory_mb, pid_of, processor_seconds  # noqa: E402
from desk.reading import LiveReading, Options, own_desk  # noqa: E402
from desk.waiting import wait_for  # noqa: E402
from inspector import Inspector  # noqa: E402

PEOPLE = 1_000
LATENCY_MS, BURST_SECONDS, IDLE_PERCENT = 25, 5, 0.5
GROWN_MB = 5       # more than one sample differs from the next: characters come and go all the time
ANSWER_MS = 1_000  # for all windows together to answer while the burst comes in
PROGRAMS = ("MessengerClient.exe", "Murmelix.exe", "AgentServer.exe")


def microseconds():
    """The clock of the neighbours' records: the system's performance counter, as Wine has it."""
    return time.clock_gettime_ns(time.CLOCK_MONOTONIC_RAW) // 1000


class Channel:
    def __init__(self, desk, server):
        self.desk, self.server, self.failures = desk, server, []
        self.reading = LiveReading(desk, Options(Path(), output=desk.output, channel="twitch:room", stage_speed=10))
        self.reading.start_neighbours()
        self.reading.start_program()
        self.reading.start_reading()
        server.wait_for_viewers("#room")
        server.burst("#room", [(f"viewer{number}", f"hello from {number}") for number in range(PEOPLE)])

    def judge(self, what, value, limit, unit):
        good = value <= limit
        print(f"{what}: {value:.1f} {unit} (limit {limit}{'' if good else ', EXCEEDED'})", flush=True)
        if not good:
            self.failures.append(what)

    def pid(self, program):
        return pid_of(self.desk, program)

    def latency(self, count):
        """Of somebody alone whom the user has chosen, while others write ten lines a second."""
        samples = []
        ended = threading.Event()

        def others():
            number = 0
            while not ended.wait(0.1):
                number += 1
                self.server.say("#room", f"viewer{number % PEOPLE}", f"something about {number * 7919 % 1000} things")
        writer = threading.Thread(target=others, daemon=True)
        writer.start()
        try:
            for number in range(count + 1):
                words = f"word{number * 7919}"
                before = microseconds()
                self.server.say("#room", "ann", words)

                def called():
                    self.reading.transcript.new()
                    return next((act for act in self.reading.transcript.acts if act.moment == "call" and act.what == "Speak"
                                 and words in act.of.lower()), None)
                call = wait_for(words, called)
                if number > 0:  # the first one waits for its character
                    samples.append((call.microseconds - before) / 1000)
                time.sleep(4)
        finally:
            ended.set()
            writer.join()
        print(f"{len(samples)} lines: 95th percentile {sorted(samples)[int(len(samples) * 0.95)]:.1f} ms", flush=True)
        self.judge("from a line to its Speak call, median", statistics.median(samples), LATENCY_MS, "ms")

    def burst(self, count):
        def line(number):
            login = f"viewer{number % PEOPLE}"
            return (f"{tagged(self.server.tags_of(login))}:{login}!{login}@{login}.tmi.twitch.tv PRIVMSG #room :line {number} "
                    "is of a usual length, as people write them")
        lines = ("\r\n".join(map(line, range(count))) + "\r\n").encode("utf-8")
        answers, ended = [], threading.Event()

        def ask():
            inspector = Inspector(self.desk)
            while not ended.is_set():
                began = time.monotonic()
                inspector.ask("windows")
                answers.append(time.monotonic() - began)
                time.sleep(0.05)
            inspector.close()
        asker = threading.Thread(target=ask, daemon=True)
        asker.start()
        time.sleep(3)
        usual = statistics.median(answers[1:])
        answers.clear()
        began = time.monotonic()
        self.server.raw(lines)
        self.all_taken()
        self.judge(f"{count} lines in a burst", time.monotonic() - began, BURST_SECONDS * count / 100_000, "s")
        ended.set()
        asker.join()
        self.judge(f"all windows asked meanwhile, at worst (usually {usual * 1000:.0f} ms)", max(answers) * 1000, ANSWER_MS,
                   "ms")

    def all_taken(self):
        """Until the client has answered what is asked after the last line."""
        pongs = sum(line.startswith("PONG") for _, line in self.server.received)
        self.server.ping()
        wait_for("the last line to be taken",
                 lambda: sum(line.startswith("PONG") for _, line in self.server.received) > pongs)

    def evening(self, seconds):
        def look():
            return {program: memory_mb(self.pid(program))[0] for program in PROGRAMS}

        number, quarters = 0, []
        began = time.monotonic()
        while len(quarters) < 4:
            self.server.burst("#room", [(f"viewer{(number + i) * 31 % PEOPLE}", f"words about {(number + i) * 7919 % 10007}")
                                        for i in range(100)])
            number += 100
            time.sleep(0.1)
            if time.monotonic() - began > seconds * (len(quarters) + 1) / 4:
                self.all_taken()
                quarters.append(look())
                print(f"{number} lines: " + ", ".join(f"{program} {mb:.1f} MB" for program, mb in quarters[-1].items()), flush=True)
        print(f"{number} lines in {time.monotonic() - began:.0f} s, as an evening of {number / 36_000:.1f} hours", flush=True)
        for program in PROGRAMS:
            self.judge(f"memory of {program} after the first quarter", quarters[-1][program] - quarters[0][program], GROWN_MB, "MB more")

    def idle(self, seconds):
        window = self.desk.screen.find("^#room - Conversation$")[-1]
        keys = " comma ".join(" ".join(f"quiet{number}") for number in range(9)).split()
        wait_for("the keyboard", lambda: self.desk.screen.type_into(window, "slash", *"join", "space", *keys, "Return"))
        self.server.wait_for_viewers("#quiet8")
        self.desk.programs["Murmelix.exe"].kill()  # it asks for the history a hundred times a second
        time.sleep(60)  # what was said is read, or has been passed over
        before = processor_seconds(self.pid("MessengerClient.exe"))
        time.sleep(seconds)
        self.judge("ten quiet channels", (processor_seconds(self.pid("MessengerClient.exe")) - before) * 100 / seconds,
                   IDLE_PERCENT, "% of a core")


def rules(desk, *lines):
    status, printed = desk.run("reg", "reg.exe", "add", r"HKCU\Software\MessengerClient\Reading", "/v", "#room twitch", "/t",
                               "REG_MULTI_SZ", "/d", "\\0".join(lines), "/f")
    if status != 0:
        raise SystemExit(printed)


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--lines", type=int, default=20, help="whose way is measured")
    parser.add_argument("--burst", type=int, default=100_000)
    parser.add_argument("--evening", type=int, default=288, help="seconds; an hour of the evening in 36")
    parser.add_argument("--idle", type=int, default=30, help="seconds")
    options = parser.parse_args()
    failures = []
    for parts in (("latency",), ("evening", "burst", "idle")):
        output = ROOT / "build" / "bench" / "live"
        shutil.rmtree(output, ignore_errors=True)
        output.mkdir(parents=True)
        with own_desk("live", output) as desk, StreamingServer() as server:
            desk.set_up_all()
            status, printed = desk.run("reg", "reg.exe", "add", r"HKCU\Software\MessengerClient", "/v", "StreamingServer", "/d",
                                       f"irc://127.0.0.1:{server.port}", "/f")
            if status != 0:
                raise SystemExit(printed)
            if "latency" in parts:
                rules(desk, "lines a minute\t60", "everyone\tno", f"chosen person\t{server.user_id('ann')}@twitch\tann")
            channel = Channel(desk, server)
            for part in parts:
                amount = {"latency": options.lines}.get(part) or getattr(options, part)
                getattr(channel, part)(amount)
            failures += channel.failures
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
