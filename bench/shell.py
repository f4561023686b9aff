#!/usr/bin/env python3
"""What the program costs a user who does nothing with it: the time to its window, and then processor time and memory.

Beside the program, Wine's own notepad is started in the same run, in turn, for a comparison. The times are those of
bench_stopwatch, in milliseconds from the start of the process to a window that is drawn, and to one that answers;
processor time and memory are what the system of the host accounts for the process. Fails where a limit is passed."""

import re
import shutil
import statistics
import sys
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
sys.path.insert(0, str(ROOT / "tools"))

from desk.measuring import memory_mb, pid_of, processor_seconds  # noqa: E402
from desk.reading import MAIN_WINDOW, WIN64, Options, Reading, own_desk  # noqa: E402
from desk.waiting import wait_for  # noqa: E402

STOPWATCH = WIN64 / "bench" / "windows" / "shell" / "bench_stopwatch.exe"
STARTS = 10
IDLE_SECONDS = 30
START_LIMIT_MS = 400
IDLE_LIMIT_PERCENT, READING_LIMIT_PERCENT = 0.5, 3
MEMORY_LIMIT_MB = 25


def percent_of_a_core(pid):
    begun, before = time.monotonic(), processor_seconds(pid)
    time.sleep(IDLE_SECONDS)
    return 100 * (processor_seconds(pid) - before) / (time.monotonic() - begun)


def start(desk, title, program):
    """Milliseconds until the window is drawn, and until it answers."""
    status, printed = desk.run("stopwatch", STOPWATCH, title, program)
    found = re.search(r"^([0-9.]+) ([0-9.]+)\s*$", printed, re.MULTILINE)
    if status != 0 or not found:
        raise SystemExit(f"{program} could not be measured:\n{printed}\n{desk.state()}")
    return float(found[1]), float(found[2])


def leave(desk, name, pattern, *keys):
    """Ends the program by its menu."""
    def gone():
        if pid_of(desk, name) is None:
            return True
        for window in desk.screen.find(pattern)[-1:]:
            desk.screen.type_into(window, *keys)
        return False
    wait_for(f"the end of {name}", gone, interval=0.3)


def measure(desk, reading):
    murmelix = rf"Z:{desk.program_directory}\Murmelix.exe".replace("/", "\\")
    starts, others = [], []
    for number in range(STARTS + 1):
        milliseconds = start(desk, "Murmelix v", murmelix)
        for _ in range(3):
            reading.dismiss_notices()
        leave(desk, "Murmelix.exe", MAIN_WINDOW, "alt+m", "x")
        other = start(desk, "Untitled - Notepad", r"C:\windows\system32\notepad.exe")
        other_memory = memory_mb(pid_of(desk, "notepad.exe"))
        leave(desk, "notepad.exe", "^Untitled - Notepad$", "alt+F4")
        if number > 0:  # the first finds nothing in the caches
            starts.append(milliseconds)
            others.append(other)
    reading.start_program()
    for _ in range(3):
        reading.dismiss_notices()
    time.sleep(3)
    pid = pid_of(desk, "Murmelix.exe")
    idle = percent_of_a_core(pid)
    memory = memory_mb(pid)
    reading.start_reading()
    wait_for("the whole conversation", lambda: reading.log.new() or reading.log.of_kind("done"), interval=0.5)
    for _ in range(3):
        reading.dismiss_notices()
    time.sleep(10)  # the last words are spoken
    return starts, others, idle, percent_of_a_core(pid), memory, memory_mb(pid), other_memory


def spread(starts):
    drawn, answering = zip(*starts)
    return (f"median {statistics.median(drawn):.0f} ms, from {min(drawn):.0f} to {max(drawn):.0f} ms; "
            f"it answers after {statistics.median(answering):.0f} ms")


def main():
    output = ROOT / "build" / "bench" / "shell"
    shutil.rmtree(output, ignore_errors=True)
    output.mkdir(parents=True)
    file = output / "conversation.txt"
    file.write_text("[09:00] <Ann> hello\n[09:01] <Bob> good morning\n", "utf-8")
    with own_desk("shell", output) as desk:
        desk.set_up_all()
        reading = Reading(desk, Options(file, participants=2, speed=100, output=output))
        reading.start_neighbours()
        starts, others, idle, reading_idle, memory, reading_memory, other_memory = measure(desk, reading)
    print(f"start to the main window, {STARTS} times: {spread(starts)}")
    print(f"notepad of Wine, in turn with it:   {spread(others)}")
    print(f"processor, signed in and idle: {idle:.2f} % of a core over {IDLE_SECONDS} s")
    print(f"processor, reading an idle conversation: {reading_idle:.2f} %")
    for what, (own, resident) in (("idle", memory), ("reading", reading_memory)):
        print(f"memory, {what}: {own:.1f} MB its own, notepad of Wine {other_memory[0]:.1f} MB, "
              f"{own / other_memory[0]:.2f} times as much; resident with what is shared {resident:.1f} MB, "
              f"notepad {other_memory[1]:.1f} MB")
    good = (statistics.median(drawn for drawn, _ in starts) <= START_LIMIT_MS and idle <= IDLE_LIMIT_PERCENT
            and reading_idle <= READING_LIMIT_PERCENT and max(memory[0], reading_memory[0]) <= MEMORY_LIMIT_MB)
    if not good:
        print(f"too much: the limits are {START_LIMIT_MS} ms, {IDLE_LIMIT_PERCENT} %, {READING_LIMIT_PERCENT} % and "
              f"{MEMORY_LIMIT_MB} MB of its own", file=sys.stderr)
    return 0 if good else 1


if __name__ == "__main__":
    sys.exit(main())
