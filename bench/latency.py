#!/usr/bin/env python3
"""From a message appended to a conversation to the Speak call that arrives at the character server, across processes.

Both neighbours write the system's performance counter down: the Messenger client when it has appended the message, the
character server when the call arrives. Prints the distribution in milliseconds, and fails where it is too slow."""

import shutil
import statistics
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
sys.path.insert(0, str(ROOT / "tools"))

from desk.reading import Options, Reading, own_desk  # noqa: E402
from desk.waiting import wait_for  # noqa: E402

MESSAGES = 250
PER_SECOND = 4
MEDIAN_LIMIT_MS, PERCENTILE_99_LIMIT_MS = 25, 60


def conversation():
    """Two people who write in turn, PER_SECOND messages a second at tenfold speed."""
    per_minute = PER_SECOND * 60 // 10
    lines = []
    for number in range(MESSAGES):
        lines.append(f"[09:{number // per_minute:02d}] <{'Ann' if number % 2 else 'Bob'}> number {number} is short\n")
    return "".join(lines)


def latencies(log, transcript):
    """Milliseconds of every message: a writer's messages and Speak calls follow one another in the same order."""
    result = []
    for writer in sorted({event.signin for event in log.of_kind("message")}):
        written = [event.microseconds for event in log.of_kind("message") if event.signin == writer]
        spoken = [act.microseconds for act in transcript.acts
                  if act.moment == "call" and act.what == "Speak" and act.key == writer]
        if len(written) != len(spoken):
            raise SystemExit(f"{writer} wrote {len(written)} messages, {len(spoken)} were spoken")
        result += [(call - message) / 1000 for message, call in zip(written, spoken)]
    return sorted(result)


def all_called(reading):
    reading.log.new()
    reading.transcript.new()
    reading.check_programs()
    return len([act for act in reading.transcript.acts if act.moment == "call" and act.what == "Speak"]) >= MESSAGES


def main():
    output = ROOT / "build" / "bench" / "latency"
    shutil.rmtree(output, ignore_errors=True)
    output.mkdir(parents=True)
    file = output / "conversation.txt"
    file.write_text(conversation(), "utf-8")
    with own_desk("latency", output) as desk:
        desk.set_up_all()
        # The characters act at their natural speed, so most of what they are told waits in their queues.
        reading = Reading(desk, Options(file, participants=2, speed=10, output=output, stage_speed=1))
        reading.start_neighbours()
        reading.start_program()
        reading.start_reading()
        wait_for("all calls", lambda: all_called(reading), interval=0.5)
        measured = latencies(reading.log, reading.transcript)
    median = statistics.median(measured)
    percentile_99 = measured[min(len(measured) - 1, int(len(measured) * 0.99))]
    print(f"{len(measured)} messages: median {median:.1f} ms, 99th percentile {percentile_99:.1f} ms, "
          f"shortest {measured[0]:.1f} ms, longest {measured[-1]:.1f} ms")
    good = median <= MEDIAN_LIMIT_MS and percentile_99 <= PERCENTILE_99_LIMIT_MS
    if not good:
        print(f"too slow: the limits are {MEDIAN_LIMIT_MS} ms and {PERCENTILE_99_LIMIT_MS} ms", file=sys.stderr)
    return 0 if good else 1


if __name__ == "__main__":
    sys.exit(main())
