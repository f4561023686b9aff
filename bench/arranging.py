#!/usr/bin/env python3
"""How long eight characters take to be sent after their conversation's window, across processes.

The character server writes the system's performance counter down as each call arrives: from the first character's call
to the last one's seven of eight characters have been dealt with. Prints the time of eight, and fails where it is too
long."""

import shutil
import statistics
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
sys.path.insert(0, str(ROOT / "tools"))

from desk.reading import Options, Reading, own_desk  # noqa: E402
from desk.waiting import wait_for  # noqa: E402

PEOPLE = ["Ann", "Bob", "Cleo", "Dan", "Eve", "Finn", "Gwen", "Hal"]
MOVES = 25
LIMIT_MS = 50


def of_kind(reading, moment, what):
    reading.transcript.new()
    reading.check_programs()
    return [act for act in reading.transcript.acts if act.moment == moment and act.what == what]


def arrangements(reading, screen):
    """Milliseconds of each move of the window."""
    result = []
    conversation = screen.find("Conversation$")[-1]
    for number in range(MOVES):
        before = len(of_kind(reading, "call", "MoveTo"))
        screen.move(conversation, 420 + 40 * (number % 2), 330)
        wait_for("the way of eight characters",
                 lambda: len(of_kind(reading, "call", "MoveTo")) >= before + len(PEOPLE))
        calls = of_kind(reading, "call", "MoveTo")[before:]
        took = (calls[-1].microseconds - calls[0].microseconds) / 1000
        result.append(took * len(PEOPLE) / (len(PEOPLE) - 1))
    return sorted(result)


def main():
    output = ROOT / "build" / "bench" / "arranging"
    shutil.rmtree(output, ignore_errors=True)
    output.mkdir(parents=True)
    file = output / "conversation.txt"
    file.write_text("".join(f"[09:00] <{name}> hello\n" for name in PEOPLE), "utf-8")
    with own_desk("arranging", output) as desk:
        desk.set_up_all()
        files = desk.prefix.windows / "msagent" / "chars"
        cast = sorted(files.glob("*.acs"))
        for number in range(len(PEOPLE) - len(cast)):
            shutil.copy(cast[number % len(cast)], files / f"Zz{number}.acs")
        # The characters act at their natural speed: what they draw takes the processor that it takes for users.
        reading = Reading(desk, Options(file, participants=len(PEOPLE), speed=10, output=output, stage_speed=1))
        reading.start_neighbours()
        reading.start_program()
        reading.start_reading()
        wait_for("eight characters", lambda: len(of_kind(reading, "end", "Speak")) == len(PEOPLE))
        measured = arrangements(reading, desk.screen)
    median = statistics.median(measured)
    print(f"{len(measured)} times eight characters: median {median:.1f} ms, shortest {measured[0]:.1f} ms, "
          f"longest {measured[-1]:.1f} ms")
    if median > LIMIT_MS:
        print(f"too slow: the limit is {LIMIT_MS} ms", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
