#!/usr/bin/env python3
"""What a long evening leaves behind: thousands of utterances, and clients of the character server that come and go in turn,
bring many characters, queue many requests, or are killed in the middle. Memory is what is the process' own, in MB; the
descriptors of Wine's server stand for the handles of all programs. Fails where something grows."""

import argparse
import random
import shutil
import sys
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
sys.path.insert(0, str(ROOT / "tools"))

from desk.measuring import descriptors, memory_mb, pid_of  # noqa: E402
from desk.prefix import windows_path  # noqa: E402
from desk.reading import WIN64, own_desk  # noqa: E402
from desk.waiting import wait_for  # noqa: E402

UTTERANCES = WIN64 / "bench" / "windows" / "utterances" / "bench_utterances.exe"
GROWN_DESCRIPTORS, GROWN_MB = 8, 3  # more than one sample differs from the next, and less than any leak comes to

HEADER = """
Set agent = CreateObject("Agent.Control.2")
agent.RaiseRequestErrors = False
Function Enter(name)
    agent.Characters.Load name, WScript.Arguments(0)
    Set Enter = agent.Characters(name)
    Enter.MoveTo 100, 100
    Enter.Show
End Function
Sub Await(request)
    Do While request.Status = 2 Or request.Status = 4
    Loop
End Sub
"""
SCRIPTS = {
    "talks": HEADER + 'Set friend = Enter("friend")\nAwait friend.Speak("One more.")\n',
    "brings fifty": HEADER + """
For number = 1 To 50
    Set last = Enter("c" & number)
    last.Play "Wave"
Next
Await last.Play("Wave")
""",
    "queues ten thousand": HEADER + """
Set friend = Enter("friend")
For number = 1 To 10000
    friend.Play "Wave"
Next
friend.Stop
""",
    "enumerates": HEADER + """
Set friend = Enter("friend")
Do
    For Each name In friend.AnimationNames
        friend.Play name
        friend.Stop
    Next
Loop
""",
}


class Evening:
    def __init__(self, desk):
        self.desk, self.failures = desk, []
        self.folder = desk.output / "scripts"
        self.folder.mkdir()
        for name, text in SCRIPTS.items():
            (self.folder / f"{name}.vbs").write_text(text, "ascii")
        self.character = windows_path(sorted((desk.prefix.windows / "msagent" / "chars").glob("*.acs"))[0])

    def wine_server(self):
        return pid_of(self.desk, "wineserver") or pid_of(self.desk, "wineserver64")

    def begin(self, number, script):
        return self.desk.start(f"client-{number}", "cscript.exe", "//nologo", windows_path(self.folder / f"{script}.vbs"),
                               self.character)

    def run(self, number, script):
        if self.begin(number, script).wait(300) != 0:
            raise SystemExit(f"a client that {script} failed:\n{self.desk.printed(f'client-{number}')}")

    def sample(self):
        """When nobody is there any more: descriptors of Wine's server, and the memory of the character server."""
        time.sleep(3)
        return descriptors(self.wine_server()), memory_mb(pid_of(self.desk, "AgentServer.exe"))[0]

    def compare(self, what, before, after):
        grown = after[0] - before[0] > GROWN_DESCRIPTORS or after[1] - before[1] > GROWN_MB
        print(f"{what}: descriptors {before[0]} before, {after[0]} after; the server's memory {before[1]:.1f} MB, "
              f"{after[1]:.1f} MB" + (", GROWN" if grown else ""), flush=True)
        if grown:
            self.failures.append(what)

    def utterances(self, count):
        process = self.desk.start("utterances", UTTERANCES, count)
        samples = {}

        def spoken():
            for line in self.desk.printed("utterances").splitlines():
                number, _, milliseconds = line.partition(" ")
                if number.isdigit() and number not in samples:
                    samples[number] = (milliseconds, descriptors(self.wine_server()))
            return process.poll() is not None
        wait_for("the utterances", spoken, seconds=60 + count / 5, interval=0.1)
        if process.returncode != 0 or str(count) not in samples:
            raise SystemExit(f"the utterances failed:\n{self.desk.printed('utterances')}")
        first, last = samples["100"], samples[str(count)]
        grown = last[1] - first[1] > GROWN_DESCRIPTORS
        print(f"{count} utterances: {first[0]} ms each at first, {last[0]} ms in the end; descriptors {first[1]} after 100, "
              f"{last[1]} after all" + (", GROWN" if grown else ""), flush=True)
        if grown:
            self.failures.append("utterances")

    def again(self, what, script, times):
        """The system's heap keeps what the first ones needed at once: as many later ones must do with it."""
        for number in range(times):
            self.run(number, script)
        before = self.sample()
        for number in range(times):
            self.run(number, script)
        self.compare(f"{what}, {times} more", before, self.sample())

    def clients(self, count):
        for number in range(60):  # what is loaded once is loaded, and the heap has come to rest
            self.run(number, "talks")
        before = self.sample()
        for number in range(count):
            self.run(number, "talks")
        self.compare(f"{count} clients in turn", before, self.sample())
        self.again("fifty characters at once", "brings fifty", 3)
        self.again("ten thousand requests queued", "queues ten thousand", 1)

        chance = random.Random(11)

        def kill_some(times):
            for number in range(times):
                client = self.begin(number, chance.choice(sorted(SCRIPTS)))
                time.sleep(chance.uniform(0.2, 2))
                client.kill()
                client.wait()
        kill_some(5)
        before = self.sample()
        kill_some(20)
        self.compare("twenty clients killed in the middle", before, self.sample())


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--utterances", type=int, default=20_000)
    parser.add_argument("--clients", type=int, default=200)
    options = parser.parse_args()
    output = ROOT / "build" / "bench" / "evening"
    shutil.rmtree(output, ignore_errors=True)
    output.mkdir(parents=True)
    with own_desk("evening", output) as desk:
        desk.set_up_agent()
        evening = Evening(desk)
        desk.start("AgentServer.exe", desk.agent_server(), "/speed", "20")
        evening.clients(options.clients)
        evening.utterances(options.utterances)
    return 1 if evening.failures else 0


if __name__ == "__main__":
    sys.exit(main())
