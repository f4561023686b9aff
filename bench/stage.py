#!/usr/bin/env python3
"""What eight characters cost on the screen, and how soon they are heard, beside what espeak-ng itself takes for the same
words in the same run. Fails where a limit is passed."""

import statistics
import subprocess
import sys
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
PROGRAM = ROOT / "build" / "win64" / "bench" / "windows" / "stage" / "bench_stage.exe"
CHARACTERS = ROOT / "build" / "host" / "assets" / "chars"
RUNS = 25
LIMITS = {"animating_percent": 10, "talking_percent": 5, "frames_late_ms_95": 20, "heard_ms_50": 60,
          "silence_ms_100": 150}
TOLD = {"animating_percent": "all eight animating, % of a core", "talking_percent": "one talking and seven listening, % of a core",
        "frames_late_ms_95": "a frame behind its time, 95th percentile, ms", "frames_late_ms_50": "the same, median",
        "engine_ms_50": "what the engine takes for its words, its process in Wine included, median, ms",
        "heard_ms_50": "from the call of Speak to its sound, median, ms", "heard_ms_95": "the same, 95th percentile",
        "silence_ms_50": "from a sound's end to that of another character, median, ms", "silence_ms_100": "the same, the longest"}


def espeak_ms():
    """The median time of the speech program alone."""
    times = []
    for number in range(RUNS):
        words = f"Hello there, number {chr(ord('a') + number)}\n".encode()
        begun = time.monotonic()
        subprocess.run(["espeak-ng", "-v", "en-us", "-b", "1", "-z", "--stdin", "--stdout"], input=words, check=True,
                       stdout=subprocess.DEVNULL)
        times.append(1000 * (time.monotonic() - begun))
    return statistics.median(times)


def main():
    alone = espeak_ms()
    files = sorted(CHARACTERS.glob("*.acs"))
    printed = subprocess.run([ROOT / "tests" / "wine", PROGRAM, *files], check=True, timeout=600, stdout=subprocess.PIPE,
                             text=True).stdout
    alone = statistics.mean([alone, espeak_ms()])
    figures = {}
    for line in printed.splitlines():
        name, _, value = line.partition(" ")
        if name in TOLD:
            figures[name] = float(value)
    status = 0
    for name, told in TOLD.items():
        limit = LIMITS.get(name)
        passed = limit is not None and figures[name] > limit
        status |= passed
        print(f"{told}: {figures[name]:.1f}" + (f" (limit {limit}{', PASSED' if passed else ''})" if limit else ""))
    print(f"espeak-ng alone, median, ms: {alone:.1f}")
    return status


if __name__ == "__main__":
    sys.exit(main())
