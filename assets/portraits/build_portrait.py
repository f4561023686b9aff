#!/usr/bin/env python3
"""Draws the portrait of a character: build_portrait.py NAME FILE.gif RSVG-CONVERT CONVERT. A GIF of one picture on a
transparent ground."""

import pathlib
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "characters"))

from cast import CAST  # noqa: E402

PIXELS = 96
VIEW = (0.097, 0.035, 0.806, 0.806)  # head and shoulders of any of them, in shares of their canvas


def main(arguments):
    if len(arguments) != 5 or arguments[1] not in CAST:
        sys.exit(f"usage: build_portrait.py {'|'.join(CAST)} FILE.gif RSVG-CONVERT CONVERT")
    _, name, file, rsvg_convert, convert = arguments
    character = CAST[name]()
    size = character.size
    whole = character.svg(character.pose())
    view = " ".join(f"{share * size:.2f}" for share in VIEW)
    svg = whole.replace(f'width="{size}" height="{size}" viewBox="0 0 {size} {size}"',
                        f'width="{PIXELS}" height="{PIXELS}" viewBox="{view}"', 1)
    if svg == whole:
        sys.exit("build_portrait.py: the drawing does not begin as expected")
    png = subprocess.run([rsvg_convert], input=svg.encode(), stdout=subprocess.PIPE, check=True).stdout
    # A pixel of a GIF is there or is not; without a date the same drawing makes the same file.
    subprocess.run([convert, "png:-", "-channel", "A", "-threshold", "50%", "+channel", "-colors", "255", "-strip",
                    f"gif:{file}"], input=png, check=True)


if __name__ == "__main__":
    main(sys.argv)
