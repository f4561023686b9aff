#!/usr/bin/env python3
"""Looks at a sound scheme: check_scheme.py FOLDER writes length, rate, loudness and true peak of every .wav file in it, and
which of the names are missing. Ends with 1 where one is missing, cannot be read, or is not as the other schemes are."""

import array
import pathlib
import sys
import wave

import loudness
from default_scheme import SOUNDS

LOUDNESS, TOLERANCE = -18.0, 1.0  # LUFS, LU
PEAK = -1.0                       # dBTP
SECONDS, LEAST_RATE = (0.3, 3.0), 22050
LOWEST_RATE = 4000     # what AgentServer reads at all
MOST_BYTES = 64 << 20  # what is larger is no sound of an emoticon


def samplesOf(path):
    """(channels, rate) of a PCM file of 8, 16 or 24 bits; a ValueError for any other."""
    if path.stat().st_size > MOST_BYTES:
        raise ValueError("too large")
    try:
        with wave.open(str(path)) as file:
            width, number, rate = file.getsampwidth(), file.getnchannels(), file.getframerate()
            data = file.readframes(file.getnframes())
    except (wave.Error, EOFError, OSError) as error:
        raise ValueError(f"cannot be read: {error}") from None
    if width == 1:
        values = [(byte - 128) / 128 for byte in data]
    elif width == 2:
        values = array.array("h", data[:len(data) // 2 * 2])
        if sys.byteorder == "big":
            values.byteswap()
        values = [value / 32768 for value in values]
    elif width == 3:
        values = [int.from_bytes(data[at:at + 3], "little", signed=True) / 8388608 for at in range(0, len(data) - 2, 3)]
    else:
        raise ValueError(f"has {8 * width} bits a sample")
    if number > 2:
        raise ValueError(f"has {number} channels")
    if rate < LOWEST_RATE:
        raise ValueError(f"has {rate} samples a second")
    return [values[channel::number] for channel in range(number)], rate


def measured(path):
    """What there is to say of a file, and what is wrong with it."""
    channels, rate = samplesOf(path)
    seconds, lufs = len(channels[0]) / rate, loudness.integrated(channels, rate)
    peak = max(loudness.decibels(loudness.truePeak(channel)) for channel in channels)
    wrong = []
    if not SECONDS[0] <= seconds <= SECONDS[1]:
        wrong.append(f"is not {SECONDS[0]} to {SECONDS[1]} s long")
    if rate < LEAST_RATE:
        wrong.append(f"has less than {LEAST_RATE} samples a second")
    if abs(lufs - LOUDNESS) > TOLERANCE:
        wrong.append(f"is {abs(lufs - LOUDNESS):.1f} LU too {'loud' if lufs > LOUDNESS else 'quiet'}")
    if peak > PEAK:
        wrong.append(f"has peaks above {PEAK} dBTP")
    return f"{seconds:5.2f} s  {rate:6d} Hz  {lufs:6.1f} LUFS  {peak:6.1f} dBTP", wrong


def main(arguments):
    if len(arguments) != 2:
        sys.exit("usage: check_scheme.py FOLDER")
    folder = pathlib.Path(arguments[1])
    if not folder.is_dir():
        sys.exit(f"{folder} is no folder")
    # Windows takes no notice of letter case.
    files = {path.stem.lower(): path for path in sorted(folder.iterdir()) if path.suffix.lower() == ".wav"}
    names = {name.lower(): name for name in SOUNDS}
    faults = 0
    for key in sorted({*files, *names}):
        told, wrong = "", ["is missing"]
        if key in files:
            try:
                told, wrong = measured(files[key])
            except ValueError as error:
                wrong = [str(error)]
            if key not in names:
                wrong.append("is played by no emoticon")
        print(f"{names[key] if key in names else files[key].stem:14}{told}{'  ' + ', '.join(wrong) if wrong else ''}")
        faults += len(wrong)
    sys.exit(1 if faults else 0)


if __name__ == "__main__":
    main(sys.argv)
