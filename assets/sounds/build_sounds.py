#!/usr/bin/env python3
"""Synthesises a sound scheme: build_sounds.py MODULE DIRECTORY writes DIRECTORY/NAME.wav for every sound of the module,
16 bit, one channel. With further arguments only the sounds of these names."""

import concurrent.futures
import importlib
import pathlib
import random
import sys
import wave

from mastering import mastered
from synthesis import RATE


def build(module, name, directory):
    # Each sound draws its own random numbers, the same in every build.
    sound = importlib.import_module(module).SOUNDS[name](random.Random(f"{module} {name}"))
    try:
        samples, taken = mastered(sound)
    except ValueError as error:
        return f"{module}: {name} {error}", 0
    if sys.byteorder == "big":
        samples.byteswap()
    with wave.open(str(pathlib.Path(directory) / f"{name}.wav"), "wb") as file:
        file.setnchannels(1)
        file.setsampwidth(2)
        file.setframerate(RATE)
        file.writeframes(samples.tobytes())
    return None, taken


def main(arguments):
    if len(arguments) < 3:
        sys.exit("usage: build_sounds.py MODULE DIRECTORY [NAME...]")
    module, directory, *names = arguments[1:]
    names = names or list(importlib.import_module(module).SOUNDS)
    pathlib.Path(directory).mkdir(parents=True, exist_ok=True)
    with concurrent.futures.ProcessPoolExecutor() as pool:
        results = list(pool.map(build, [module] * len(names), names, [directory] * len(names)))
    sys.exit("\n".join(error for error, _ in results if error) or None)


if __name__ == "__main__":
    main(sys.argv)
