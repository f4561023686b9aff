#!/usr/bin/env python3
"""Synthesises the default sound scheme: build_sounds.py DIRECTORY writes DIRECTORY/NAME.wav, 16 bit, one channel."""

import array
import concurrent.futures
import pathlib
import random
import sys
import wave

from scheme import SOUNDS
from synthesis import RATE, finished


def build(name, directory):
    # Each sound draws its own random numbers, the same in every build.
    samples = finished(SOUNDS[name](random.Random(name)))
    values = array.array("h", [max(-32767, min(32767, round(s * 32767))) for s in samples])
    if sys.byteorder == "big":
        values.byteswap()
    with wave.open(str(pathlib.Path(directory) / f"{name}.wav"), "wb") as file:
        file.setnchannels(1)
        file.setsampwidth(2)
        file.setframerate(RATE)
        file.writeframes(values.tobytes())


def main(arguments):
    if len(arguments) != 2:
        sys.exit("usage: build_sounds.py DIRECTORY")
    pathlib.Path(arguments[1]).mkdir(parents=True, exist_ok=True)
    with concurrent.futures.ProcessPoolExecutor() as pool:
        list(pool.map(build, SOUNDS, [arguments[1]] * len(SOUNDS)))


if __name__ == "__main__":
    main(sys.argv)
