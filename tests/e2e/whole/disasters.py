"""Neighbours and programs that are killed at some moment: what is left afterwards is in order, and goes on."""

import os
import random
import signal
import time

from case import WATCHDOG_SECONDS, windows_path
from desk.measuring import pid_of
from desk.records import ClientLog
from shell import START, START_SELECTED, ShellTest

ANN = "ann@messenger.example"
ALERT = "MSAgent Shutdown Alert!"
LATEST = 6  # seconds from a start to the kill: by then the reading is under way
LOG = "".join(f"[09:{minute:02d}] <Ann> message number {minute}\n" for minute in range(60))

# ./soak --faults sets them.
ROUNDS = int(os.environ.get("MURMELIX_ROUNDS", "3"))
SEED = int(os.environ.get("MURMELIX_SEED", str(int(time.time()))))


class Disasters(ShellTest):
    """A desk on which something is killed in each round, and has to be as the next round needs it."""

    WATCHDOG = WATCHDOG_SECONDS * max(1, ROUNDS // 5)
    clients = 0

    def moments(self, rounds=ROUNDS):
        """So many moments as there are rounds, in seconds; they can be had again by the seed."""
        print(f"\n{rounds} rounds, MURMELIX_SEED={SEED}", flush=True)
        chance = random.Random(SEED)
        for number in range(rounds):
            yield chance.uniform(0, LATEST)
            if rounds > 10 and number % 10 == 9:
                print(f"{number + 1} rounds", flush=True)

    def kill(self, program):
        pid = pid_of(self.desk, program)
        if pid is not None:
            os.kill(pid, signal.SIGKILL)

    def until(self, moment, meanwhile):
        due = time.monotonic() + moment
        while time.monotonic() < due:
            meanwhile()
            time.sleep(0.05)

    def program_runs(self):
        return self.desk.running("Murmelix.exe")

    def boxes(self):
        return [window.text for window in self.windows() if window.kind == "#32770" and window.visible]

    def start_client(self):
        """The client, with a conversation that begins when it is read. A program that asks for it before it is offered is
        given another one: the program is started when this has returned."""
        log = self.output / "conversation.txt"
        log.write_text(LOG, "utf-8")
        self.clients += 1
        events = ClientLog(self.output / "logs" / f"client-{self.clients}.tsv")
        self.desk.start("MessengerClient.exe", self.desk.program_directory / "MessengerClient.exe", "/orders",
                        "/conversation", windows_path(log), "/participants", 1, "/speed", 60, "/wait",
                        "/left", 700, "/top", 60, "/width", 420, "/height", 300, "/log", windows_path(events.path))
        return events

    def wait_for_client(self, events):
        self.eventually("the Messenger client", events.is_offered)

    def begin_reading(self):
        """Presses the start button where it can be pressed."""
        button = self.control(START_SELECTED) or self.control(START)
        if button and button.enabled and not self.characters():
            for window in self.screen.find(r"^Murmelix v[0-9]"):
                self.screen.type_into(window, "alt+s")

    def words(self):
        """Numbers of the messages that were spoken so far."""
        self.transcript.new()
        return [int(act.of.split()[-1]) for act in self.transcript.acts
                if act.moment == "call" and act.what == "Speak" and act.of.strip()]

    def assert_reads(self):
        """The conversation of the client that was started last is read from its first word on, nothing left out."""
        before = len(self.words())

        def under_way():
            if len(self.words()) == before:
                self.begin_reading()
            return len(self.words()) >= before + 4
        self.eventually("a reading", under_way)
        numbers = self.words()[before:]
        self.assertEqual(numbers, list(range(len(numbers))))
