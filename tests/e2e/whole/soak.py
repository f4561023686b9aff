#!/usr/bin/env python3
"""How long the three programs hold out: for ./soak."""

import argparse
import os
import shutil
import signal
import subprocess
import sys
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parents[3]
sys.path.insert(0, str(ROOT / "tools"))

from desk.lock import InUse, alone_with  # noqa: E402
from desk.reading import Failed, own_desk  # noqa: E402
from desk.waiting import TimedOut  # noqa: E402
from long_reading import LongReading, Lost  # noqa: E402

SETTLED = 1000     # messages after which all that is loaded once is loaded
SAMPLES = 40
STAGE_SPEED = 100  # the characters act so many times as fast: nobody listens
# More than one sample differs from the next, and less than a leak comes to.
GROWN = {"memory": 4, "handles": 12, "graphics": 20, "windows": 6}
# The conversation itself is kept by the client, and given to the program a hundred times a second: both have memory for
# so many copies of it.
COPIES_OF_TEXT = 8
# The character server keeps pictures lately shown of each of the three characters; the rare ones of them come late.
KEPT_PICTURES_MB = 3 * 2
TEST = Path(__file__).with_name("test_faults.py")
FAULTS = ("Killed.test_messenger_at_any_moment", "Killed.test_character_server_at_any_moment",
          "Stored.test_settings_are_whole_after_a_kill_while_one_is_written",
          "Stored.test_matchups_are_whole_after_a_kill_while_one_is_written",
          "LongReadings.test_every_message_is_read_whatever_happens_meanwhile",
          "Stored.test_no_picture_is_left_where_the_disk_is_full",
          "Stored.test_the_end_of_the_session_ends_all_three_while_they_read")


def shown(value):
    return "?" if value is None else f"{value:.1f}" if isinstance(value, float) else str(value)


def judged(first, last, text_mb):
    """What has grown from the first to the last use of the programs, as lines; after each whether that is too much."""
    lines, too_much = [], []
    for program, use in last.items():
        for what, limit in GROWN.items():
            before, after = getattr(first[program], what), getattr(use, what)
            if before is None or after is None:
                lines.append(f"   {program} {what}: this system does not tell")
                continue
            if what == "memory":
                limit += KEPT_PICTURES_MB if program == "AgentServer.exe" else COPIES_OF_TEXT * text_mb
            grown = after - before > limit
            lines.append(f"   {program} {what}: {shown(before)}, in the end {shown(after)}" + (" GROWN" if grown else ""))
            too_much += [f"{program} {what}"] if grown else []
    return lines, too_much


def soak(messages, seed):
    """True where every message was spoken once, in order, and nothing has grown."""
    output = ROOT / "build" / "soak"
    shutil.rmtree(output, ignore_errors=True)
    output.mkdir(parents=True)
    print(f"== {messages} messages through the three programs, --seed {seed}", flush=True)
    with own_desk("soak", output) as desk:
        desk.set_up_all()
        reading = LongReading(desk, STAGE_SPEED, seed)
        try:
            reading.begin()
            settled, settled_text = None, 0
            began = time.monotonic()
            while reading.written < messages:
                started = time.monotonic()
                due = min(messages, reading.written + max(100, messages // SAMPLES))
                if reading.written < SETTLED:
                    due = min(due, SETTLED)
                count = due - reading.written
                reading.write_and_hear(count)
                use = reading.use()
                print(f"   {reading.written} messages, {count / (time.monotonic() - started):.1f} a second; " + ", ".join(
                    f"{program}: {' '.join(shown(getattr(one, what)) for what in GROWN)}"
                    for program, one in use.items()), flush=True)
                if settled is None and reading.written >= min(SETTLED, messages):
                    settled, settled_text = use, reading.text_mb
            seconds = time.monotonic() - began
            reading.assert_silent()
        finally:
            reading.end()
    print(f"== All {messages} messages were spoken, each once, in order, by the right character: {messages / seconds:.1f} a "
          f"second for {seconds / 60:.0f} min. After {min(SETTLED, messages)} messages, and in the end (memory in MB):")
    lines, too_much = judged(settled, use, reading.text_mb - settled_text)
    print("\n".join(lines))
    if too_much:
        print(f"./soak: grown: {', '.join(too_much)}", file=sys.stderr)
    return not too_much


def faults(rounds, seed):
    environment = dict(os.environ, MURMELIX_ROUNDS=str(rounds), MURMELIX_SEED=str(seed))
    failed = []
    for test in FAULTS:
        print(f"== {test}", flush=True)
        if subprocess.run([sys.executable, "-B", "-W", "ignore", str(TEST), test], env=environment, cwd=TEST.parent,
                          check=False).returncode != 0:
            failed.append(test)
    print(f"== Failed: {', '.join(failed)}" if failed else "== All is in order after each of them")
    return not failed


def number(text):
    value = int(text)
    if not 1 <= value <= 10_000_000:
        raise argparse.ArgumentTypeError(f"{text} is not between 1 and 10000000")
    return value


def interrupted(*_):
    raise KeyboardInterrupt


def main():
    parser = argparse.ArgumentParser(
        prog="./soak", allow_abbrev=False,
        description="Has the three programs read a conversation of many thousand messages, written as fast as they are "
                    "spoken. The exit status is 0 only if each was spoken once, in order, by the right character, and "
                    "memory, handles, graphics objects and windows are after it what they were after the first thousand.")
    parser.add_argument("--messages", metavar="N", type=number, default=20_000, help="so many (default 20000)")
    parser.add_argument("--faults", metavar="N", nargs="?", type=number, const=100,
                        help="instead: kill each of the programs at N random moments (100), and try the other faults")
    parser.add_argument("--seed", metavar="S", type=number, default=int(time.time()) % 1_000_000 + 1,
                        help="the messages and moments that another run has had")
    parser.add_argument("--check", action="store_true", help=argparse.SUPPRESS)
    options = parser.parse_args()
    if options.check:
        return 0
    # A signal ends what was started, also where a shell in the background has SIGINT ignored.
    for one in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
        signal.signal(one, interrupted)
    try:
        with alone_with(f"soak {ROOT}", "another ./soak runs here: wait for its end"):
            good = faults(options.faults, options.seed) if options.faults else soak(options.messages, options.seed)
        return 0 if good else 1
    except KeyboardInterrupt:
        print("\n./soak: ended before its end", file=sys.stderr)
        return 130
    except (Failed, InUse, Lost, TimedOut, OSError, RuntimeError) as error:
        print(f"./soak: {error}", file=sys.stderr)
        return 1


if __name__ == "__main__":
    sys.exit(main())
